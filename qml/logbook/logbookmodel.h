// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qabstractitemmodel.h>
#include <QtCore/qdatetime.h>
#include <QtCore/qpointer.h>
#include <QtQml/qqml.h>
#include <QtQml/qqmlparserstatus.h>

#include <varda/logbookentry.h>
#include <varda/logbookquery.h>
#include <varda/logbookresult.h>

#include "storetype.h"

/**
 * The dives of a store for views: a role for each field of logbookEntry, and "record" for the
 * whole. It follows the store: a dive that is added, changed or hidden changes its own row only.
 */
class LogbookModel : public QAbstractListModel, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(StoreType *store READ store WRITE setStore NOTIFY storeChanged)
    /** logbookComputer.id; 0: any. */
    Q_PROPERTY(double computer READ computer WRITE setComputer NOTIFY filterChanged)
    Q_PROPERTY(bool withHidden READ withHidden WRITE setWithHidden NOTIFY filterChanged)
    Q_PROPERTY(bool onlyHidden READ onlyHidden WRITE setOnlyHidden NOTIFY filterChanged)
    /** Begun then or later, as the computers showed it; undefined: any. */
    Q_PROPERTY(QVariant since READ since WRITE setSince NOTIFY filterChanged)
    /** Begun then or earlier. */
    Q_PROPERTY(QVariant until READ until WRITE setUntil NOTIFY filterChanged)
    /** A part of number, place or notes, in any case. */
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY filterChanged)
    Q_PROPERTY(bool newestFirst READ newestFirst WRITE setNewestFirst NOTIFY filterChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /** Whether the store is being asked. */
    Q_PROPERTY(bool loading READ loading NOTIFY loadingChanged)

public:
    explicit LogbookModel(QObject *parent = nullptr);

    [[nodiscard]] StoreType *store() const { return m_store; }
    void setStore(StoreType *store);
    [[nodiscard]] double computer() const { return double(m_query.computer); }
    void setComputer(double id);
    [[nodiscard]] bool withHidden() const { return m_query.withHidden; }
    void setWithHidden(bool on);
    [[nodiscard]] bool onlyHidden() const { return m_onlyHidden; }
    void setOnlyHidden(bool on);
    [[nodiscard]] QVariant since() const { return m_since; }
    void setSince(const QVariant &since);
    [[nodiscard]] QVariant until() const { return m_until; }
    void setUntil(const QVariant &until);
    [[nodiscard]] QString search() const { return m_search; }
    void setSearch(const QString &search);
    [[nodiscard]] bool newestFirst() const { return m_newestFirst; }
    void setNewestFirst(bool on);
    [[nodiscard]] int count() const { return int(m_rows.size()); }
    [[nodiscard]] bool loading() const { return m_asking; }

    /** The logbookEntry in that row, or undefined. */
    Q_INVOKABLE QVariant get(int row) const;
    /** The row of the dive with that id; -1: it is not listed. */
    Q_INVOKABLE int rowOf(double id) const;
    /** Asks the store again, if another program may have changed its file. */
    Q_INVOKABLE void refresh();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override { m_isComplete = false; }
    void componentComplete() override;

Q_SIGNALS:
    void storeChanged();
    void filterChanged();
    void countChanged();
    void loadingChanged();

private:
    using Entries = QList<LogbookEntry>;

    void ask();
    void onDives(const LogbookResult<Entries> &result);
    void refilter();
    [[nodiscard]] bool isListed(const LogbookEntry &entry) const;
    void show(const Entries &rows);
    void showExactly(const Entries &rows);
    [[nodiscard]] bool comesBefore(const LogbookEntry &one, const LogbookEntry &other) const;

    QPointer<StoreType> m_store;
    LogbookQuery m_query;
    QVariant m_since;
    QVariant m_until;
    QString m_search;
    bool m_onlyHidden = false;
    bool m_newestFirst = true;
    bool m_isComplete = true;
    bool m_asking = false;
    bool m_askAgain = false; ///< something has changed since the store was asked
    Entries m_entries;       ///< of the store, the earliest begin first
    Entries m_rows;
};

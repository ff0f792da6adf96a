// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqml.h>

#include <varda/logbookstore.h>

#include "logbookcall.h"

class SyncJob;

/**
 * A file with dives: see LogbookStore of the library. Each call returns at once and works in its
 * turn; its result is in the LogbookCall that it returns.
 */
class StoreType : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(LogbookStore)
    /** Setting it opens that file, and makes it if it is missing; empty: none is open. */
    Q_PROPERTY(QString file READ file WRITE setFile NOTIFY fileChanged)
    /** Whether calls reach a file. */
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    /** The last error of any call, until the next failure or until a file is opened. */
    Q_PROPERTY(LogbookError::Kind error READ error NOTIFY errorChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorChanged)
    Q_PROPERTY(QString remedy READ remedy NOTIFY errorChanged)

public:
    explicit StoreType(QObject *parent = nullptr);
    ~StoreType() override;

    [[nodiscard]] QString file() const { return m_file; }
    void setFile(const QString &file);
    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    [[nodiscard]] LogbookError::Kind error() const { return m_error.kind; }
    [[nodiscard]] QString errorText() const { return m_error.text; }
    [[nodiscard]] QString remedy() const { return m_error.remedy; }

    /** The file of the varda command and of the app, or the one for simulated computers. */
    Q_INVOKABLE static QString defaultFile(bool simulated = false);
    /** Opens the file again, after an error for example. */
    Q_INVOKABLE LogbookCall *reopen();

    /** The value is a list of logbookComputer. */
    Q_INVOKABLE LogbookCall *computers();
    /**
     * The value is a list of logbookEntry, the earliest begin first. Of @p query each member may be
     * left out: computer, number, since and until (a Date, or seconds like logbookEntry.begin),
     * withHidden.
     */
    Q_INVOKABLE LogbookCall *dives(const QVariantMap &query = {});
    /** The value is a logbookDive. */
    Q_INVOKABLE LogbookCall *dive(double id);
    /**
     * Adds a dive from elsewhere: a dive or a logbookDive. The computer is a logbookComputer, or
     * nothing: then the dive's serial number says which. The value has id and isNew.
     */
    Q_INVOKABLE LogbookCall *addDive(const QVariant &computer, const QVariant &dive);
    Q_INVOKABLE LogbookCall *setPlace(double id, const QString &place);
    Q_INVOKABLE LogbookCall *setNotes(double id, const QString &notes);
    Q_INVOKABLE LogbookCall *setHidden(double id, bool hidden);
    /** Reads the whole file and fails with Damaged if anything in it is not sound. */
    Q_INVOKABLE LogbookCall *check();

    // For the other types of the module

    [[nodiscard]] LogbookStore &library() { return m_store; }
    /** An error of a call that is not one of QML's own. */
    void report(const LogbookError &error);
    /** Says changed() for each dive that the job stores. */
    void follow(SyncJob *job);

Q_SIGNALS:
    void fileChanged();
    void openChanged();
    void errorChanged();
    /** A call has failed: error, errorText and remedy say why. */
    void failed();
    /** That dive was added or changed through this store; 0: any may have been. */
    void changed(double id);

private:
    template <typename T> LogbookStore::Callback<T> into(LogbookCall *call);
    LogbookStore::Done change(LogbookCall *call, qint64 id);
    void end(LogbookCall *call, const QVariant &value, const LogbookError &error);
    void openFile(LogbookCall *call);
    void onOpened(const QString &file, const LogbookError &error);
    LogbookCall *newCall();
    LogbookCall *refuse(LogbookCall *call, const QString &why);

    LogbookStore m_store;
    QString m_file;
    LogbookError m_error;
    bool m_isOpen = false;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qabstractitemmodel.h>
#include <QtCore/qmetaobject.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqml.h>

#include "field.h"

/** What the records of a model are. */
struct RecordKind {
    const QMetaObject &gadget; ///< the value type, whose properties are the fields
    QMetaType type;
    QMetaType listType;
    QVariantList (*listOf)(const QVariant &list) = nullptr; ///< one of listType

    template <typename Value, typename Record> static RecordKind of()
    {
        return {Value::staticMetaObject, QMetaType::fromType<Record>(),
                QMetaType::fromType<QList<Record>>(),
                [](const QVariant &list) { return asVariants(list.value<QList<Record>>()); }};
    }
};

/** A list of records for views: a role for each field, and "record" for the whole. */
class RecordModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    [[nodiscard]] int count() const { return int(m_records.size()); }
    /** The record at @p index, or undefined. */
    Q_INVOKABLE QVariant get(int index) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

protected:
    RecordModel(const RecordKind &kind, QObject *parent);

    [[nodiscard]] const QVariantList &recordList() const { return m_records; }
    /** Takes those of a list of any kind that are records of the model's. */
    void replaceAll(const QVariant &records);
    void append(const QVariant &record);
    void replace(int index, const QVariant &record);

private:
    RecordKind m_kind;
    QVariantList m_records;
};

/** One whose records somebody has already, such as those of a job or of a dive. */
class ListModel : public RecordModel
{
    Q_OBJECT
    QML_ANONYMOUS
    /** A list of records; what else is in it is left out. */
    Q_PROPERTY(QVariant records READ records WRITE setRecords NOTIFY recordsChanged)

public:
    [[nodiscard]] QVariant records() const { return recordList(); }
    void setRecords(const QVariant &records);

Q_SIGNALS:
    void recordsChanged();

protected:
    using RecordModel::RecordModel;
};

// SPDX-License-Identifier: MIT
#include "recordmodel.h"

#include <QtCore/qmetaobject.h>
#include <QtQml/qjsvalue.h>

namespace {

constexpr int kRecordRole = Qt::UserRole;
constexpr int kFirstField = Qt::UserRole + 1;

} // namespace

RecordModel::RecordModel(const RecordKind &kind, QObject *parent)
    : QAbstractListModel(parent), m_kind(kind)
{
}

QVariant RecordModel::get(int index) const
{
    return m_records.value(index);
}

int RecordModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant RecordModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QVariant &record = m_records.at(index.row());
    if (role == kRecordRole)
        return record;
    const int field = m_kind.gadget.propertyOffset() + role - kFirstField;
    if (role < kFirstField || field >= m_kind.gadget.propertyCount())
        return {};
    return m_kind.gadget.property(field).readOnGadget(record.constData());
}

QHash<int, QByteArray> RecordModel::roleNames() const
{
    QHash<int, QByteArray> names{{kRecordRole, "record"}};
    const int first = m_kind.gadget.propertyOffset();
    for (int i = first; i < m_kind.gadget.propertyCount(); ++i)
        names.insert(kFirstField + i - first, m_kind.gadget.property(i).name());
    return names;
}

void RecordModel::replaceAll(const QVariant &records)
{
    beginResetModel();
    if (records.metaType() == m_kind.listType)
        m_records = m_kind.listOf(records);
    else if (records.metaType() == QMetaType::fromType<QJSValue>()) // an array
        m_records = records.value<QJSValue>().toVariant().toList();
    else
        m_records = records.toList();
    m_records.removeIf([this](const QVariant &each) { return each.metaType() != m_kind.type; });
    endResetModel();
    Q_EMIT countChanged();
}

void RecordModel::append(const QVariant &record)
{
    beginInsertRows({}, count(), count());
    m_records.append(record);
    endInsertRows();
    Q_EMIT countChanged();
}

void RecordModel::replace(int index, const QVariant &record)
{
    m_records[index] = record;
    Q_EMIT dataChanged(this->index(index), this->index(index));
}

void ListModel::setRecords(const QVariant &records)
{
    replaceAll(records);
    Q_EMIT recordsChanged();
}

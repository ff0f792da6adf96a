// SPDX-License-Identifier: MIT
#include "logbookmodel.h"

#include <QtCore/qmetaobject.h>

#include <algorithm>
#include <tuple>

#include "logbookvalues.h"
#include "stamps.h"

namespace {

constexpr int kRecordRole = Qt::UserRole;
constexpr int kFirstField = Qt::UserRole + 1;
/** A list that differs in more places is shown anew: each place costs a view as much as all rows. */
constexpr int kMostPlaces = 32;

auto fieldsOf(const LogbookEntry &entry)
{
    return std::tie(entry.id, entry.computer, entry.number, entry.begin, entry.duration,
                    entry.greatestDepth, entry.meanDepth, entry.lines, entry.place, entry.notes,
                    entry.hidden, entry.stored);
}

} // namespace

LogbookModel::LogbookModel(QObject *parent) : QAbstractListModel(parent) { }

void LogbookModel::setStore(StoreType *store)
{
    if (m_store == store)
        return;
    if (m_store)
        m_store->disconnect(this);
    m_store = store;
    if (store) {
        connect(store, &StoreType::changed, this, &LogbookModel::refresh);
        connect(store, &StoreType::openChanged, this, &LogbookModel::refresh);
    }
    refresh();
    Q_EMIT storeChanged();
}

void LogbookModel::setComputer(double id)
{
    m_query.computer = Stamps::idOf(id);
    refresh();
    Q_EMIT filterChanged();
}

void LogbookModel::setWithHidden(bool on)
{
    m_query.withHidden = on;
    refresh();
    Q_EMIT filterChanged();
}

void LogbookModel::setOnlyHidden(bool on)
{
    m_onlyHidden = on;
    refresh();
    Q_EMIT filterChanged();
}

void LogbookModel::setSince(const QVariant &since)
{
    m_since = since;
    m_query.since = Stamps::in(since);
    refresh();
    Q_EMIT filterChanged();
}

void LogbookModel::setUntil(const QVariant &until)
{
    m_until = until;
    m_query.until = Stamps::in(until);
    refresh();
    Q_EMIT filterChanged();
}

void LogbookModel::setSearch(const QString &search)
{
    if (m_search == search)
        return;
    m_search = search;
    refilter();
    Q_EMIT filterChanged();
}

void LogbookModel::setNewestFirst(bool on)
{
    if (m_newestFirst == on)
        return;
    m_newestFirst = on;
    // No row stays where it was.
    beginResetModel();
    std::reverse(m_rows.begin(), m_rows.end());
    endResetModel();
    Q_EMIT filterChanged();
}

QVariant LogbookModel::get(int row) const
{
    return row >= 0 && row < count() ? QVariant::fromValue(m_rows.at(row)) : QVariant();
}

int LogbookModel::rowOf(double id) const
{
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                    [&](const auto &each) { return double(each.id) == id; });
    return found == m_rows.cend() ? -1 : int(found - m_rows.cbegin());
}

void LogbookModel::refresh()
{
    m_askAgain = true;
    ask();
}

void LogbookModel::componentComplete()
{
    m_isComplete = true;
    ask();
}

/** Many changes in a row, as of a synchronisation, are one question after the one that is asked. */
void LogbookModel::ask()
{
    if (!m_isComplete || !m_askAgain || m_asking)
        return;
    m_askAgain = false;
    if (!m_store || !m_store->isOpen()) {
        onDives({});
        return;
    }
    LogbookQuery query = m_query;
    query.withHidden = query.withHidden || m_onlyHidden;
    m_asking = true;
    Q_EMIT loadingChanged();
    m_store->library().dives(query, this,
                             [this, asked = m_store](const LogbookResult<Entries> &result) {
                                 m_asking = false;
                                 if (asked == m_store)
                                     onDives(result);
                                 ask();
                                 if (!m_asking)
                                     Q_EMIT loadingChanged();
                             });
}

void LogbookModel::onDives(const LogbookResult<Entries> &result)
{
    if (!result.error)
        m_entries = result.value;
    else if (m_store)
        m_store->report(result.error); // what was listed stays
    refilter();
}

bool LogbookModel::isListed(const LogbookEntry &entry) const
{
    if (m_onlyHidden && !entry.hidden)
        return false;
    const auto has = [this](const QString &text) {
        return text.contains(m_search, Qt::CaseInsensitive);
    };
    return m_search.isEmpty() || has(QString::number(entry.number)) || has(entry.place)
           || has(entry.notes);
}

void LogbookModel::refilter()
{
    Entries rows;
    rows.reserve(m_entries.size());
    std::copy_if(m_entries.cbegin(), m_entries.cend(), std::back_inserter(rows),
                 [this](const LogbookEntry &each) { return isListed(each); });
    std::sort(rows.begin(), rows.end(), [this](const LogbookEntry &one, const LogbookEntry &other) {
        return comesBefore(one, other);
    });
    const int before = count();
    show(rows);
    if (count() != before)
        Q_EMIT countChanged();
}

bool LogbookModel::comesBefore(const LogbookEntry &one, const LogbookEntry &other) const
{
    const auto keyOf = [](const LogbookEntry &entry) { return std::tie(entry.begin, entry.id); };
    return m_newestFirst ? keyOf(other) < keyOf(one) : keyOf(one) < keyOf(other);
}

void LogbookModel::show(const Entries &rows)
{
    int places = 0;
    bool same = true;
    qsizetype old = 0;
    // Walks through both lists, which are in the same order.
    for (qsizetype i = 0; i < rows.size() || old < m_rows.size();) {
        const bool gone = old < m_rows.size()
                          && (i == rows.size() || comesBefore(m_rows.at(old), rows.at(i)));
        const bool added = !gone
                           && (old == m_rows.size() || comesBefore(rows.at(i), m_rows.at(old)));
        places += (gone || added) && same;
        same = !gone && !added;
        i += !gone;
        old += !added;
    }
    if (places <= kMostPlaces) {
        showExactly(rows);
        return;
    }
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

void LogbookModel::showExactly(const Entries &rows)
{
    for (qsizetype row = 0; row < rows.size() || row < m_rows.size();) {
        const auto isGone = [&](qsizetype at) {
            return at < m_rows.size()
                   && (row == rows.size() || comesBefore(m_rows.at(at), rows.at(row)));
        };
        const auto isAdded = [&](qsizetype at) {
            return at < rows.size()
                   && (row == m_rows.size() || comesBefore(rows.at(at), m_rows.at(row)));
        };
        qsizetype end = row;
        if (isGone(row)) {
            while (isGone(end))
                ++end;
            beginRemoveRows({}, int(row), int(end - 1));
            m_rows.remove(row, end - row);
            endRemoveRows();
        } else if (isAdded(row)) {
            while (isAdded(end))
                ++end;
            beginInsertRows({}, int(row), int(end - 1));
            m_rows.insert(row, end - row, {});
            std::copy(rows.cbegin() + row, rows.cbegin() + end, m_rows.begin() + row);
            endInsertRows();
            row = end;
        } else {
            if (fieldsOf(m_rows.at(row)) != fieldsOf(rows.at(row))) {
                m_rows[row] = rows.at(row);
                Q_EMIT dataChanged(index(int(row)), index(int(row)));
            }
            ++row;
        }
    }
}

int LogbookModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant LogbookModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const LogbookEntry &entry = m_rows.at(index.row());
    if (role == kRecordRole)
        return QVariant::fromValue(entry);
    const QMetaObject &gadget = LogbookEntryValue::staticMetaObject;
    const int field = gadget.propertyOffset() + role - kFirstField;
    if (role < kFirstField || field >= gadget.propertyCount())
        return {};
    return gadget.property(field).readOnGadget(&entry);
}

QHash<int, QByteArray> LogbookModel::roleNames() const
{
    QHash<int, QByteArray> names{{kRecordRole, "record"}};
    const QMetaObject &gadget = LogbookEntryValue::staticMetaObject;
    const int first = gadget.propertyOffset();
    for (int i = first; i < gadget.propertyCount(); ++i)
        names.insert(kFirstField + i - first, gadget.property(i).name());
    return names;
}

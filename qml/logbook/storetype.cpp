// SPDX-License-Identifier: MIT
#include "storetype.h"

#include <QtCore/qpointer.h>
#include <QtQml/qjsengine.h>

#include <limits>

#include <varda/syncjob.h>

#include "field.h"
#include "handover_p.h"
#include "stamps.h"

using namespace Qt::StringLiterals;

namespace {

template <typename T> QVariant forQml(const T &value)
{
    return QVariant::fromValue(value);
}

template <typename T> QVariant forQml(const QList<T> &values)
{
    return asVariants(values);
}

/** False for what is no query. */
bool readQuery(const QVariantMap &from, LogbookQuery &query)
{
    for (auto each = from.cbegin(); each != from.cend(); ++each) {
        if (!each->isValid())
            continue;
        bool isGood = true;
        const double number = each->toDouble(&isGood);
        if (each.key() == "computer"_L1) {
            query.computer = Stamps::idOf(number);
        } else if (each.key() == "number"_L1) {
            isGood = isGood && number >= 0 && number <= std::numeric_limits<std::uint16_t>::max();
            query.number = isGood ? std::uint16_t(number) : 0;
        } else if (each.key() == "since"_L1 || each.key() == "until"_L1) {
            const auto stamp = Stamps::in(*each);
            (each.key() == "since"_L1 ? query.since : query.until) = stamp;
            isGood = stamp.has_value();
        } else if (each.key() == "withHidden"_L1) {
            query.withHidden = each->toBool();
            isGood = true;
        } else {
            isGood = false;
        }
        if (!isGood)
            return false;
    }
    return true;
}

void finishCall(LogbookCall *call, const QVariant &value, const LogbookError &error)
{
    call->finish(value, error);
    if (QJSEngine *const engine = engineOf(call))
        letGo(call, engine);
    else
        call->deleteLater();
}

} // namespace

StoreType::StoreType(QObject *parent) : QObject(parent) { }

StoreType::~StoreType() = default;

QString StoreType::defaultFile(bool simulated)
{
    return LogbookStore::defaultFile(simulated);
}

void StoreType::setFile(const QString &file)
{
    if (m_file == file)
        return;
    m_file = file;
    openFile(nullptr);
    Q_EMIT fileChanged();
}

LogbookCall *StoreType::reopen()
{
    LogbookCall *const call = newCall();
    openFile(call);
    return call;
}

/** @param call  null if nobody has asked for one */
void StoreType::openFile(LogbookCall *call)
{
    if (m_isOpen) {
        m_isOpen = false;
        Q_EMIT openChanged();
    }
    const LogbookStore::Done done = [this, call = QPointer(call),
                                     file = m_file](const LogbookError &error) {
        onOpened(file, error);
        if (call)
            end(call, {}, error);
        else if (error)
            report(error);
    };
    if (m_file.isEmpty())
        m_store.close(this, done);
    else
        m_store.open(m_file, this, done);
}

void StoreType::onOpened(const QString &file, const LogbookError &error)
{
    // Another one may have been asked for meanwhile.
    if (file != m_file || error)
        return;
    m_error = {};
    Q_EMIT errorChanged();
    m_isOpen = !file.isEmpty();
    if (m_isOpen)
        Q_EMIT openChanged();
    Q_EMIT changed(0);
}

LogbookCall *StoreType::newCall()
{
    QJSEngine *const engine = engineOf(this);
    // It outlives the store, and is protected until its end.
    auto *const call = new LogbookCall(engine);
    if (engine)
        QJSEngine::setObjectOwnership(call, QJSEngine::JavaScriptOwnership);
    return call;
}

void StoreType::end(LogbookCall *call, const QVariant &value, const LogbookError &error)
{
    if (error)
        report(error);
    finishCall(call, value, error);
}

void StoreType::report(const LogbookError &error)
{
    m_error = error;
    Q_EMIT errorChanged();
    Q_EMIT failed();
}

template <typename T> LogbookStore::Callback<T> StoreType::into(LogbookCall *call)
{
    return [store = QPointer(this), call](const LogbookResult<T> &result) {
        const QVariant value = forQml(result.value);
        if (store)
            store->end(call, value, result.error);
        else
            finishCall(call, value, result.error);
    };
}

LogbookStore::Done StoreType::change(LogbookCall *call, qint64 id)
{
    return [store = QPointer(this), call, id](const LogbookError &error) {
        if (store && !error && id > 0)
            Q_EMIT store->changed(double(id));
        if (store)
            store->end(call, {}, error);
        else
            finishCall(call, {}, error);
    };
}

LogbookCall *StoreType::computers()
{
    LogbookCall *const call = newCall();
    m_store.computers(call, into<QList<LogbookComputer>>(call));
    return call;
}

LogbookCall *StoreType::dives(const QVariantMap &query)
{
    LogbookCall *const call = newCall();
    LogbookQuery wanted;
    if (!readQuery(query, wanted))
        return refuse(call, u"dives() got a query that it does not understand"_s);
    m_store.dives(wanted, call, into<QList<LogbookEntry>>(call));
    return call;
}

LogbookCall *StoreType::dive(double id)
{
    LogbookCall *const call = newCall();
    m_store.dive(Stamps::idOf(id), call, into<LogbookDive>(call));
    return call;
}

LogbookCall *StoreType::addDive(const QVariant &computer, const QVariant &dive)
{
    LogbookCall *const call = newCall();
    LogbookDive added;
    if (dive.metaType() == QMetaType::fromType<Dive>())
        added.dive = dive.value<Dive>();
    else if (dive.metaType() == QMetaType::fromType<LogbookDive>())
        added = dive.value<LogbookDive>();
    else
        return refuse(call, u"what was to be added is no dive"_s);
    using Added = LogbookStore::Added;
    m_store.addDive(
        computer.value<LogbookComputer>(), added, call,
        [store = QPointer(this), ended = into<Added>(call)](const LogbookResult<Added> &result) {
            if (store && result.value.isNew)
                Q_EMIT store->changed(double(result.value.id));
            ended(result);
        });
    return call;
}

LogbookCall *StoreType::setPlace(double id, const QString &place)
{
    LogbookCall *const call = newCall();
    m_store.setPlace(Stamps::idOf(id), place, call, change(call, Stamps::idOf(id)));
    return call;
}

LogbookCall *StoreType::setNotes(double id, const QString &notes)
{
    LogbookCall *const call = newCall();
    m_store.setNotes(Stamps::idOf(id), notes, call, change(call, Stamps::idOf(id)));
    return call;
}

LogbookCall *StoreType::setHidden(double id, bool hidden)
{
    LogbookCall *const call = newCall();
    m_store.setHidden(Stamps::idOf(id), hidden, call, change(call, Stamps::idOf(id)));
    return call;
}

LogbookCall *StoreType::check()
{
    LogbookCall *const call = newCall();
    m_store.check(call, change(call, 0));
    return call;
}

LogbookCall *StoreType::refuse(LogbookCall *call, const QString &why)
{
    const LogbookError error{LogbookError::Failed, why, {}};
    QMetaObject::invokeMethod(
        call, [done = change(call, 0), error] { done(error); }, Qt::QueuedConnection);
    return call;
}

void StoreType::follow(SyncJob *job)
{
    connect(job, &SyncJob::diveStored, this,
            [this](qint64 id, const Dive & /*dive*/) { Q_EMIT changed(double(id)); });
    connect(job, &VardaJob::finished, this, [this, job] {
        // Also when the computer was seen last.
        Q_EMIT changed(0);
        if (job->error() == VardaJob::NotStored)
            report(job->storeError());
    });
}

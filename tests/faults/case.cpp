// SPDX-License-Identifier: MIT
#include "case.h"

#include <QtCore/qcoreapplication.h>

#include <algorithm>

#include <varda/vardasession.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLong = 40'000;

QString addressName(const QString &model)
{
    return model == "varda"_L1 ? u"Varda"_s : model == "tidemar"_L1 ? u"Tidemar"_s : u"VSK-0042"_s;
}

/** Without the progress of uploads, which is told as often as its percentage changes. */
QStringList withoutProgress(const QStringList &log)
{
    QStringList kept;
    for (const QString &entry : log) {
        if (!entry.startsWith("uploadFirmwareProgress"_L1))
            kept.append(entry);
    }
    return kept;
}

QStringList complain(const QString &what, const QStringList &log)
{
    return {what + u": "_s + log.join(u" | "_s)};
}

bool hasEnded(const QStringList &log)
{
    return std::ranges::any_of(log, [](const QString &entry) {
        return entry.startsWith("endCommand"_L1) || entry.startsWith("exchangeError"_L1)
               || entry == "disconnectController"_L1;
    });
}

} // namespace

QString Setting::name() const
{
    return u"%1%2/%3/%4"_s.arg(ofJobs() ? u"jobs/"_s : QString(), model,
                               mode == BleMode::Gatt ? u"gatt"_s : u"sps"_s, job->name);
}

BleDeviceInfo Setting::device() const
{
    return BleDeviceInfo::fromAddress(u"00:AA:01:01:00:01"_s, addressName(model));
}

QByteArray Setting::scenario(const QByteArray &keys, const QByteArray &faults) const
{
    // Answers of some length fill several notifications.
    return R"({"devices":[{"known":true,"split":64,"clock":1715934600,"log":4,
        "dives":{"count":3,"samples":12},"model":")"
           + model.toUtf8() + R"(","mode":")" + (mode == BleMode::Gatt ? "gatt" : "sps") + '"'
           + keys + R"(,"faults":[)" + faults + "]}]}";
}

CaseRunner::CaseRunner(World &world, const Setting &setting)
    : m_world(world), m_setting(setting) { }

void CaseRunner::load(const QByteArray &device, const QByteArray &faults)
{
    m_world.load(m_setting.scenario(device, faults));
}

void CaseRunner::connectTo(VardaSession &session, bool scan) const
{
    if (scan)
        session.autoConnect(m_setting.mode);
    else
        session.connectTo(m_setting.device(), m_setting.mode);
}

bool CaseRunner::connectAndPrepare(VardaSession &session, SignalLog &log, bool scan)
{
    connectTo(session, scan);
    if (!World::wait([&] { return log.entries().contains("Connected"_L1); }, kLong))
        return false;
    for (const auto command : m_setting.job->before) {
        log.take();
        session.startCommand(command);
        if (!World::wait([&] { return hasEnded(log.entries()); }, kLong))
            return false;
    }
    log.take();
    return true;
}

std::optional<Healthy> CaseRunner::healthy(QString *error)
{
    VardaSession session;
    SignalLog log;
    log.watch(&session);
    m_world.heal();
    load();
    if (!connectAndPrepare(session, log, false)) {
        *error = u"no connection: "_s + log.entries().join(u" | "_s);
        return std::nullopt;
    }
    const qsizetype before = m_world.exchanges().size();
    m_setting.job->start(session);
    const auto complete = [&] {
        // A farewell, and an answer that nobody is told of, come after the last signal.
        const auto exchanges = m_world.exchanges();
        return withoutProgress(log.entries()) == m_setting.job->ends && exchanges.size() > before
               && !exchanges.last().notifications.isEmpty();
    };
    if (!World::wait(complete, kLong)) {
        *error = u"the job fails: "_s + log.entries().join(u" | "_s);
        return std::nullopt;
    }
    m_world.settle();
    return Healthy{m_world.exchanges().mid(before), digestOf(session), {}, {}};
}

QStringList CaseRunner::run(const Case &each, const Healthy &healthy, bool watched)
{
    SignalLog log;
    VardaSession session;
    log.watch(&session);
    QStringList wrong = runFaulty(each, session, log, watched);
    wrong += letGo(session, log, m_after);
    wrong += recover(each, healthy);
    // Nothing that belonged to the first session may speak any more.
    if (!log.entries().isEmpty())
        wrong += complain(u"after it was let go"_s, log.entries());
    return wrong;
}

QStringList CaseRunner::runFaulty(const Case &each, VardaSession &session, SignalLog &log,
                                  bool watched)
{
    m_after = After::Up;
    load(each.device, each.faults);
    switch (each.stage) {
    case Case::BeforeConnection:
        m_world.perform(each.deeds);
        connectTo(session, each.scan);
        break;
    case Case::Connection:
        if (!each.event.isEmpty())
            m_world.at(each.event, each.command, each.nth, each.deeds);
        connectTo(session, each.scan);
        break;
    case Case::BetweenJobs:
        if (!connectAndPrepare(session, log, each.scan))
            return complain(u"no connection"_s, log.entries());
        m_world.perform(each.deeds);
        World::wait([&] { return m_world.isDone(); }, each.patience);
        World::wait([] { return false; }, 200);
        m_setting.job->start(session);
        break;
    case Case::DuringJob:
        if (!connectAndPrepare(session, log, each.scan))
            return complain(u"no connection"_s, log.entries());
        m_world.at(each.event, each.command, each.nth, each.deeds);
        m_setting.job->start(session);
        break;
    }

    std::ignore = awaitOutcome(each, log, watched);
    const QStringList is = withoutProgress(log.take());
    for (const Outcome &outcome : each.expected) {
        if (matches(is, outcome.entries)) {
            m_after = outcome.after;
            return {};
        }
    }
    m_after = is.contains("disconnectController"_L1) || is.contains("NotCreated"_L1)
                  ? (is.join(u' ').contains("BLE error"_L1) ? After::Gone : After::Down)
                  : After::Up;
    if (each.expected.isEmpty() && hasEnded(is) && is.count(u"disconnectController"_s) <= 1)
        return {};
    QStringList should;
    for (const Outcome &outcome : each.expected)
        should.append(u"[%1]"_s.arg(outcome.entries.join(u" | "_s)));
    return {u"told [%1] instead of %2"_s.arg(is.join(u" | "_s), should.join(u" or "_s))};
}

bool CaseRunner::awaitOutcome(const Case &each, const SignalLog &log, bool watched) const
{
    const auto decided = [&] {
        if (!each.deeds.isEmpty() && !m_world.isDone())
            return false;
        const QStringList is = withoutProgress(log.entries());
        const auto found = std::ranges::find_if(
            each.expected, [&](const Outcome &outcome) { return matches(is, outcome.entries); });
        if (found == each.expected.end() || found->watched)
            return false;
        // Not if another one goes on from there.
        return std::ranges::none_of(each.expected, [&](const Outcome &outcome) {
            return outcome.entries.size() > is.size()
                   && matches(is, outcome.entries.first(is.size()));
        });
    };
    const bool soon = World::wait([&] { return !watched && decided(); }, each.patience);
    if (soon)
        World::wait([] { return false; }, 100);
    return soon;
}

QStringList CaseRunner::letGo(VardaSession &session, SignalLog &log, After after) const
{
    session.controllerDisconnect();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QStringList should;
    if (after != After::Gone)
        should += u"message Disconnect from device"_s;
    if (after == After::Up)
        should += u"disconnectController"_s;
    QStringList wrong;
    const QStringList is = log.take();
    if (is != should)
        wrong += complain(u"letting go told"_s, is);
    if (!session.children().isEmpty())
        wrong += u"the session still has %1 children"_s.arg(session.children().size());
    if (session.isConnected())
        wrong += u"the session still says it is connected"_s;
    return wrong;
}

QStringList CaseRunner::recover(const Case &each, const Healthy &healthy)
{
    // A computer that the system has forgotten is found again by a scan.
    const bool forgotten = std::ranges::any_of(
        each.deeds, [](const Deed &deed) { return deed.kind == Deed::RemoveDevice; });
    if (m_world.heal() || each.newWorld || m_setting.job->consumes)
        load();

    VardaSession session;
    SignalLog log;
    log.watch(&session);
    if (!connectAndPrepare(session, log, forgotten))
        return complain(u"no connection afterwards"_s, log.entries());
    const auto &ends = m_setting.job->ends;
    m_setting.job->start(session);
    const auto complete = [&] { return withoutProgress(log.entries()).size() >= ends.size(); };
    World::wait(complete, kLong);
    if (withoutProgress(log.entries()) != ends)
        return complain(u"the job fails afterwards"_s, log.entries());
    if (digestOf(session) != healthy.digest)
        return {u"the job has another result afterwards"_s};
    return {};
}

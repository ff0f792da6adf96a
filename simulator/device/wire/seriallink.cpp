// SPDX-License-Identifier: MIT
#include "device/wire/seriallink.h"

#include "device/wire/pieces.h"
#include "device/wire/spoil.h"

#include <algorithm>

namespace simulator {

namespace {

// An endless answer leaves room for everything else.
constexpr int kRepetition = 1;

} // namespace

SerialLink::SerialLink(const DeviceScenario &scenario, FaultPlan &faults, QObject *parent)
    : QObject(parent),
      m_scenario(scenario),
      m_faults(faults),
      m_computer(scenario),
      m_mtu(scenario.mtu)
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        m_sentInPace = 0;
        pump();
    });
    m_replayClock.start();
    m_replayTimer.setSingleShot(true);
    m_replayTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_replayTimer, &QTimer::timeout, this, &SerialLink::runDue);
    m_repetition.setSingleShot(true);
    connect(&m_repetition, &QTimer::timeout, this, &SerialLink::repeatEndlessly);
}

void SerialLink::reset()
{
    ++m_generation;
    m_endless.clear();
    m_repetition.stop();
    m_planned.clear();
    m_replayTimer.stop();
    m_assembler.clear();
    m_queue.clear();
    m_pause.stop();
    m_sentInPace = 0;
    m_credits = 0;
    m_toldExhausted = false;
}

void SerialLink::setLinkMtu(int mtu)
{
    m_mtu = std::min(mtu, m_scenario.mtu);
}

void SerialLink::written(const QByteArray &bytes)
{
    if (m_scenario.replay) {
        replay(bytes);
        return;
    }
    const quint64 generation = m_generation;
    m_assembler.feed(bytes);
    while (const std::optional<Frame> request = m_assembler.next()) {
        handle(*request);
        if (generation != m_generation)
            return;
    }
}

void SerialLink::replay(const QByteArray &request)
{
    const RecordedRequest *const answer = m_scenario.replay->find(request);
    if (!answer)
        return;
    for (const RecordedRequest::Notification &each : answer->notifications)
        schedule(each.ms, [this, bytes = each.bytes] { Q_EMIT notification(bytes); });
    if (answer->calamityMs)
        schedule(*answer->calamityMs, [this, fault = answer->calamity] { Q_EMIT calamity(fault); });
    if (answer->linkDownMs)
        schedule(*answer->linkDownMs, [this] { Q_EMIT linkDropped(); });
}

/** Not before what is planned already. */
void SerialLink::schedule(double ms, const std::function<void()> &what)
{
    const qint64 due = m_replayClock.elapsed() + m_scenario.replay->paced(ms);
    m_planned.append({m_planned.isEmpty() ? due : std::max(due, m_planned.last().due), what});
    if (!m_replayTimer.isActive())
        m_replayTimer.start(std::max(0, int(m_planned.first().due - m_replayClock.elapsed())));
}

void SerialLink::runDue()
{
    const quint64 generation = m_generation;
    while (!m_planned.isEmpty() && m_planned.first().due <= m_replayClock.elapsed()) {
        const Planned next = m_planned.takeFirst();
        next.what();
        if (generation != m_generation)
            return;
    }
    if (!m_planned.isEmpty())
        m_replayTimer.start(std::max(0, int(m_planned.first().due - m_replayClock.elapsed())));
}

void SerialLink::creditsGranted(const QByteArray &bytes)
{
    const int granted = bytes.isEmpty() ? 0 : quint8(bytes.front());
    m_credits += granted;
    m_toldExhausted = false;
    Q_EMIT credits(QStringLiteral("credits"), granted, m_queue.size());
    pump();
}

void SerialLink::handle(const Frame &request)
{
    // Whatever is still being said, a new request ends it.
    m_endless.clear();
    m_repetition.stop();
    const std::optional<Fault> fault = m_faults.next(Step::Answer, request.command);
    const QList<QByteArray> notifications = answerTo(request, fault);

    if (fault && fault->kind == FaultKind::Silent)
        return;
    if (fault && fault->kind == FaultKind::Drop) {
        later(fault->ms, [this] { Q_EMIT linkDropped(); });
        return;
    }
    if (fault && isCalamity(fault->kind)) {
        Q_EMIT calamity(*fault);
        if (fault->kind != FaultKind::Freeze)
            return;
    }
    if (!m_endless.isEmpty())
        m_repetition.start();
    const bool waits = fault && fault->kind != FaultKind::Endless && !isCalamity(fault->kind);
    later(waits ? fault->ms : 0,
          [this, command = request.command, notifications] { send(command, notifications); });
}

QList<QByteArray> SerialLink::answerTo(const Frame &request, const std::optional<Fault> &fault)
{
    if (fault && fault->kind == FaultKind::Refuse)
        return {encodeFrame({request.command, QByteArray(1, '\0')})};

    const auto exact = m_scenario.responses.constFind(request.command);
    if (exact != m_scenario.responses.constEnd() && exact->raw)
        return exact->parts;

    QList<Frame> answer;
    if (exact != m_scenario.responses.constEnd()) {
        for (const QByteArray &payload : exact->parts)
            answer.append(Frame{request.command, payload});
    } else {
        answer = m_computer.answer(request);
    }

    QList<QByteArray> frames;
    for (const Frame &frame : std::as_const(answer))
        frames.append(encodeFrame(frame));
    if (fault)
        spoilAnswer(frames, *fault);
    if (fault && fault->kind == FaultKind::Endless && !frames.isEmpty()) {
        m_repetition.setInterval(std::max(fault->ms, kRepetition));
        for (const QByteArray &bytes : cut({frames.last()}))
            m_endless.append({bytes, request.command, false});
    }
    return cut(frames);
}

QList<QByteArray> SerialLink::cut(const QList<QByteArray> &frames) const
{
    // The module sends what the computer has handed over so far; between two frames it has the
    // time to do so, unless the scenario wants them as one stream.
    const QList<QByteArray> streams = m_scenario.merge ? QList<QByteArray>{frames.join()} : frames;
    const int size = m_scenario.split > 0 ? m_scenario.split : m_mtu - 3;

    QList<QByteArray> notifications;
    for (const QByteArray &stream : streams)
        notifications.append(inPieces(stream, size));
    return notifications;
}

void SerialLink::send(quint8 command, const QList<QByteArray> &notifications)
{
    for (const QByteArray &bytes : notifications)
        m_queue.enqueue({bytes, command, false});
    pump();
}

void SerialLink::pump()
{
    while (!m_queue.isEmpty() && !m_pause.isActive()) {
        if (m_scenario.countCredits && m_credits == 0) {
            if (!m_toldExhausted)
                Q_EMIT credits(QStringLiteral("creditsExhausted"), 0, m_queue.size());
            m_toldExhausted = true;
            return;
        }
        if (!sendFirst())
            return;
        if (m_scenario.paceMs > 0 && ++m_sentInPace >= m_scenario.paceCount)
            m_pause.start(m_scenario.paceMs);
    }
}

// Whether the queue may go on: a fault may hold it up or end the link.
bool SerialLink::sendFirst()
{
    const quint64 generation = m_generation;
    Chunk chunk = m_queue.dequeue();
    std::optional<Fault> fault;
    if (!chunk.heldBack)
        fault = m_faults.next(Step::Notification, chunk.command);
    if (fault && fault->kind == FaultKind::Swap && !m_queue.isEmpty()) {
        chunk.heldBack = true;
        m_queue.insert(1, chunk);
        return true;
    }
    if (fault && holdUp(*fault, chunk))
        return false;
    if (fault && fault->kind == FaultKind::Merge && !m_queue.isEmpty())
        chunk.bytes += m_queue.dequeue().bytes;

    const QList<QByteArray> sent = fault ? spoiltNotification(chunk.bytes, *fault)
                                         : QList<QByteArray>{chunk.bytes};
    if (m_scenario.countCredits)
        --m_credits;
    return std::ranges::all_of(sent, [&](const QByteArray &bytes) {
        Q_EMIT notification(bytes);
        return generation == m_generation;
    });
}

bool SerialLink::holdUp(const Fault &fault, const Chunk &chunk)
{
    switch (fault.kind) {
    case FaultKind::Late:
        m_queue.prepend({chunk.bytes, chunk.command, true});
        m_pause.start(fault.ms);
        return true;
    case FaultKind::Drop:
        m_queue.clear();
        m_endless.clear();
        later(fault.ms, [this] { Q_EMIT linkDropped(); });
        return true;
    case FaultKind::Freeze:
        Q_EMIT calamity(fault);
        return false;
    default:
        break;
    }
    if (!isCalamity(fault.kind))
        return false;
    m_queue.clear();
    m_endless.clear();
    Q_EMIT calamity(fault);
    return true;
}

void SerialLink::repeatEndlessly()
{
    if (m_endless.isEmpty())
        return;
    // What is not sent for want of credits does not pile up.
    if (m_queue.isEmpty())
        m_queue.append(m_endless);
    m_repetition.start();
    pump();
}

void SerialLink::later(int ms, const std::function<void()> &what)
{
    if (ms == 0) {
        what();
        return;
    }
    QTimer::singleShot(ms, this, [this, generation = m_generation, what] {
        if (generation == m_generation)
            what();
    });
}

} // namespace simulator

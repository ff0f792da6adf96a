// SPDX-License-Identifier: MIT
#include "device/seriallink.h"

#include "device/commands.h"

namespace simulator {

namespace {

void spoil(QByteArray &frame, const Fault &fault)
{
    switch (fault.kind) {
    case FaultKind::WrongCrc:
        frame[4] = char(frame[4] ^ 0x5A);
        break;
    case FaultKind::WrongStart:
        frame[1] = char(0xDD);
        break;
    case FaultKind::WrongCommand: {
        const auto other = quint8(fault.bytes.isEmpty() ? 0 : fault.bytes.front());
        frame = encodeFrame({other, frame.mid(9)});
        break;
    }
    case FaultKind::Garbage:
        frame = fault.bytes;
        break;
    case FaultKind::Truncate:
        frame.truncate(fault.keep >= 0 ? fault.keep : frame.size() - 1);
        break;
    default:
        break;
    }
}

} // namespace

SerialLink::SerialLink(const DeviceScenario &scenario, FaultPlan &faults, QObject *parent)
    : QObject(parent), m_scenario(scenario), m_faults(faults), m_computer(scenario)
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        m_sentInPace = 0;
        pump();
    });
}

void SerialLink::reset()
{
    ++m_generation;
    m_assembler.clear();
    m_queue.clear();
    m_pause.stop();
    m_sentInPace = 0;
    m_credits = 0;
    m_toldExhausted = false;
}

void SerialLink::written(const QByteArray &bytes)
{
    const quint64 generation = m_generation;
    m_assembler.feed(bytes);
    while (const std::optional<Frame> request = m_assembler.next()) {
        handle(*request);
        if (generation != m_generation)
            return;
    }
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
    const std::optional<Fault> fault = m_faults.next(Step::Answer, request.command);
    const QList<QByteArray> notifications = answerTo(request, fault);

    if (fault && fault->kind == FaultKind::Silent)
        return;
    if (fault && fault->kind == FaultKind::Drop) {
        later(fault->ms, [this] { Q_EMIT linkDropped(); });
        return;
    }
    later(fault ? fault->ms : 0,
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
    if (fault && fault->frame <= frames.size()) {
        QByteArray &frame = frames[fault->frame - 1];
        spoil(frame, *fault);
        if (fault->kind == FaultKind::Duplicate)
            frames.insert(fault->frame, QByteArray(frame));
    }
    return cut(frames);
}

QList<QByteArray> SerialLink::cut(const QList<QByteArray> &frames) const
{
    // The module sends what the computer has handed over so far; between two frames it has the
    // time to do so, unless the scenario wants them as one stream.
    const QList<QByteArray> streams = m_scenario.merge ? QList<QByteArray>{frames.join()} : frames;
    const int size = m_scenario.split > 0 ? m_scenario.split : m_scenario.mtu - 3;

    QList<QByteArray> notifications;
    for (const QByteArray &stream : streams) {
        for (qsizetype at = 0; at < stream.size(); at += size)
            notifications.append(stream.mid(at, size));
    }
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
    if (fault && fault->kind == FaultKind::Late) {
        chunk.heldBack = true;
        m_queue.prepend(chunk);
        m_pause.start(fault->ms);
        return false;
    }
    if (m_scenario.countCredits)
        --m_credits;

    if (fault && fault->kind == FaultKind::Drop) {
        m_queue.clear();
        later(fault->ms, [this] { Q_EMIT linkDropped(); });
        return false;
    }
    if (fault && fault->kind == FaultKind::Lost)
        return true;

    QByteArray bytes = chunk.bytes;
    if (fault && fault->kind == FaultKind::Empty)
        bytes.clear();
    if (fault && fault->kind == FaultKind::Garbage)
        bytes = fault->bytes;
    Q_EMIT notification(bytes);
    if (fault && fault->kind == FaultKind::Duplicate && generation == m_generation)
        Q_EMIT notification(bytes);
    return generation == m_generation;
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

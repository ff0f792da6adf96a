// SPDX-License-Identifier: MIT
#include <varda/vardatraceframe.h>

#include "protocol/crc16_p.h"
#include "protocol/frame_p.h"

using namespace Qt::StringLiterals;

namespace {

using Event = VardaTraceEvent;
using TidemarCommand::TidemarCommandIn;

/** Bytes of one direction, and the frames in them. */
class Stream
{
public:
    Stream(bool isRequest, QList<VardaTraceFrame> &frames)
        : m_isRequest(isRequest), m_frames(frames)
    {
    }

    void add(const Event &event, qsizetype index)
    {
        if (m_bytes.isEmpty())
            begin(event, index);
        m_bytes += event.bytes;
        m_endAt = event.at;
        m_last = index;
        while (takeFrame())
            begin(event, index);
        if (!m_bytes.isEmpty() && !mayBecomeFrame())
            end(VardaTraceFrame::NoFrame);
    }

    /** Nothing comes behind what has come. */
    void end() { end(VardaTraceFrame::CutShort); }

private:
    void begin(const Event &event, qsizetype index)
    {
        m_at = event.at;
        m_first = index;
    }

    [[nodiscard]] bool mayBecomeFrame() const
    {
        return quint8(m_bytes[0]) == Frame::kStx
               && (m_bytes.size() == 1 || quint8(m_bytes[1]) == Frame::kStx);
    }

    bool takeFrame()
    {
        if (!Frame::startsFrame(m_bytes))
            return false;
        const auto [length, crc] = Frame::parseHeader(m_bytes);
        if (m_bytes.size() < Frame::kHeaderSize + length)
            return false;
        const QByteArray body = m_bytes.mid(Frame::kHeaderSize, length);
        VardaTraceFrame frame = next();
        if (body.isEmpty())
            frame.state = VardaTraceFrame::NoFrame;
        else if (Crc16::computeCrc(body) != crc)
            frame.state = VardaTraceFrame::WrongChecksum;
        if (!body.isEmpty())
            frame.command = TidemarCommandIn(quint8(body[0]));
        frame.payload = body.mid(1);
        m_frames.append(frame);
        m_bytes.remove(0, Frame::kHeaderSize + length);
        return true;
    }

    void end(VardaTraceFrame::State state)
    {
        if (m_bytes.isEmpty())
            return;
        VardaTraceFrame frame = next();
        frame.state = state;
        frame.payload = m_bytes;
        m_frames.append(frame);
        m_bytes.clear();
    }

    [[nodiscard]] VardaTraceFrame next() const
    {
        VardaTraceFrame frame;
        frame.isRequest = m_isRequest;
        frame.at = m_at;
        frame.endAt = m_endAt;
        frame.firstEvent = m_first;
        frame.lastEvent = m_last;
        return frame;
    }

    bool m_isRequest;
    QList<VardaTraceFrame> &m_frames;
    QByteArray m_bytes;
    qint64 m_at = 0;
    qint64 m_endAt = 0;
    qsizetype m_first = 0;
    qsizetype m_last = 0;
};

} // namespace

QList<VardaTraceFrame> VardaTraceFrame::in(const VardaTraceFile &trace)
{
    QList<VardaTraceFrame> frames;
    Stream requests(true, frames);
    Stream answers(false, frames);
    for (qsizetype i = 0; i < trace.events.size(); ++i) {
        const Event &event = trace.events[i];
        switch (event.kind) {
        case Event::Write:
            // On other characteristics there are no frames.
            if (event.fields.contains("characteristic"_L1))
                break;
            // Who asks again no longer waits for the rest of an answer.
            answers.end();
            requests.add(event, i);
            break;
        case Event::Notification:
            requests.end();
            answers.add(event, i);
            break;
        case Event::Silence:
        case Event::Connect:
        case Event::Disconnect:
        case Event::Down:
            requests.end();
            answers.end();
            break;
        default:
            break;
        }
    }
    requests.end();
    answers.end();
    return frames;
}

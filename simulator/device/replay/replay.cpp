// SPDX-License-Identifier: MIT
#include "device/replay/replay.h"

#include "device/commands.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

constexpr qsizetype kCommandAt = 8;
constexpr qsizetype kShown = 40;

int commandOf(const QByteArray &request)
{
    return request.size() > kCommandAt ? quint8(request[kCommandAt]) : -1;
}

/** It carries the time at which it is sent. */
bool setsTime(const QByteArray &request)
{
    return commandOf(request) == SetTime;
}

bool isSame(const QByteArray &one, const QByteArray &other)
{
    return one == other || (setsTime(one) && setsTime(other));
}

QString shown(const QByteArray &bytes)
{
    const QString hex = QString::fromLatin1(bytes.left(kShown).toHex());
    return bytes.size() > kShown ? hex + u"… (%1 bytes)"_s.arg(bytes.size()) : hex;
}

/** Bytes that differ; what is longer differs there. */
qsizetype distance(const QByteArray &one, const QByteArray &other)
{
    const qsizetype common = std::min(one.size(), other.size());
    qsizetype different = std::max(one.size(), other.size()) - common;
    for (qsizetype i = kCommandAt; i < common; ++i)
        different += one[i] != other[i] ? 1 : 0;
    return different;
}

} // namespace

int Replay::paced(double ms) const
{
    if (m_speed <= 0)
        return 0;
    return int(std::min(ms / m_speed, double(std::numeric_limits<int>::max())));
}

const RecordedRequest *Replay::find(const QByteArray &request)
{
    qsizetype used = nextLike(request, true);
    if (used < 0) {
        used = nextLike(request, false);
        if (used < 0)
            used = nearest(request);
        report(request, used);
    }
    if (used < 0)
        return nullptr;
    m_asked[used] = true;
    return &m_requests.at(used);
}

/** The first that was not asked, or else the last; -1 if there is none. */
qsizetype Replay::nextLike(const QByteArray &request, bool unasked) const
{
    qsizetype last = -1;
    for (qsizetype i = 0; i < m_requests.size(); ++i) {
        if (!isSame(m_requests[i].bytes, request))
            continue;
        if (!unasked)
            last = i;
        else if (!m_asked[i])
            return i;
    }
    return last;
}

qsizetype Replay::nearest(const QByteArray &request) const
{
    qsizetype best = -1;
    qsizetype bestDistance = std::numeric_limits<qsizetype>::max();
    for (qsizetype i = 0; i < m_requests.size(); ++i) {
        const qsizetype here = distance(m_requests[i].bytes, request);
        if (commandOf(m_requests[i].bytes) == commandOf(request) && here < bestDistance) {
            best = i;
            bestDistance = here;
        }
    }
    return best;
}

void Replay::report(const QByteArray &got, qsizetype used) const
{
    if (!m_report)
        return;
    if (used >= 0 && isSame(m_requests[used].bytes, got)) {
        m_report(u"line %1: expected no other request like this one, got %2 again"_s
                     .arg(m_requests[used].line)
                     .arg(shown(got)));
    } else if (used >= 0) {
        m_report(u"line %1: expected %2, got %3"_s.arg(m_requests[used].line)
                     .arg(shown(m_requests[used].bytes), shown(got)));
    } else {
        m_report(
            u"expected no request with this command, got %1; it is not answered"_s.arg(shown(got)));
    }
}

void Replay::reportUnasked() const
{
    if (!m_report)
        return;
    for (qsizetype i = 0; i < m_requests.size(); ++i) {
        if (!m_asked[i])
            m_report(u"line %1: expected %2, got nothing"_s.arg(m_requests[i].line)
                         .arg(shown(m_requests[i].bytes)));
    }
}

} // namespace simulator

// SPDX-License-Identifier: MIT
#include "commands/serve/outlet.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

namespace {

constexpr qsizetype kBehind = 4 << 20;
constexpr qsizetype kCaughtUp = kBehind / 4;

/** Whether a pipe takes PIPE_BUF bytes without waiting. */
bool hasRoom(int file)
{
    pollfd state{.fd = file, .events = POLLOUT, .revents = 0};
    return ::poll(&state, 1, 0) == 1;
}

} // namespace

Outlet::Outlet(int file)
    : m_file(file), m_room(file, QSocketNotifier::Write), m_reader(file, QSocketNotifier::Exception)
{
    m_room.setEnabled(false);
    connect(&m_room, &QSocketNotifier::activated, this, &Outlet::write);
    connect(&m_reader, &QSocketNotifier::activated, this, [this] { fail(EPIPE); });
}

void Outlet::send(const QByteArray &line)
{
    if (m_hasFailed)
        return;
    m_waiting += line;
    m_waiting += '\n';
    m_room.setEnabled(true);
    updateBehind();
}

void Outlet::write()
{
    qsizetype done = 0;
    while (done < m_waiting.size() && hasRoom(m_file)) {
        const auto part = std::min<qsizetype>(m_waiting.size() - done, PIPE_BUF);
        const auto written = ::write(m_file, m_waiting.constData() + done, std::size_t(part));
        if (written < 0 && (errno == EINTR || errno == EAGAIN))
            break;
        if (written < 0)
            return fail(errno);
        done += written;
    }
    m_waiting.remove(0, done);
    updateBehind();
    if (!m_waiting.isEmpty())
        return;
    m_room.setEnabled(false);
    Q_EMIT emptied();
}

void Outlet::updateBehind()
{
    const bool isBehind = m_waiting.size() > (m_isBehind ? kCaughtUp : kBehind);
    if (std::exchange(m_isBehind, isBehind) != isBehind)
        Q_EMIT behindChanged();
}

void Outlet::fail(int error)
{
    m_room.setEnabled(false);
    m_reader.setEnabled(false);
    m_waiting.clear();
    if (std::exchange(m_hasFailed, true))
        return;
    updateBehind();
    Q_EMIT failed(error);
}

// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qobject.h>
#include <QtCore/qsocketnotifier.h>

/**
 * Lines for a reader that takes its time: nothing here waits for it, because a computer does not
 * wait either.
 */
class Outlet : public QObject
{
    Q_OBJECT

public:
    explicit Outlet(int file);

    void send(const QByteArray &line);
    [[nodiscard]] bool isEmpty() const { return m_waiting.isEmpty(); }
    /** Whether so much waits for the reader that no more ought to be asked for. */
    [[nodiscard]] bool isBehind() const { return m_isBehind; }

Q_SIGNALS:
    void behindChanged();
    void emptied();
    void failed(int error); ///< errno; nothing can be sent any more

private:
    void write();
    void updateBehind();
    void fail(int error);

    int m_file;
    QByteArray m_waiting;
    bool m_isBehind = false;
    bool m_hasFailed = false;
    QSocketNotifier m_room;
    QSocketNotifier m_reader; ///< nobody reads any more
};

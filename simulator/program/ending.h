// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qsocketnotifier.h>

#include <memory>

namespace simulator {

/** SIGTERM and SIGINT as events, so that everything is taken down in order. */
class StopSignals
{
public:
    StopSignals();
    ~StopSignals();
    Q_DISABLE_COPY_MOVE(StopSignals)

    /** Readable when a signal has come. */
    [[nodiscard]] int fd() const { return m_fd; }
    /** The signal that has come, 0 for none. */
    int take() const;

    /** For children: a blocked signal stays blocked over exec. */
    static void unblock();

private:
    int m_fd = -1;
};

/** Ends the program when its standard input is closed. */
[[nodiscard]] std::unique_ptr<QSocketNotifier> endWithStdin();

} // namespace simulator

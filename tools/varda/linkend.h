// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qpointer.h>

#include <chrono>

/**
 * The real end of a session's links. A session is done with a link when it has asked for its end;
 * bluetoothd takes two to three seconds more to drop it, and a command that is started meanwhile
 * would connect to the link that is about to go.
 */
class LinkEnd : public QObject
{
    Q_OBJECT

public:
    /** Made before the session connects; it must not outlive that. */
    explicit LinkEnd(QObject *session);

    [[nodiscard]] bool isDown() const;
    /** Runs the event loop until no link is left, the service has ended, or the time is up. */
    void wait(std::chrono::milliseconds longest);

    bool eventFilter(QObject *parent, QEvent *event) override;

private:
    QObject *m_session;
    // Controllers are among them. They outlive the session's own objects while they disconnect.
    QList<QPointer<QObject>> m_parts;
};

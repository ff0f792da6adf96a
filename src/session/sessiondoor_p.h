// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardasession.h>

#include <optional>

class LinkObserver;
class LinkTap;
class VardaData;

/**
 * What the jobs see and switch on a session of their own, beyond its public face. An application's
 * session has none of this.
 */
class SessionDoor
{
public:
    explicit SessionDoor(VardaSession &session) : m_session(session) { }

    /** From the next link on; nobody() ends it at once. Not owned. */
    void observe(LinkObserver *observer);
    /** Listens in on all links, before the observer; null for none. Not owned. */
    void listen(LinkTap *tap);
    /** Before connecting: the kind of link follows from the services, answers are of any length. */
    void liftLimits(bool findsMode);
    /** What was decoded, so that a record can be emptied before it is read again. */
    [[nodiscard]] VardaData &data();
    void clearActiveLayouts();
    /** One whose answer was lost no longer keeps the next from being sent. */
    void forgetPressure();

    /** An upload or a layout under way sends nothing after the answer that it waits for. */
    void stopSteps();
    [[nodiscard]] qint64 uploadResumedAt() const;
    /** Whether all of the image has been sent, and the end of it. */
    [[nodiscard]] bool uploadEndSent() const;

    /** As the system reports it: 0 without a link, below 0 where it does not. */
    [[nodiscard]] int mtu() const;
    /** Whether answers to that command are collected until the line is quiet. */
    [[nodiscard]] static BleMode modeOf(const QList<QBluetoothUuid> &services);
    [[nodiscard]] static bool collectsAnswers(TidemarCommand::TidemarCommandIn command);

private:
    VardaSession &m_session;
};

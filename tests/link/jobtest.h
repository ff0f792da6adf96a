// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <varda/vardasession.h>

#include "linktest.h"

/** What the tests of jobs have in common: a session that is connected to a computer. */
class JobTest : public LinkTest
{
    Q_OBJECT

protected:
    /**
     * Makes a world of one computer and connects a new session to it; the log is empty then.
     *
     * @param keys  members of the device in the scenario
     * @return what went wrong
     */
    [[nodiscard]] QString connectTo(const QByteArray &keys, BleMode mode = BleMode::Gatt);
    /** connectTo() for a computer that gives exactly these answers. */
    [[nodiscard]] QString connectToAnswers(const QByteArray &responses);

    /** The member of "responses" in which a command is answered by frames of these payloads. */
    [[nodiscard]] static QByteArray answer(const char *command, const QList<QByteArray> &payloads);

    /** Starts a job and waits for its end; all that was told up to then. */
    [[nodiscard]] QStringList told(const std::function<void()> &job, const QString &end);
    [[nodiscard]] QStringList told(TidemarCommand::TidemarCommandIn command, const QString &end);

    /** Code and payload of every frame that has arrived, in hex. */
    [[nodiscard]] static QStringList sent();

    std::unique_ptr<VardaSession> m_session;
};

/** Connects or stops the test with what is wrong. */
#define CONNECT(CONNECTING) QCOMPARE(CONNECTING, QString())

// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>

// What frames are and what answers do, written down apart from the library.

/** One answer, or the damaged one that ends all. */
struct Answer {
    int command = 0;
    QByteArray payload;
    bool isDamaged = false;

    bool operator==(const Answer &) const = default;
};

[[nodiscard]] QByteArray frameOf(int command, const QByteArray &payload);
/** The answers in all that came until it was looked at. */
[[nodiscard]] QList<Answer> answersIn(QByteArray bytes);
/** Whether the answer is what came until the line is quiet. */
[[nodiscard]] bool isCollected(int command);
/** Ends the process unless @p frame is one whole, sound frame. */
void checkFrame(const QByteArray &frame);
/** 0 of no frame. */
[[nodiscard]] int commandOf(const QByteArray &frame);
[[nodiscard]] QByteArray payloadOf(const QByteArray &frame);

/** What an application hears of one answer, and what is sent at once. */
struct Outcome {
    enum Told { Nothing, Ended, Refused, LinkDropped };

    Told told = Nothing;
    int command = 0;
    int error = 0;
    bool maySend = false; ///< the next step of an upload, or the end of one

    [[nodiscard]] static Outcome of(const Answer &answer);
};

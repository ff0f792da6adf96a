// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>

#include <functional>

#include <varda/vardasession.h>

#include "computerjobs.h"

/** Something that an application asks of a computer. */
struct Job {
    QString name;
    std::function<void(VardaSession &)> start;
    /** What the session tells when all is well, but for its progress. */
    QStringList ends;
    /** Whether its answer comes in many notifications, ended by a quiet line. */
    bool collected = false;
    /** Whether a second run finds another computer than the first. */
    bool consumes = false;
    /** Jobs that have to come before it. */
    QList<TidemarCommand::TidemarCommandIn> before = {TidemarCommand::Identification};
    /** The other layer's; then what belongs to sessions is empty. */
    ComputerJob computer = {};
};

[[nodiscard]] const QList<Job> &allJobs();

/** Bytes that differ from their neighbours. */
[[nodiscard]] QByteArray pattern(qsizetype size);
/** A firmware of that type word: five blocks of the default size. */
[[nodiscard]] QByteArray image(quint32 magic);

/**
 * All that a session learned, as text: each field of each record. Only the duration of an upload,
 * which differs from run to run, is left out.
 */
[[nodiscard]] QByteArray digestOf(const VardaSession &session);

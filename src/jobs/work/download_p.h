// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qpointer.h>

#include <functional>

#include <varda/downloadjob.h>

#include "jobs/work/readings_p.h"

/** Reads the headers, then each dive that is wanted, the oldest first. */
class DownloadWork final : public Work
{
public:
    explicit DownloadWork(const QList<std::uint16_t> &known);

    const Request *next() override { return &m_request; }
    bool isComplete() const override { return m_stage == Stage::Dives && m_left.isEmpty(); }
    void done(VardaSession &session, Exchange &exchange) override;
    bool failed(const JobEnd &end) override;
    bool interrupted(const JobEnd &end) override;
    bool isHeld() const override;
    QVariant result() override { return m_read; }

    void setKnown(const QList<std::uint16_t> &known) { m_known.replace(known); }

    QPointer<DownloadJob> job;
    std::function<bool(const TidemarDiveHeader &)> wanted;         ///< none: what is not known
    std::function<bool(const QList<TidemarDiveHeader> &)> trusted; ///< none: always
    QList<std::uint16_t> damaged;
    QList<TidemarDiveHeader> headers;
    bool held = false;

private:
    enum class Stage { SerialNumber, Configuration, Logbook, Dives };

    void goOnAfterComputer();
    void onHeaders(const VardaSession &session);
    void onDive(const VardaSession &session);
    void giveUpDive(const JobEnd &end);

    KnownDives m_known;
    Stage m_stage = Stage::SerialNumber;
    Request m_request;
    QList<TidemarDiveHeader> m_left;
    qint64 m_all = 0;
    qint64 m_read = 0;
    int m_silentDives = 0; ///< in succession
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <cstdint>
#include <functional>

#include <varda/dive.h>
#include <varda/divesample.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardajob.h>

/** Reads dives, one after the other, each once and whole; value() is their number. */
class VARDA_EXPORT DownloadJob final : public VardaJob
{
    Q_OBJECT
public:
    /**
     * Asked for each header that comes, also one whose number is known (numbers can start again);
     * by default: number not known. Before the job runs.
     */
    void setWanted(std::function<bool(const TidemarDiveHeader &)> wanted);
    /**
     * Dives that came damaged each time, or that the computer did not send though asked again; the
     * others are read, and error() stays NoError.
     */
    [[nodiscard]] QList<std::uint16_t> damaged() const;
    /** All headers that the computer sent, the oldest first, each number once. */
    [[nodiscard]] QList<TidemarDiveHeader> headers() const;
    /** Bytes of the dive under way, for a smooth progress. */
    [[nodiscard]] qint64 diveBytes() const;

public Q_SLOTS:
    /** Holds before the next dive, for a receiver that is behind; the link stays. */
    void pause();
    void resume();

Q_SIGNALS:
    /** The headers are there, the oldest first: so many dives will be read. */
    void headersRead(const QList<TidemarDiveHeader> &wanted);
    /** A whole dive, once. Its header and samples are what the dive was made of. */
    void diveRead(const Dive &dive, const TidemarDiveHeader &header,
                  const QList<DiveSample> &samples);
    void diveDamaged(std::uint16_t number);

private:
    friend class VardaComputerPrivate;
    friend class DownloadWork;
    explicit DownloadJob(VardaJobPrivate *job);
};

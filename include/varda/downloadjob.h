// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <cstdint>
#include <functional>

#include <varda/dive.h>
#include <varda/divesample.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardaidentity.h>
#include <varda/vardajob.h>

/** Reads dives one after the other, each once and whole; value() is how many. */
class VARDA_EXPORT DownloadJob final : public VardaJob
{
    Q_OBJECT
    Q_PROPERTY(QList<std::uint16_t> damaged READ damaged NOTIFY diveDamaged)
    Q_PROPERTY(QList<TidemarDiveHeader> headers READ headers NOTIFY headersRead)
public:
    /**
     * Decides for each header whether its dive is read, even if its number is known (numbers can
     * start again). By default the number decides. Call it before the job runs.
     */
    void setWanted(std::function<bool(const TidemarDiveHeader &)> wanted);
    /**
     * Replaces the known numbers; call it before the headers are requested, for example when the
     * computer is known (see computerRead()).
     */
    void setKnown(const QList<std::uint16_t> &known);
    /**
     * Checks whether the known numbers still mean the same dives, given the headers that came. If
     * @p trusted returns false, all headers are requested, once. By default they are trusted. Call
     * it before the job runs.
     */
    void setTrusted(std::function<bool(const QList<TidemarDiveHeader> &)> trusted);
    /**
     * Dives that were damaged each time, or that the computer did not send when asked again. The
     * others are read, and error() is still NoError.
     */
    [[nodiscard]] QList<std::uint16_t> damaged() const;
    /** All headers that the computer sent, the oldest first, each number once. */
    [[nodiscard]] QList<TidemarDiveHeader> headers() const;
    /** Bytes received of the current dive, for a smooth progress bar. */
    [[nodiscard]] qint64 diveBytes() const;

public Q_SLOTS:
    /**
     * Waits before the headers and before the next dive, for example until storing has caught up;
     * the link stays up.
     */
    void pause();
    void resume();

Q_SIGNALS:
    /** What the computer is; comes once, before the headers are requested. */
    void computerRead(const VardaIdentity &identity);
    /** The headers of the dives that will be read, the oldest first. */
    void headersRead(const QList<TidemarDiveHeader> &wanted);
    /** A whole dive; comes once for each. It was made from this header and these samples. */
    void diveRead(const Dive &dive, const TidemarDiveHeader &header,
                  const QList<DiveSample> &samples);
    /** A dive that is given up; @p text is one line for people. */
    void diveDamaged(std::uint16_t number, VardaJob::Error error, const QString &text);

private:
    friend class VardaComputerPrivate;
    friend class DownloadWork;
    explicit DownloadJob(VardaJobPrivate *job);
};

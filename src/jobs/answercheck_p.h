// SPDX-License-Identifier: MIT
#pragma once

#include <varda/tidemarcommand.h>

#include <QtCore/qbytearray.h>
#include <QtCore/qbytearrayview.h>

#include <vector>

/** How the answer to a request is made. */
struct AnswerKind {
    enum class End {
        OneFrame,     ///< the answer is one frame
        ClosingFrame, ///< a frame with hardly any payload closes it
        Open,         ///< one frame for each of several requests
    };

    TidemarCommand::TidemarCommandIn command = TidemarCommand::Sync;
    End end = End::OneFrame;
    /** The session joins what comes until the line is quiet; else each notification stands alone. */
    bool isCollected = false;

    [[nodiscard]] static AnswerKind of(TidemarCommand::TidemarCommandIn command);
    [[nodiscard]] bool isOwn(quint8 code) const;
    [[nodiscard]] bool isEnd(quint8 code, int length) const;
};

/** Cuts bytes into frames: DC DC, length, CRC, two bytes, then a body that begins with a code. */
class FrameReader
{
public:
    explicit FrameReader(const AnswerKind &kind) : m_kind(kind) { }

    void add(QByteArrayView bytes);
    /** What comes next is read from its beginning, whatever came before. */
    void startAnew();

    /** Everything so far belongs to whole frames. */
    [[nodiscard]] bool isWhole() const { return !m_hasLeftOver && m_header.isEmpty(); }
    /** The frame that ends the answer has come. */
    [[nodiscard]] bool isEnded() const { return m_isEnded; }
    [[nodiscard]] bool hasLeftOver() const { return m_hasLeftOver; }
    [[nodiscard]] bool hasWrongChecksum() const { return m_hasWrongChecksum; }

private:
    void addToHeader(QByteArrayView &bytes);
    void addToBody(QByteArrayView &bytes);

    AnswerKind m_kind;
    QByteArray m_header; ///< of the frame that is under way
    quint8 m_code = 0;
    int m_left = 0; ///< bytes of the body still to come
    quint16 m_checksum = 0;
    bool m_isEnded = false;
    bool m_hasLeftOver = false;
    bool m_hasWrongChecksum = false;
};

/**
 * Reads the answer to one request beside the session, and knows what the session does not say:
 * what it has dropped, and whether all has come more than once.
 *
 * Equal notifications next to each other can be sound: a diver who stays at one depth, lines of a
 * log, a picture of one colour. So an answer counts as repeated
 * - if all its notifications come in runs of one length, and one of each makes a whole answer. No
 *   sound answer is like that, because its last frame is there once;
 * - if behind its last frame that last notification comes again;
 * - if it begins with what ended the answer to another request.
 * It is doubtful if whole frames equal their neighbours. Then a second answer to the same request
 * decides: it has the same digest unless a part of one of them came more than once.
 */
class AnswerCheck
{
public:
    enum class Finding {
        Sound,
        Doubtful,
        Repeated,
        BeginningLost, ///< more notifications at once than the session keeps
        Incomplete,    ///< the rest of a frame came too late, or never
        InPieces,      ///< whole, but in more notifications than this request allows
        LeftOver,      ///< bytes that belong to no frame, or came behind the end
        WrongChecksum,
    };

    explicit AnswerCheck(TidemarCommand::TidemarCommandIn command);
    /** @param before  the answer to the request before, on the same link */
    AnswerCheck(TidemarCommand::TidemarCommandIn command, const AnswerCheck &before);

    /** The session keeps all notifications. */
    void setUnlimited() { m_isUnlimited = true; }
    void add(const QByteArray &notification);
    /** A second has passed without a notification, or the session has taken what there is. */
    void onQuiet();

    /** What is wrong so far; a frame that is still under way is not. */
    [[nodiscard]] Finding finding() const;
    /** Bytes have come that make it damaged, whatever comes behind them. */
    [[nodiscard]] bool isHopeless() const { return m_taken.hasLeftOver() || m_isRepeated; }
    /** Whether nothing more belongs to this answer, damaged or not. */
    [[nodiscard]] bool isOver() const;
    /** Whether one frame is the last, other than in a job of several steps. */
    [[nodiscard]] bool hasEnd() const { return m_kind.end != AnswerKind::End::Open; }
    /** The same for two answers of the same bytes, however they were cut. */
    [[nodiscard]] quint64 digest() const { return m_digest; }

private:
    /** One of each run of equal notifications. */
    struct OneOfEach {
        int runLength = 0;
        FrameReader reader;
        int inRun = 0;
        bool isPossible = true;
    };

    [[nodiscard]] bool isSecondCopy(const QByteArray &notification);
    [[nodiscard]] bool isWholeAnswerRepeated() const;
    void addToRuns(const QByteArray &notification);
    void addToDigest(QByteArrayView bytes);
    void addToFrames(const QByteArray &notification);
    void note(Finding damage);

    AnswerKind m_kind;
    FrameReader m_taken;  ///< as the session reads it
    FrameReader m_joined; ///< as if no pause and no notification's end had a meaning
    std::vector<OneOfEach> m_runs;
    QByteArray m_before; ///< the last notification of the answer before, where one may still come
    QByteArray m_latest; ///< notification
    QByteArray m_tail;   ///< the last bytes
    bool m_isFirst = true;
    bool m_latestIsWhole = false; ///< and consists of whole frames
    int m_atOnce = 0;             ///< notifications since the last quiet
    quint64 m_digest;
    Finding m_damage = Finding::Sound; ///< the first there was
    bool m_isRepeated = false;
    bool m_isDoubtful = false;
    bool m_isUnlimited = false;
};

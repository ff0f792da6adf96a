// SPDX-License-Identifier: MIT
#include "jobs/answercheck_p.h"

#include <algorithm>
#include <array>

namespace {

constexpr quint8 kStart = 0xDC;
constexpr qsizetype kHeaderSize = 8;
constexpr qsizetype kCodeAt = kHeaderSize;
constexpr int kMostAtOnce = 4096; // what the session keeps
constexpr int kLongestRun = 8;    // programs that are connected to one computer

using Code = TidemarCommand::TidemarCommandIn;

constexpr std::array kCollected = {
    TidemarCommand::Syslog,       TidemarCommand::Computer,           TidemarCommand::Diver,
    TidemarCommand::Logbook,      TidemarCommand::Fullsamples,        TidemarCommand::Owner,
    TidemarCommand::Computer_new, TidemarCommand::SyslogBin,          TidemarCommand::LayoutList,
    TidemarCommand::LayoutGet,    TidemarCommand::BatteryInformation,
};

constexpr std::array kClosed = {
    TidemarCommand::Syslog,      TidemarCommand::Logbook,
    TidemarCommand::Fullsamples, TidemarCommand::GetGases,
    TidemarCommand::SyslogBin,   TidemarCommand::LayoutGet,
    TidemarCommand::LayoutList,  TidemarCommand::BatteryInformation,
};

/** Requests that follow each other in one job, each with a frame as its answer. */
constexpr std::array kSteps = {
    TidemarCommand::Begin_program, TidemarCommand::Program,   TidemarCommand::End_program,
    TidemarCommand::BeginUpdate,   TidemarCommand::LayoutAdd, TidemarCommand::ProgramUpdate,
    TidemarCommand::EndUpdate,
};

template <std::size_t n> bool isIn(const std::array<Code, n> &codes, Code code)
{
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

AnswerKind::End endOf(Code code)
{
    if (isIn(kClosed, code))
        return AnswerKind::End::ClosingFrame;
    return isIn(kSteps, code) ? AnswerKind::End::Open : AnswerKind::End::OneFrame;
}

int word(const QByteArray &bytes, qsizetype at)
{
    return quint8(bytes.at(at)) + 256 * quint8(bytes.at(at + 1));
}

// CRC-16 with polynomial 0x1021, bit by bit: data is shifted in, and 16 zero bits behind it.
constexpr quint16 kChecksumBegin = 0xFFFF;

quint16 shifted(quint16 checksum, unsigned byte)
{
    for (int bit = 7; bit >= 0; --bit) {
        const bool top = (checksum & 0x8000U) != 0;
        checksum = quint16(unsigned(checksum << 1U) | ((byte >> unsigned(bit)) & 1U));
        if (top)
            checksum ^= 0x1021U;
    }
    return checksum;
}

/** The frame without payload that closes an answer. */
QByteArray closingFrame(Code code)
{
    const quint16 checksum = shifted(shifted(shifted(kChecksumBegin, quint8(code)), 0), 0);
    QByteArray frame("\xDC\xDC\x01\0\0\0\0\0\0", kHeaderSize + 1);
    frame[4] = char(checksum & 0xFFU);
    frame[5] = char(checksum >> 8U);
    frame[kCodeAt] = char(code);
    return frame;
}

} // namespace

AnswerKind AnswerKind::of(Code command)
{
    return {command, endOf(command), isIn(kCollected, command)};
}

bool AnswerKind::isOwn(quint8 code) const
{
    // The session reports either as the same.
    if (command == TidemarCommand::DeleteLastDive && code == quint8(TidemarCommand::EraseDives))
        return true;
    return code == quint8(command);
}

bool AnswerKind::isEnd(quint8 code, int length) const
{
    if (end == End::Open || !isOwn(code))
        return false;
    const int longest = command == TidemarCommand::GetGases ? 2 : 1;
    return end == End::OneFrame || length <= longest;
}

void FrameReader::startAnew()
{
    m_header.clear();
    m_hasLeftOver = false;
    m_hasWrongChecksum = false;
}

void FrameReader::add(QByteArrayView bytes)
{
    while (!bytes.isEmpty() && !m_hasLeftOver) {
        if (m_isEnded)
            m_hasLeftOver = true;
        else if (m_header.size() < kHeaderSize)
            addToHeader(bytes);
        else
            addToBody(bytes);
    }
}

void FrameReader::addToHeader(QByteArrayView &bytes)
{
    const qsizetype count = std::min(kHeaderSize - m_header.size(), bytes.size());
    m_header.append(bytes.first(count));
    bytes = bytes.sliced(count);
    if (quint8(m_header.front()) != kStart
        || (m_header.size() > 1 && quint8(m_header.at(1)) != kStart))
        m_hasLeftOver = true;
    if (m_header.size() < kHeaderSize)
        return;
    m_left = word(m_header, 2);
    m_checksum = kChecksumBegin;
    m_hasLeftOver = m_hasLeftOver || m_left == 0;
}

void FrameReader::addToBody(QByteArrayView &bytes)
{
    const int length = word(m_header, 2);
    if (m_left == length)
        m_code = quint8(bytes.front());
    const qsizetype count = std::min<qsizetype>(m_left, bytes.size());
    for (const char byte : bytes.first(count))
        m_checksum = shifted(m_checksum, quint8(byte));
    bytes = bytes.sliced(count);
    m_left -= int(count);
    if (m_left > 0)
        return;
    m_checksum = shifted(shifted(m_checksum, 0), 0);
    m_hasWrongChecksum = m_hasWrongChecksum || m_checksum != word(m_header, 4);
    m_isEnded = m_kind.isEnd(m_code, length);
    m_header.clear();
}

AnswerCheck::AnswerCheck(Code command)
    : m_kind(AnswerKind::of(command)),
      m_taken(m_kind),
      m_joined(m_kind),
      m_digest(0xCBF29CE484222325) // of FNV-1a
{
    if (m_kind.end == AnswerKind::End::Open)
        return;
    for (int length = 2; length <= kLongestRun; ++length)
        m_runs.push_back({length, FrameReader(m_kind)});
}

AnswerCheck::AnswerCheck(Code command, const AnswerCheck &before) : AnswerCheck(command)
{
    // The session waits for the end of an answer that it collects.
    if (!before.m_kind.isCollected)
        m_before = before.m_latest;
}

void AnswerCheck::add(const QByteArray &notification)
{
    if (notification.isEmpty())
        return;
    if (isSecondCopy(notification)) {
        m_isRepeated = true;
        return;
    }
    m_isFirst = false;
    addToRuns(notification);
    addToDigest(notification);
    addToFrames(notification);
    m_latest = notification;
    m_tail = (m_tail + notification.right(kHeaderSize + 1)).right(kHeaderSize + 1);
}

bool AnswerCheck::isSecondCopy(const QByteArray &notification)
{
    if (m_taken.isEnded())
        return notification == m_latest;
    if (!m_isFirst || notification != m_before || notification.size() <= kCodeAt)
        return false;
    if (!m_kind.isOwn(quint8(notification.at(kCodeAt))))
        return true;
    // The same request has the same answer, or this is still the one before.
    m_isDoubtful = m_kind.end == AnswerKind::End::ClosingFrame && !m_kind.isCollected;
    return false;
}

void AnswerCheck::addToRuns(const QByteArray &notification)
{
    for (OneOfEach &each : m_runs) {
        if (!each.isPossible)
            continue;
        if (each.inRun > 0 && notification != m_latest)
            each.isPossible = false;
        else if (each.inRun == 0)
            each.reader.add(notification);
        each.inRun = (each.inRun + 1) % each.runLength;
    }
}

void AnswerCheck::addToDigest(QByteArrayView bytes)
{
    for (const char byte : bytes)
        m_digest = (m_digest ^ quint8(byte)) * 0x100000001B3;
}

void AnswerCheck::addToFrames(const QByteArray &notification)
{
    if (++m_atOnce > kMostAtOnce && m_kind.isCollected && !m_isUnlimited)
        m_damage = Finding::BeginningLost;
    const bool beginsFrame = m_taken.isWhole();
    m_taken.add(notification);
    m_joined.add(notification);
    const bool isWhole = beginsFrame && m_taken.isWhole();
    if (m_kind.end == AnswerKind::End::ClosingFrame && isWhole && m_latestIsWhole
        && notification == m_latest)
        m_isDoubtful = true;
    m_latestIsWhole = isWhole;
    if (!m_kind.isCollected)
        onQuiet();
}

void AnswerCheck::onQuiet()
{
    if (m_taken.hasWrongChecksum())
        note(Finding::WrongChecksum);
    if (m_taken.hasLeftOver())
        note(Finding::LeftOver);
    if (!m_taken.isWhole())
        note(Finding::Incomplete);
    m_taken.startAnew();
    m_atOnce = 0;
}

void AnswerCheck::note(Finding damage)
{
    if (m_damage == Finding::Sound)
        m_damage = damage;
}

bool AnswerCheck::isWholeAnswerRepeated() const
{
    return std::any_of(m_runs.begin(), m_runs.end(), [](const OneOfEach &each) {
        return each.isPossible && each.inRun == 0 && each.reader.isWhole() && each.reader.isEnded()
               && !each.reader.hasWrongChecksum();
    });
}

AnswerCheck::Finding AnswerCheck::finding() const
{
    if (m_isRepeated || isWholeAnswerRepeated())
        return Finding::Repeated;
    if (m_damage == Finding::Incomplete && !m_kind.isCollected && m_joined.isWhole())
        return Finding::InPieces;
    if (m_damage != Finding::Sound)
        return m_damage;
    return m_isDoubtful ? Finding::Doubtful : Finding::Sound;
}

bool AnswerCheck::isOver() const
{
    if (m_kind.end == AnswerKind::End::Open)
        return m_joined.isWhole();
    return m_joined.isEnded() || isWholeAnswerRepeated()
           || (m_kind.end == AnswerKind::End::ClosingFrame
               && m_tail == closingFrame(m_kind.command));
}

// SPDX-License-Identifier: MIT
#include "jobs/trace/redactor_p.h"

#include <QtCore/qcryptographichash.h>
#include <QtCore/qendian.h>
#include <QtCore/qmessageauthenticationcode.h>
#include <QtCore/qrandom.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include <varda/tidemarcommand.h>
#include <varda/vardadata.h>

#include "protocol/crc16_p.h"
#include "protocol/frame_p.h"
#include "session/computername_p.h"

using namespace Qt::StringLiterals;
using namespace TidemarCommand;

namespace {

constexpr int kPayload = Frame::kHeaderSize + 1;
constexpr int kAll = std::numeric_limits<int>::max();

/** What of a payload is private: everything behind the bytes that stay. */
struct Rule {
    TidemarCommandIn command;
    int stays = kAll;
    bool isText = false; ///< ends with a NUL, if there is one
};

/** What is not listed is private. */
constexpr std::array kAnswers = {
    Rule{Identification, 9},
    Rule{Syslog, 0, true},
    Rule{Time},
    Rule{Set_time},
    Rule{Sensors},
    Rule{Set_sensors},
    Rule{Begin_program},
    Rule{Program},
    Rule{End_program},
    Rule{Diver},
    Rule{Logbook},
    Rule{Fullsamples},
    Rule{Owner, 0, true},
    Rule{Set_owner, 1},
    Rule{DeleteLastDive},
    Rule{EraseDives},
    Rule{SimulParams},
    Rule{SyslogBin},
    Rule{BeginUpdate},
    Rule{ProgramUpdate},
    Rule{EndUpdate},
    Rule{BootloaderVersion},
    Rule{GetGases},
    Rule{MarloSet},
    Rule{LayoutList, 2},
    Rule{LayoutAdd, 1},
    Rule{LayoutRemove, 1},
    Rule{LayoutRemoveAll, 1},
    Rule{LayoutActiveGet},
    Rule{LayoutActiveSet, 1},
    Rule{BatteryInformation},
    Rule{SuperUserMode, 1},
};

constexpr std::array kRequests = {
    Rule{Set_time},        Rule{Set_sensors},   Rule{Begin_program}, Rule{Program},
    Rule{End_program},     Rule{Logbook},       Rule{Fullsamples},   Rule{Set_owner, 0, true},
    Rule{BeginUpdate},     Rule{ProgramUpdate}, Rule{EndUpdate},     Rule{GetGases},
    Rule{MarloSet},        Rule{LayoutGet},     Rule{LayoutAdd, 1},  Rule{LayoutRemove},
    Rule{LayoutActiveSet}, Rule{SuperUserMode},
};

Rule ruleOf(quint8 code, bool isRequest)
{
    const auto find = [code](const auto &rules) {
        const auto *const it = std::find_if(rules.begin(), rules.end(), [code](const Rule &rule) {
            return quint8(rule.command) == code;
        });
        return it == rules.end() ? Rule{TidemarCommandIn(code), 0} : *it;
    };
    return isRequest ? find(kRequests) : find(kAnswers);
}

bool isConfiguration(quint8 code)
{
    return code == quint8(Computer) || code == quint8(Computer_new);
}

/**
 * Where a configuration has the owner's text, counted from its code. The decoder finds it, in a
 * payload of the same version and model whose bytes are their own positions.
 */
std::optional<std::size_t> ownerPosition(QByteArrayView body)
{
    constexpr std::size_t kVersionAndModel = 3;
    VardaData::Payload positions{};
    for (std::size_t i = 0; i < positions.size(); ++i)
        positions[i] = i <= kVersionAndModel && i < std::size_t(body.size())
                           ? std::uint8_t(body[qsizetype(i)])
                           : std::uint8_t(i);
    VardaData data;
    data.processComputer(positions, false);
    const auto &block = data.computer.rawBlock;
    const auto first = std::uint8_t(block.front());
    return first > 0 && std::uint8_t(block.back()) == std::uint8_t(first + block.size() - 1)
               ? std::optional<std::size_t>(first)
               : std::nullopt;
}

void setChecksum(QByteArray &frame, quint16 crc)
{
    qToLittleEndian(crc, frame.data() + 4);
}

} // namespace

Redactor::Redactor()
{
    std::array<quint32, 8> random{};
    QRandomGenerator::system()->fillRange(random.data(), qsizetype(random.size()));
    m_key = QByteArray(reinterpret_cast<const char *>(random.data()), sizeof random);
}

QByteArray Redactor::digest(QByteArrayView secret, qsizetype size) const
{
    // The secret is read once, however much is wanted of it.
    const QByteArray seed = QMessageAuthenticationCode::hash(secret.toByteArray(), m_key,
                                                             QCryptographicHash::Sha256);
    QByteArray bytes;
    bytes.reserve(size + seed.size());
    for (quint32 i = 0; bytes.size() < size; ++i)
        bytes += QCryptographicHash::hash(seed + QByteArray::number(i), QCryptographicHash::Sha256);
    bytes.truncate(size);
    return bytes;
}

QByteArray Redactor::letters(QByteArrayView secret) const
{
    constexpr int kLetters = 26;
    QByteArray text = digest(secret, secret.size());
    for (char &each : text)
        each = char('a' + quint8(each) % kLetters);
    return text;
}

QByteArray Redactor::text(QByteArrayView secret) const
{
    const qsizetype end = secret.indexOf('\0');
    if (end < 0)
        return letters(secret);
    // What stands behind the end is left over from a longer text.
    return letters(secret.first(end)) + QByteArray(secret.size() - end, '\0');
}

QString Redactor::name(const QString &name) const
{
    constexpr auto kSerial = "VSK-"_L1;
    constexpr auto kModule = "RN4871"_L1;
    const auto behind = [&](QLatin1StringView prefix) {
        return QString(prefix + QString::fromLatin1(letters(name.mid(prefix.size()).toUtf8())));
    };
    if (name.startsWith(kSerial))
        return behind(kSerial);
    if (name.startsWith(kModule))
        return behind(kModule);
    return isComputerName(name) ? name : QString::fromLatin1(letters(name.toUtf8()));
}

QString Redactor::address(const QString &address) const
{
    const QByteArray digits = digest(address.toUpper().toUtf8(), address.size()).toHex().toUpper();
    QString other = address;
    for (qsizetype i = 0; i < other.size(); ++i) {
        if (other[i].isLetterOrNumber())
            other[i] = QLatin1Char(digits[i]);
    }
    return other;
}

/** What makes no frame; what makes it look like the beginning of one stays. */
QByteArray Redactor::damaged(QByteArrayView bytes) const
{
    QByteArray other = letters(bytes);
    if (Frame::startsFrame(bytes)) {
        constexpr int kStartAndLength = 4;
        other.replace(0, kStartAndLength, bytes.first(kStartAndLength).toByteArray());
        if (bytes.size() >= kPayload)
            other[Frame::kHeaderSize] = bytes[Frame::kHeaderSize];
    }
    return other;
}

/** One sound frame. */
QByteArray Redactor::frame(QByteArrayView bytes, bool isRequest) const
{
    QByteArray other = bytes.toByteArray();
    redactPayload(other, isRequest);
    other[6] = other[7] = '\0';
    setChecksum(other, Crc16::computeCrc(QByteArrayView(other).sliced(Frame::kHeaderSize)));
    return other;
}

void Redactor::redactPayload(QByteArray &frame, bool isRequest) const
{
    const auto code = quint8(frame[Frame::kHeaderSize]);
    const auto payload = QByteArrayView(frame).sliced(kPayload);
    qsizetype begin = 0;
    QByteArray replacement;
    if (isConfiguration(code) && !isRequest) {
        const auto body = QByteArrayView(frame).sliced(Frame::kHeaderSize);
        constexpr qsizetype kOwnerSize = sizeof(BleComputer::rawBlock);
        const auto position = ownerPosition(body);
        if (!position || qsizetype(*position) >= body.size())
            return; // too short to have an owner
        begin = qsizetype(*position) - 1;
        replacement = text(payload.sliced(begin, qMin(kOwnerSize, payload.size() - begin)));
    } else {
        const Rule rule = ruleOf(code, isRequest);
        begin = qMin<qsizetype>(rule.stays, payload.size());
        const auto secret = payload.sliced(begin);
        replacement = rule.isText ? text(secret) : letters(secret);
    }
    frame.replace(kPayload + begin, replacement.size(), replacement);
}

QByteArray Redactor::request(const QByteArray &bytes) const
{
    if (Frame::startsFrame(bytes)) {
        const auto [length, crc] = Frame::parseHeader(bytes);
        const auto body = QByteArrayView(bytes).sliced(Frame::kHeaderSize);
        if (length > 0 && length == body.size() && Crc16::computeCrc(body) == crc)
            return frame(bytes, true);
    }
    return damaged(bytes);
}

QList<QByteArray> Redactor::answer(const QList<QByteArray> &notifications) const
{
    const QByteArray joined = notifications.join();
    QByteArray sound;
    QByteArrayView rest(joined);
    while (Frame::startsFrame(rest)) {
        const auto [length, crc] = Frame::parseHeader(rest);
        const qsizetype size = Frame::kHeaderSize + length;
        if (length == 0 || rest.size() < size
            || Crc16::computeCrc(rest.sliced(Frame::kHeaderSize, length)) != crc)
            break;
        sound += frame(rest.first(size), false);
        rest = rest.sliced(size);
    }

    QList<QByteArray> others;
    qsizetype at = 0;
    for (const QByteArray &each : notifications) {
        const qsizetype good = qBound<qsizetype>(0, sound.size() - at, each.size());
        QByteArray other = sound.mid(at, good);
        if (good < each.size())
            other += damaged(QByteArrayView(each).sliced(good));
        others.append(other);
        at += each.size();
    }
    return others;
}

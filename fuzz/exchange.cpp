// SPDX-License-Identifier: MIT
#include "exchange.h"

#include "fuzz.h"

namespace {

constexpr qsizetype kHeader = 8;

enum Error { InvalidCrc, BeginProgram, Program, EndProgram, SetOwner, Unknown, Generic };

quint16 crcOf(const QByteArray &bytes)
{
    unsigned crc = 0x1D0F;
    for (const char byte : bytes) {
        crc ^= unsigned(std::uint8_t(byte)) << 8;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc << 1 ^ (crc & 0x8000 ? 0x1021U : 0U)) & 0xFFFF;
    }
    return quint16(crc);
}

QByteArray word(unsigned value)
{
    return QByteArray(1, char(value & 0xFF)) + char(value >> 8);
}

} // namespace

QByteArray frameOf(int command, const QByteArray &payload)
{
    const QByteArray body = char(command) + payload;
    return QByteArray("\xDC\xDC") + word(unsigned(body.size()) & 0xFFFF) + word(crcOf(body))
           + QByteArray(2, '\0') + body;
}

QList<Answer> answersIn(QByteArray bytes)
{
    QList<Answer> answers;
    while (bytes.size() >= kHeader && bytes.startsWith("\xDC\xDC")) {
        const qsizetype length = std::uint8_t(bytes[2]) + 256 * std::uint8_t(bytes[3]);
        const QByteArray body = bytes.mid(kHeader, length);
        if (length == 0 || body.size() < length)
            break;
        const int command = std::uint8_t(body[0]);
        if (bytes.mid(4, 2) != word(crcOf(body))) {
            answers.append({command, {}, true});
            break;
        }
        answers.append({command, body.mid(1)});
        bytes.remove(0, kHeader + length);
    }
    return answers;
}

bool isCollected(int command)
{
    constexpr int kCollected[] = {2, 5, 17, 19, 20, 22, 24, 29, 36, 37, 238};
    return std::ranges::find(kCollected, command) != std::end(kCollected);
}

void checkFrame(const QByteArray &frame)
{
    check(frame.size() > kHeader, "a frame that is written has a body");
    check(frame == frameOf(commandOf(frame), payloadOf(frame)), "a frame that is written is sound");
}

int commandOf(const QByteArray &frame)
{
    return frame.size() > kHeader ? std::uint8_t(frame[kHeader]) : 0;
}

QByteArray payloadOf(const QByteArray &frame)
{
    return frame.mid(kHeader + 1);
}

Outcome Outcome::of(const Answer &answer)
{
    const bool yes = !answer.payload.isEmpty() && answer.payload[0] != 0;
    const Outcome ended{Ended, answer.command};
    const auto decided = [&](Error error) {
        return yes ? ended : Outcome{Refused, answer.command, error};
    };
    // The next step comes instead of a word to the application.
    const auto step = [&](int command, Error error) {
        return yes ? Outcome{Nothing, 0, 0, true} : Outcome{Refused, command, error};
    };

    switch (answer.command) {
    case 1:
    case 3:
    case 5:
    case 7:
    case 8:
    case 9:
    case 10:
    case 17:
    case 22:
    case 24:
    case 25:
    case 28:
    case 33:
    case 41:
        return ended;
    case 26:
        return {Ended, 25};
    case 2:
    case 19:
    case 20:
    case 29:
    case 36:
    case 37:
    case 238:
        return answer.payload.isEmpty() ? ended : Outcome{};
    case 34:
        return answer.payload.size() < 2 ? ended : Outcome{};
    case 23:
        return decided(SetOwner);
    case 35:
    case 39:
    case 40:
    case 42:
        return decided(Generic);
    case 13:
    case 30:
        return step(answer.command, BeginProgram);
    case 38:
        return step(38, Generic);
    case 14:
    case 31:
        return step(14, Program);
    case 15:
    case 32:
        return yes ? Outcome{Ended, 15, 0, true} : Outcome{Refused, 15, EndProgram};
    case 254:
        return {LinkDropped};
    default:
        return {};
    }
}

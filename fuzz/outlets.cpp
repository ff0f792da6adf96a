// SPDX-License-Identifier: MIT
#include "outlets.h"

#include <QtCore/qjsondocument.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "fuzz.h"
#include "output/terminal.h"

namespace {

/** By their numbers, so that not the same table of characters is asked twice. */
bool isHarmless(char32_t c)
{
    constexpr std::pair<char32_t, char32_t> kHarmful[] = {
        {0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200E, 0x200F},   {0x2028, 0x202E},
        {0x2066, 0x2069}, {0xD800, 0xDFFF}, {0xFEFF, 0xFEFF}, {0xE0000, 0xE007F}, {0x115F, 0x1160},
        {0x2800, 0x2800}, {0x3164, 0x3164}, {0xFFA0, 0xFFA0},
    };
    return std::ranges::none_of(
        kHarmful, [c](const auto &range) { return c >= range.first && c <= range.second; });
}

/** The usual accents; there are more. */
bool isAccent(char32_t c)
{
    return c >= 0x0300 && c <= 0x036F;
}

} // namespace

void checkLine(const QString &text)
{
    // Nearly everything is, and this is the cheaper look.
    const auto isPlain = [](QChar c) { return c >= u' ' && c <= u'~'; };
    if (std::all_of(text.cbegin(), text.cend(), isPlain))
        return;
    const auto characters = text.toUcs4();
    check(std::all_of(characters.cbegin(), characters.cend(), isHarmless),
          "a terminal gets harmless text only");
    const auto pile = std::search_n(characters.cbegin(), characters.cend(), 5, true,
                                    [](char32_t c, bool) { return isAccent(c); });
    check(pile == characters.cend(), "no character gets more marks than a language uses");
}

void checkTerminal(const QString &text)
{
    const auto lines = text.split(u'\n');
    for (const QString &line : lines)
        checkLine(line);
}

QJsonObject checkDocument(const Fields &document)
{
    Printed printed;
    print(document);
    const QByteArray bytes = printed.bytes();
    checkTerminal(QString::fromUtf8(bytes));
    QJsonParseError error{};
    const QJsonDocument read = QJsonDocument::fromJson(bytes, &error);
    check(error.error == QJsonParseError::NoError && read.isObject(), "a document is sound JSON");
    return read.object();
}

Printed::Printed()
    : m_stdout(stdout), m_stderr(stderr), m_stream(::open_memstream(&m_bytes, &m_size))
{
    stdout = m_stream;
    stderr = m_stream;
}

Printed::~Printed()
{
    stdout = m_stdout;
    stderr = m_stderr;
    std::fclose(m_stream);
    std::free(m_bytes);
}

QByteArray Printed::bytes()
{
    std::fflush(m_stream);
    return {m_bytes, qsizetype(m_size)};
}

// SPDX-License-Identifier: MIT
#include "output/safetext.h"

#include <QtCore/qlist.h>
#include <QtCore/qstringview.h>

using namespace Qt::StringLiterals;

namespace {

constexpr char32_t kZeroWidthNonJoiner = 0x200C;
constexpr char32_t kZeroWidthJoiner = 0x200D;

// As Unicode's advice on spoofed texts has it (UTS 39); no language needs more.
constexpr int kMostMarks = 4;

/** Letters and symbols that nobody sees. */
bool isBlank(char32_t character)
{
    switch (character) {
    case 0x115F: // the fillers of Hangul
    case 0x1160:
    case 0x3164:
    case 0xFFA0:
    case 0x2800: // Braille without a dot
        return true;
    default:
        return false;
    }
}

/** Control characters, those that turn the direction of writing, and other invisible ones. */
bool isHarmful(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format:
        // Whole scripts, and pictures of people, are written with these two.
        return character != kZeroWidthNonJoiner && character != kZeroWidthJoiner;
    default:
        return isBlank(character);
    }
}

/** What stands above, below or within the character before it, or shows nothing at all. */
bool joinsPrevious(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return true;
    default:
        return false;
    }
}

/** @p replace gives the text that stands for a harmful character, or for a mark too many. */
template <typename Replace> QString replaced(const QString &text, Replace replace)
{
    QString result;
    result.reserve(text.size());
    int marks = 0;
    for (const char32_t character : text.toUcs4()) {
        marks = joinsPrevious(character) ? marks + 1 : 0;
        if (isHarmful(character) || marks > kMostMarks)
            result += replace(character);
        else
            result += QChar::fromUcs4(character);
    }
    return result;
}

QString escaped(char32_t character)
{
    QString result;
    const auto units = QChar::fromUcs4(character);
    for (const QChar unit : QStringView(units))
        result += u"\\u%1"_s.arg(int(unit.unicode()), 4, 16, QChar(u'0'));
    return result;
}

} // namespace

QString safeText(const QString &text)
{
    return replaced(text, [](char32_t) { return QString(QChar(QChar::ReplacementCharacter)); });
}

QString safeJson(const QString &json)
{
    // Outside its strings a document has no control character but the line feed.
    return replaced(json, [](char32_t c) { return c == U'\n' ? u"\n"_s : escaped(c); });
}

QString safeFileName(const QString &text)
{
    // 255 bytes is as long as a name may be; a character takes up to four.
    constexpr qsizetype kLongest = 50;
    QString result;
    for (const char32_t character : safeText(text).toUcs4().mid(0, kLongest)) {
        const bool fits = QChar::isLetterOrNumber(character) || QChar::isMark(character)
                          || character == U' ' || character == U'-';
        if (fits)
            result += QChar::fromUcs4(character);
        else
            result += u'_';
    }
    return result;
}

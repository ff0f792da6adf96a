// SPDX-License-Identifier: MIT
#include "program/printable.h"

#include <QtCore/qlist.h>

namespace simulator {

namespace {

constexpr int kMostMarks = 4;

bool isUnseen(char32_t character)
{
    // Hangul's fillers and the Braille pattern without dots are letters and symbols by their
    // category.
    return character == U'\u115F' || character == U'\u1160' || character == U'\u3164'
           || character == U'\uFFA0' || character == U'\u2800';
}

bool isMark(QChar::Category category)
{
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

bool isShown(char32_t character)
{
    const QChar::Category category = QChar::category(character);
    return QChar::isPrint(character) && category != QChar::Separator_Line
           && category != QChar::Separator_Paragraph && !isUnseen(character);
}

} // namespace

QString printable(const QString &text)
{
    QString result;
    int marks = 0;
    for (const char32_t character : text.toUcs4()) {
        marks = isMark(QChar::category(character)) ? marks + 1 : 0;
        if (isShown(character) && marks <= kMostMarks)
            result += QChar::fromUcs4(character);
        else
            result += QChar(QChar::ReplacementCharacter);
    }
    return result;
}

} // namespace simulator

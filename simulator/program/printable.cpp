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
    for (const char32_t each : {U'\u115F', U'\u1160', U'\u3164', U'\uFFA0', U'\u2800'}) {
        if (character == each)
            return true;
    }
    return false;
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

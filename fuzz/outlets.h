// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qjsonobject.h>
#include <QtCore/qstring.h>

#include <cstdio>

#include "output/json.h"

/** Nothing in @p text moves a cursor, starts an escape sequence or turns the writing. */
void checkTerminal(const QString &text);
/** @p text is what checkTerminal() asks for, and one line. */
void checkLine(const QString &text);
/** What is printed of @p document is one sound JSON document. @return it as it was read back */
QJsonObject checkDocument(const Fields &document);

/** Takes what is printed to stdout and stderr. */
class Printed
{
public:
    Printed();
    ~Printed();
    Q_DISABLE_COPY_MOVE(Printed)

    /** All of it so far. */
    [[nodiscard]] QByteArray bytes();

private:
    std::FILE *m_stdout;
    std::FILE *m_stderr;
    std::FILE *m_stream;
    char *m_bytes = nullptr;
    std::size_t m_size = 0;
};

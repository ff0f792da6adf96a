// SPDX-License-Identifier: MIT
#pragma once

#include "line/options.h"

#include <QtCore/qfile.h>
#include <QtCore/qobject.h>

class VardaComputer;

/** The file in which the user wants what happens between the command and the computer. */
class Recording : public QObject
{
    Q_OBJECT

public:
    /** Opens the file, if there is to be one. @throws Failure */
    explicit Recording(const Options &options);
    ~Recording() override;
    Q_DISABLE_COPY_MOVE(Recording)

    /** Writes down from now on what this computer does, if that is wanted. */
    static void follow(VardaComputer &computer);

private:
    void open(const QString &name);

    QFile m_file;
    bool m_unredacted;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "output/json.h"

#include <QtCore/qjsonobject.h>
#include <QtCore/qjsonvalue.h>
#include <QtCore/qstring.h>

#include <functional>

class Task;

/** What a request does; its parameters are checked already. */
using Work = std::function<void(Task &)>;

/** One line of input. */
struct Request {
    QJsonValue id;    ///< an integer or a text; null until it is known
    QString computer; ///< an address as the library writes it; empty if none is named
    bool usesComputer = false;
    Work work;

    /** What is known of it before something is wrong is kept. @throws RequestError */
    void read(const QByteArray &line);
};

/** As it is written in JSON; null for what is no id. */
[[nodiscard]] Json jsonOfId(const QJsonValue &id);

// SPDX-License-Identifier: MIT
#pragma once

#include "commands/serve/request.h"

#include <QtCore/qstring.h>

#include <span>

class Parameters;

/** What may be asked for. */
struct Method {
    QLatin1StringView name; ///< the words of the command
    bool usesComputer = false;
    /** Takes its parameters. @throws RequestError, Failure */
    Work (*prepare)(Parameters &) = nullptr;
};

/** In the order of the hello. */
[[nodiscard]] std::span<const Method> allMethods();
/** Null if there is none. */
[[nodiscard]] const Method *methodNamed(const QString &name);

// Those for dives

[[nodiscard]] Work prepareLogbook(Parameters &parameters);
[[nodiscard]] Work prepareDive(Parameters &parameters);
[[nodiscard]] Work prepareDives(Parameters &parameters);
[[nodiscard]] Work prepareSync(Parameters &parameters);

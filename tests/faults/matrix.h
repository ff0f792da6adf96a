// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include "case.h"

/** What an application uses: a session, or the jobs above it. */
enum class Layer { Session, Jobs };

/** Every computer with every kind of link and every job. */
[[nodiscard]] QList<Setting> allSettings(Layer layer);

/** Every fault at every place of such a job. */
[[nodiscard]] QList<Case> allCases(const Setting &setting, const Healthy &healthy);

// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include "case.h"

/** Every computer with every kind of link and every job. */
[[nodiscard]] QList<Setting> allSettings();

/** Every fault at every place of such a job. */
[[nodiscard]] QList<Case> allCases(const Setting &setting, const Healthy &healthy);

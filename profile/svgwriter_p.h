// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>

#include "drawing_p.h"

[[nodiscard]] QByteArray svgOf(const Drawing &drawing);

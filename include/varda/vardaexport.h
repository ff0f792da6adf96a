// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

/** Marks what the library exports; everything else is hidden. */
#if defined(VARDA_LIBRARY)
#    define VARDA_EXPORT Q_DECL_EXPORT
#else
#    define VARDA_EXPORT Q_DECL_IMPORT
#endif

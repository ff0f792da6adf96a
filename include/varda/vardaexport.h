// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

/** Marks what the library offers; everything else stays hidden inside it. */
#if defined(VARDA_LIBRARY)
#    define VARDA_EXPORT Q_DECL_EXPORT
#else
#    define VARDA_EXPORT Q_DECL_IMPORT
#endif

// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

/** Marks what the library Varda::Formats exports; everything else is hidden. */
#if defined(VARDA_FORMATS_LIBRARY)
#    define VARDA_FORMATS_EXPORT Q_DECL_EXPORT
#else
#    define VARDA_FORMATS_EXPORT Q_DECL_IMPORT
#endif

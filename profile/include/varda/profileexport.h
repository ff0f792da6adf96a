// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

/** Marks what the library Varda::Profile exports; everything else is hidden. */
#if defined(VARDA_PROFILE_LIBRARY)
#    define VARDA_PROFILE_EXPORT Q_DECL_EXPORT
#else
#    define VARDA_PROFILE_EXPORT Q_DECL_IMPORT
#endif

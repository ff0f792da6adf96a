// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>

/** Marks what Varda::Logbook exports; everything else is hidden. */
#if defined(VARDA_LOGBOOK_LIBRARY)
#    define VARDA_LOGBOOK_EXPORT Q_DECL_EXPORT
#else
#    define VARDA_LOGBOOK_EXPORT Q_DECL_IMPORT
#endif

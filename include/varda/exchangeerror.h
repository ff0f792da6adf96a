// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>

#include <varda/vardaexport.h>

/** Why an exchange with the computer failed. */
namespace ExchangeError {
Q_NAMESPACE_EXPORT(VARDA_EXPORT)

enum ExchangeErrorIn : int {
    InvalidCrc = 0,        ///< an answer was damaged on the way
    BeginProgramError = 1, ///< the computer refused the beginning of an upload
    ProgramError = 2,      ///< the computer refused a block of an upload
    EndProgramError = 3,   ///< the computer refused the end of an upload
    SetOwnerError = 4,     ///< the computer refused the owner
    UnknownCommand = 5,    ///< never reported; kept for its text
    GenericError = 6,      ///< the computer refused a setting or a layout
};
Q_ENUM_NS(ExchangeErrorIn)
} // namespace ExchangeError

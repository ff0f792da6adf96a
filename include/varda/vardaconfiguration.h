// SPDX-License-Identifier: MIT
#pragma once

#include <varda/blecomputer.h>
#include <varda/bleconfig.h>

/** A computer's configuration: the two records that one answer fills. */
struct VardaConfiguration {
    BleConfig config;
    BleComputer computer;
};

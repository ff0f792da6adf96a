// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/**
 * Settings that VardaComputer::writeSettings() and VardaSession::startMarloSettings() send, in the
 * order of transmission. Their meaning is not known.
 */
struct MarloSettings {
    std::uint8_t byte1 = 0;
    std::uint8_t byte2 = 0;
    float float1 = 0;
    std::uint8_t byte3 = 0;
    float float2 = 0;
    std::uint8_t byte4 = 0;
    std::uint8_t byte5 = 0;
    std::uint8_t byte6 = 0;
};

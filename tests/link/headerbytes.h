// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>

// Headers of dives as the computers send them, in hex.

// What the headers of all layouts have in common, in the order on the wire.
constexpr auto kBegin = "09"               // headerByte5
                        "03"               // kindByte
                        "2855"             // headerByte1, headerByte2
                        "fb03"             // 1019, so below 1020
                        "f403";            // headerWord1
constexpr auto kFourGases = "1528"         // 21 % oxygen, 40 % helium
                            "2000"         // 32 %
                            "0402"         // less oxygen than a gas may have, 2 % helium
                            "6400";        // 100 %
constexpr auto kTail = "8815476600000000"  // stamp
                       "0301"              // headerWord3
                       "3501"              // tenths1
                       "9b00"              // tenths2
                       "fc19"              // signed1, signed2
                       "10270000"          // value32b
                       "0201"              // headerWord2
                       "03000000"          // count1
                       "00e1f505"          // count2
                       "0401"              // headerWord4
                       "dc003c00"          // headerWord11, headerWord12
                       "feffffffffffffff"  // stamp2
                       "2a000000"          // value32c
                       "0102030405060708"; // value32e, value32f

inline QByteArray tissues()
{
    return "01010102" + QByteArray("e8030000").repeated(14) + "0f010f02";
}

/** The newest layout of a Varda. */
inline QByteArray vardaHeader(const QByteArray &number = "0701")
{
    return "0a80" + number + kBegin + tissues() + "0900" + kFourGases
           + QByteArray("0000").repeated(8) + "ee" + "460082000501" + "11111111" + "44332211"
           + "0801" + kTail + "0a" + "201c0000" + "02" + "0d01" + "0e01";
}

/** The newest layout of a Tidemar. */
inline QByteArray tidemarHeader(const QByteArray &number = "0701")
{
    return "0580" + number + kBegin + tissues() + "010f" + kFourGases
           + QByteArray("0000").repeated(7) + "2109" + "ee" + "4600eeeeee" + "8200eeeeee"
           + "0501eeeeee" + "11111111" + "44332211" + kTail + "0a" + "201c0000" + "fe";
}

/** The layout of a VSKM that names no version. */
inline QByteArray vskmHeader(const QByteArray &number = "0701")
{
    return number + kBegin + tissues() + "81" + kFourGases + QByteArray("0000").repeated(3) + "2109"
           + "ee" + "4600eeeeee" + "8200eeeeee" + "0501eeeeee" + "11111111" + "44332211" + kTail;
}

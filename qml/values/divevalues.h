// SPDX-License-Identifier: MIT
#pragma once

#include <varda/dive.h>
#include <varda/divegas.h>
#include <varda/diveline.h>
#include <varda/divemark.h>
#include <varda/divesample.h>
#include <varda/tidemardiveheader.h>

#include "field.h"
#include "profilevalue.h"

// What a header and a dive have in common.
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): moc knows no properties of a base without a meta-object
#define VARDA_DIVE_HEADER_BLOCK                                                                    \
    VARDA_FIELD(int, diveNumber)                                                                   \
    VARDA_FIELD(int, model)                                                                        \
    VARDA_WIDE(stamp)                                                                              \
    VARDA_WIDE(stamp2)                                                                             \
    VARDA_FIELD(double, tenths1)                                                                   \
    VARDA_FIELD(double, tenths2)                                                                   \
    VARDA_FIELD(int, sampleInterval)                                                               \
    VARDA_FIELD(uint, value32a)                                                                    \
    VARDA_FIELD(int, kindByte)                                                                     \
    VARDA_FIELD(int, tidemarBit)                                                                   \
    VARDA_FIELD(int, headerWord1)                                                                  \
    VARDA_FIELD(bool, below1020)                                                                   \
    VARDA_FIELD(int, headerByte1)                                                                  \
    VARDA_FIELD(int, headerByte2)                                                                  \
    VARDA_FIELD(int, headerWord2)                                                                  \
    VARDA_FIELD(int, headerWord3)                                                                  \
    VARDA_FIELD(int, headerWord4)                                                                  \
    VARDA_FIELD(uint, value32b)                                                                    \
    VARDA_FIELD(double, count1)                                                                    \
    VARDA_FIELD(double, count2)                                                                    \
    VARDA_FIELD(uint, value32c)                                                                    \
    VARDA_NUMBERS(tissueN2)                                                                        \
    VARDA_NUMBERS(tissueHe)                                                                        \
    VARDA_FIELD(int, gasSlotMask)                                                                  \
    VARDA_FIELD(int, headerByte3)                                                                  \
    VARDA_NUMBERS(gasO2)                                                                           \
    VARDA_NUMBERS(gasHe)                                                                           \
    VARDA_NUMBERS(reservedBlock)                                                                   \
    VARDA_FIELD(int, headerByte4)                                                                  \
    VARDA_FIELD(int, headerByte5)                                                                  \
    VARDA_FIELD(int, headerByte6)                                                                  \
    VARDA_FIELD(int, headerWord5)                                                                  \
    VARDA_FIELD(int, headerWord6)                                                                  \
    VARDA_FIELD(int, headerWord7)                                                                  \
    VARDA_FIELD(uint, value32d)                                                                    \
    VARDA_FIELD(int, headerWord8)                                                                  \
    VARDA_FIELD(double, signed1)                                                                   \
    VARDA_FIELD(double, signed2)                                                                   \
    VARDA_FIELD(int, headerWord9)                                                                  \
    VARDA_FIELD(int, headerWord10)                                                                 \
    VARDA_FIELD(int, headerWord11)                                                                 \
    VARDA_FIELD(int, headerWord12)                                                                 \
    VARDA_FIELD(uint, value32e)                                                                    \
    VARDA_FIELD(uint, value32f)                                                                    \
    VARDA_FIELD(QString, text1)                                                                    \
    VARDA_FIELD(QString, text2)                                                                    \
    VARDA_FIELD(QString, text3)                                                                    \
    VARDA_FIELD(QString, text4)

struct DiveGasValue : DiveGas {
    VARDA_VALUE_TYPE(DiveGas, DiveGasValue, diveGas)

    VARDA_FIELD(double, oxygen)
    VARDA_FIELD(double, helium)
    VARDA_FIELD(double, nitrogen)
    VARDA_FIELD(double, limit)
    VARDA_WIDE(reserved)
    VARDA_FIELD(int, usage)
    VARDA_FIELD(bool, enabled)
    VARDA_FIELD(QString, label)
    VARDA_FIELD(QString, label2)
    VARDA_FIELD(uint, color)
    VARDA_FIELD(bool, closedCircuit)
    /** "Air", "EAN32", "18/45". */
    Q_PROPERTY(QString name READ name CONSTANT)

public:
    QString name() const { return DiveProfile::gasName(*this); }
};

struct DiveLineValue : DiveLine {
    VARDA_VALUE_TYPE(DiveLine, DiveLineValue, diveLine)

    VARDA_FIELD(double, time)
    VARDA_FIELD(double, depth)
    VARDA_FIELD(double, value3)
    VARDA_FIELD(double, value4)
    VARDA_FIELD(double, aux1Value)
    VARDA_FIELD(double, valueTenths)
    VARDA_FIELD(int, valueNegated)
    VARDA_WIDE(value8)
    VARDA_WIDE(value9)
    VARDA_WIDE(value10)
    VARDA_WIDE(value11)
    VARDA_FIELD(int, gasIndex)
    VARDA_FIELD(int, mode)
    VARDA_FIELD(int, flag)
    VARDA_FIELD(int, aux3)
    VARDA_FIELD(int, aux4)
    VARDA_FIELD(int, aux5)
    VARDA_FIELD(int, aux6)
    VARDA_FIELD(int, aux7)
    VARDA_FIELD(int, aux2)
    VARDA_FIELD(int, aux8)
    VARDA_FIELD(int, aux11)
    VARDA_FIELD(int, aux9)
    VARDA_FIELD(int, aux10)
    VARDA_FIELD(int, value24)
    VARDA_FIELD(int, flag25)
};

struct DiveMarkValue : DiveMark {
    VARDA_VALUE_TYPE(DiveMark, DiveMarkValue, diveMark)

    VARDA_FIELD(uint, first)
    VARDA_FIELD(uint, second)
    VARDA_FIELD(uint, third)
};

struct DiveSampleValue : DiveSample {
    VARDA_VALUE_TYPE(DiveSample, DiveSampleValue, diveSample)

    VARDA_FIELD(int, version)
    VARDA_FIELD(int, depth)
    VARDA_FIELD(int, flag)
    VARDA_FIELD(int, code)
    VARDA_FIELD(int, value12)
    VARDA_FIELD(int, mode)
    VARDA_FIELD(int, modeFlag)
    VARDA_FIELD(int, aux1)
    VARDA_FIELD(int, aux2)
    VARDA_FIELD(int, aux3)
    VARDA_FIELD(int, aux4)
    VARDA_FIELD(int, aux5)
    VARDA_FIELD(int, aux6)
    VARDA_FIELD(int, aux7)
    VARDA_FIELD(int, aux8)
    VARDA_FIELD(int, aux9)
    VARDA_FIELD(int, aux10)
    VARDA_FIELD(int, aux11)
    VARDA_FIELD(bool, aux12)
};

struct DiveHeaderValue : TidemarDiveHeader {
    VARDA_VALUE_TYPE(TidemarDiveHeader, DiveHeaderValue, tidemarDiveHeader)

    VARDA_DIVE_HEADER_BLOCK
    VARDA_FIELD(int, headerByte7)
    VARDA_FIELD(int, headerWord13)
    VARDA_FIELD(int, headerWord14)
};

struct DiveValue : Dive {
    VARDA_VALUE_TYPE(Dive, DiveValue, dive)

    VARDA_DIVE_HEADER_BLOCK
    VARDA_FIELD(QString, numberText)
    VARDA_FIELD(QString, ownerName)
    VARDA_FIELD(QString, text)
    VARDA_FIELD(QString, serialNumber)
    VARDA_FIELD(QString, firmwareVersion)
    VARDA_FIELD(int, kind)
    VARDA_RECORDS(lines)
    VARDA_RECORDS(lines2)
    VARDA_RECORDS(lines3)
    VARDA_RECORDS(lines4)
    VARDA_RECORDS(gases)
    VARDA_NUMBERS(tagBytes)
    VARDA_FIELD(int, value16)
    VARDA_WIDE(value64)
    VARDA_FIELD(uint, value32)
    VARDA_FIELD(int, index)
    VARDA_RECORDS(marks)
    VARDA_FIELD(bool, flag)
    VARDA_RECORDS(marks2)
    VARDA_FIELD(int, modeByte)
    VARDA_FIELD(int, count)
    Q_PROPERTY(DiveProfile profile READ profile CONSTANT)

public:
    DiveProfile profile() const { return DiveProfile::fromDive(*this); }
};

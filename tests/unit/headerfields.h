// SPDX-License-Identifier: MIT
#pragma once

#include "fields.h"

#include <QtCore/qmetaobject.h>

#include <varda/computermodel.h>

inline QString decimal(double value)
{
    return QString::number(value, 'g', 15);
}

/** What dive headers and generic dives begin with, as "name=value". */
template <typename Record> QStringList headerFieldsOf(const Record &h)
{
    const char *model = QMetaEnum::fromType<ComputerModel::ComputerModelIn>().valueToKey(h.model);
    return {QStringLiteral("diveNumber=%1").arg(h.diveNumber),
            QStringLiteral("model=%1").arg(QLatin1String(model)),
            FIELD(h, stamp),
            QStringLiteral("stamp2=%1").arg(qint64(h.stamp2)),
            QStringLiteral("tenths1=") + decimal(h.tenths1),
            QStringLiteral("tenths2=") + decimal(h.tenths2),
            QStringLiteral("sampleInterval=%1").arg(h.sampleInterval),
            FIELD(h, value32a),
            FIELD(h, kindByte),
            QStringLiteral("tidemarBit=%1").arg(h.tidemarBit),
            FIELD(h, headerWord1),
            QStringLiteral("below1020=%1").arg(int(h.below1020)),
            FIELD(h, headerByte1),
            FIELD(h, headerByte2),
            FIELD(h, headerWord2),
            FIELD(h, headerWord3),
            FIELD(h, headerWord4),
            FIELD(h, value32b),
            QStringLiteral("count1=") + decimal(h.count1),
            QStringLiteral("count2=") + decimal(h.count2),
            FIELD(h, value32c),
            FIELD(h, tissueN2),
            FIELD(h, tissueHe),
            FIELD(h, gasSlotMask),
            FIELD(h, headerByte3),
            FIELD(h, gasO2),
            FIELD(h, gasHe),
            FIELD(h, reservedBlock),
            FIELD(h, headerByte4),
            FIELD(h, headerByte5),
            FIELD(h, headerByte6),
            FIELD(h, headerWord5),
            FIELD(h, headerWord6),
            FIELD(h, headerWord7),
            FIELD(h, value32d),
            FIELD(h, headerWord8),
            QStringLiteral("signed1=") + decimal(h.signed1),
            QStringLiteral("signed2=") + decimal(h.signed2),
            FIELD(h, headerWord9),
            FIELD(h, headerWord10),
            FIELD(h, headerWord11),
            FIELD(h, headerWord12),
            FIELD(h, value32e),
            FIELD(h, value32f),
            QStringLiteral("text1=") + h.text1,
            QStringLiteral("text2=") + h.text2,
            QStringLiteral("text3=") + h.text3,
            QStringLiteral("text4=") + h.text4};
}

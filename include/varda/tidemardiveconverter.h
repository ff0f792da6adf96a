// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/dive.h>
#include <varda/divesample.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardaexport.h>

class VardaSession;

/** Turns what a computer tells of one dive into the generic record. Has no state. */
class VARDA_EXPORT TidemarDiveConverter
{
public:
    /**
     * @param header   the dive's header from the logbook
     * @param samples  its samples; none gives a dive without a profile
     * @param session  names the computer: owner, serial number, firmware version
     */
    [[nodiscard]] static Dive toDive(const TidemarDiveHeader &header,
                                     const QList<DiveSample> &samples, const VardaSession &session);

private:
    static DiveLine toLine(const DiveSample &sample, double time);
    static QList<DiveGas> buildGases(const TidemarDiveHeader &header, QList<int> &slotToGas);
};

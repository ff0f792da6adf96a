// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/dive.h>
#include <varda/divesample.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardaexport.h>

class VardaSession;

/** Converts what a computer reports about a dive into the generic record. It has no state. */
class VARDA_EXPORT TidemarDiveConverter
{
public:
    /**
     * @param header   the dive's header from the logbook
     * @param samples  its samples; without any, the dive has no profile
     * @param session  gives the computer's owner, serial number and firmware version
     */
    [[nodiscard]] static Dive toDive(const TidemarDiveHeader &header,
                                     const QList<DiveSample> &samples, const VardaSession &session);

    /** The gases of a dive: Dive::gases as toDive() fills it. */
    [[nodiscard]] static QList<DiveGas> gases(const TidemarDiveHeader &header);

private:
    static DiveLine toLine(const DiveSample &sample, double time);
    static QList<DiveGas> buildGases(const TidemarDiveHeader &header, QList<int> &slotToGas);
};

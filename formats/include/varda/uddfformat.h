// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/dive.h>
#include <varda/divesread.h>
#include <varda/diveswritten.h>
#include <varda/formatsexport.h>

class QIODevice;

/**
 * UDDF 3.2, the format that most dive logs read. It carries the number, the begin, the computer's
 * model and serial number, the owner, the mixes, and of each sample the time, the depth, the
 * temperature and the mix. docs/formats.md lists what it cannot carry.
 */
class VARDA_FORMATS_EXPORT UddfFormat
{
public:
    [[nodiscard]] static DivesWritten write(QIODevice *device, const QList<Dive> &dives);
    /** Reads what write() wrote. */
    [[nodiscard]] static DivesRead read(QIODevice *device);
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/dive.h>
#include <varda/divesread.h>
#include <varda/diveswritten.h>
#include <varda/formatsexport.h>

class QIODevice;

/** JSON with every field of a dive; docs/formats.md has its schema. */
class VARDA_FORMATS_EXPORT JsonFormat
{
public:
    [[nodiscard]] static DivesWritten write(QIODevice *device, const QList<Dive> &dives);
    /** Reads what write() wrote. Members that it does not know are skipped. */
    [[nodiscard]] static DivesRead read(QIODevice *device);
};

// SPDX-License-Identifier: MIT
#include "device/dives/divesample.h"

#include "device/scenario/jsonreader.h"
#include "device/scenario/scenario.h"
#include "device/wire/wirewriter.h"

namespace simulator {

namespace {

struct Member {
    const char *name;
    int Sample::*value;
    int min;
    int max;
};

constexpr Member kMembers[] = {
    {"depth", &Sample::depth, 0, 4095},
    {"code", &Sample::code, 0, 15},
    {"value12", &Sample::value12, -2048, 2047},
    {"mode", &Sample::mode, 0, 3},
    {"flag", &Sample::flag, 0, 1},
    {"status", &Sample::status, 0, 255},
    {"gasStatus", &Sample::gasStatus, 0, 255},
    {"aux1", &Sample::aux1, -128, 255},
    {"aux2", &Sample::aux2, 0, 65535},
    {"aux3", &Sample::aux3, 0, 255},
    {"aux4", &Sample::aux4, 0, 255},
    {"aux5", &Sample::aux5, 0, 255},
    {"aux6", &Sample::aux6, 0, 255},
    {"aux7", &Sample::aux7, 0, 255},
    {"aux8", &Sample::aux8, 0, 65535},
    {"aux9", &Sample::aux9, 0, 255},
    {"aux10", &Sample::aux10, 0, 255},
    {"aux11", &Sample::aux11, 0, 255},
    {"aux12", &Sample::aux12, 0, 255},
};

// Bits without a meaning are set, so that a reader who takes them for something shows it.
constexpr int kHighNibble = 0xF000;

void writeVardaExtras(WireWriter &w, const Sample &sample, int version)
{
    if (version >= 1)
        w.u16(quint16(sample.aux2));
    if (version >= 2)
        w.u8(quint8(sample.aux3)).u8(quint8(sample.aux4));
    if (version >= 3)
        w.u16(quint16(sample.aux8)).u8(quint8(sample.aux9)).u8(quint8(sample.aux10));
}

void writeOtherExtras(WireWriter &w, const Sample &sample, int version)
{
    if (version >= 1)
        w.u8(quint8(sample.status)).u8(quint8(sample.gasStatus)).u16(quint16(sample.aux2));
    if (version >= 2)
        w.u16(quint16(sample.aux8)).u8(quint8(sample.aux11)).u8(quint8(sample.aux12));
}

void writeSample(WireWriter &w, const Sample &sample, Model model, int version)
{
    w.u8(quint8(sample.mode | sample.code << 2 | 0xC0));
    w.u16(quint16(sample.depth | kHighNibble));
    w.u16(quint16((sample.value12 & 0xFFF) | kHighNibble));
    w.u8(quint8(sample.aux1));
    if (model == Model::Varda)
        writeVardaExtras(w, sample, version);
    else
        writeOtherExtras(w, sample, version);
}

void writePackedSample(WireWriter &w, const Sample &sample)
{
    w.u16(quint16(sample.depth | (sample.code & 7) << 12 | sample.flag << 15));
    w.u16(quint16((sample.value12 & 0xFFF) | sample.mode << 12 | 0xC000));
    w.u8(quint8(sample.aux1)).u8(quint8(sample.aux5));
    w.u8(quint8(sample.aux6)).u8(quint8(sample.aux7));
    w.u16(quint16(sample.aux2)).u16(quint16(sample.aux8));
    w.u8(quint8(sample.aux9)).u8(quint8(sample.aux10));
}

} // namespace

Sample readSample(const QJsonValue &value, const QString &path)
{
    ObjectReader reader(value, path);
    Sample sample;
    for (const Member &member : kMembers) {
        sample.*member.value = int(
            reader.integer(member.name, sample.*member.value, member.min, member.max));
    }
    reader.finish();
    return sample;
}

QByteArray encodeSamples(const QList<Sample> &samples, Model model, int version)
{
    WireWriter w;
    if (version > 0)
        w.u8(0x80).u8(quint8(version));
    const bool packed = model == Model::Tidemar && version >= 3;
    for (const Sample &sample : samples) {
        if (packed)
            writePackedSample(w, sample);
        else
            writeSample(w, sample, model, version);
    }
    return w.data();
}

} // namespace simulator

// SPDX-License-Identifier: MIT
#include <varda/vardadata.h>

#include <algorithm>

#include <varda/bufferreader.h>

#include "decoding/text_p.h"

namespace {

/** A fraction in whole percent, truncated; single precision decides which way 0.29 goes. */
std::uint8_t percent(float fraction)
{
    const float value = fraction * 100.0F;
    if (!(value > 0.0F)) // also what is not a number
        return 0;
    return std::uint8_t(std::min(value, 255.0F));
}

} // namespace

void VardaData::processOwner(const Payload &payload)
{
    owner = textOf(std::span(payload).subspan<1>());
}

void VardaData::processTime(const Payload &payload)
{
    computerTime = BufferReader(payload).take<std::int64_t>();
}

void VardaData::processSensors(const Payload &payload)
{
    BufferReader reader(payload);
    reader.jump(1);
    pamb = reader.take<std::uint32_t>();
    dstop = reader.take<std::uint16_t>();
}

void VardaData::processSimulationParams(const Payload &payload)
{
    BufferReader reader(payload);
    psurf = reader.take<std::uint32_t>();
    pamb = reader.take<std::uint32_t>();
    density = reader.take<std::uint16_t>();
}

void VardaData::processDiver(const Payload &payload)
{
    BufferReader reader(payload);
    for (float &load : diverN2)
        load = reader.take<float>();
    for (float &load : diverHe)
        load = reader.take<float>();
    diverCns = reader.take<float>();
}

void VardaData::processDeleteDives(const Payload &payload, DeleteDivesResult &out)
{
    BufferReader reader(payload);
    out.resultA = reader.take<std::uint32_t>();
    out.resultB = reader.take<std::uint32_t>();
}

void VardaData::processEraseDivesFlash(const Payload &payload, bool &ok)
{
    eraseFlashResult = BufferReader(payload).take<std::uint8_t>();
    ok = lastEraseFlashSuccess();
}

void VardaData::processGetGases(const Payload &payload, std::uint16_t /*length*/)
{
    BufferReader reader(payload);
    auto &table = reader.take<std::uint8_t>() == 0 ? config.gasTable1 : config.gasTable2;
    const auto index = reader.take<std::uint8_t>();
    reader.jump(8);
    const auto oxygen = reader.take<float>();
    const auto helium = reader.take<float>();
    if (index < table.size())
        table[index] = {percent(oxygen), percent(helium)};
}

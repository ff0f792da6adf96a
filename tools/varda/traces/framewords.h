// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

#include <varda/vardadata.h>
#include <varda/vardatraceframe.h>

/** Says in words what the frames of one trace mean; in their order, since some depend on others. */
class FrameWords
{
public:
    /** The command's name, or its number. */
    [[nodiscard]] static QString nameOf(const VardaTraceFrame &frame);
    /** What is wrong with it; empty if nothing is. */
    [[nodiscard]] static QString faultOf(const VardaTraceFrame &frame);
    /** What its payload says; empty if it says nothing. */
    [[nodiscard]] QString words(const VardaTraceFrame &frame);

private:
    [[nodiscard]] QString answer(const VardaTraceFrame &frame);
    [[nodiscard]] QString decoded(const VardaTraceFrame &frame, const VardaData::Payload &payload);
    [[nodiscard]] QString configuration(const VardaData::Payload &payload, bool extended);

    VardaData m_data;
};

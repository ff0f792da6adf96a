// SPDX-License-Identifier: MIT
#pragma once

#include <varda/divesample.h>
#include <varda/logbookdive.h>
#include <varda/tidemardiveheader.h>

/** Dives as a diver has them: none is the same as another, and all are the same in every run. */
namespace DiveMaker {

[[nodiscard]] TidemarDiveHeader header(int number);
[[nodiscard]] QList<DiveSample> samples(int number, int count);
/** With @p count samples, as a synchronisation stores it. */
[[nodiscard]] LogbookDive dive(int number, int count);

} // namespace DiveMaker

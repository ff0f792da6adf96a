// SPDX-License-Identifier: MIT
#pragma once

/**
 * How long a scan is asked to last. Whoever looks at this also puts himself between the library
 * and Qt, because nobody can wait for the real times.
 */
namespace DiscoveryTimeout {

/** What the last scan was asked for, in milliseconds. */
[[nodiscard]] int asked();
/** Every scan from now on lasts this long instead; negative for as long as it was asked to. */
void replaceBy(int milliseconds);

} // namespace DiscoveryTimeout

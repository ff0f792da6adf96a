// SPDX-License-Identifier: MIT
#pragma once

/** What has been counted so far. */
namespace KillPoints {

[[nodiscard]] int count();
/** How often something was made to last on the disk. */
[[nodiscard]] int syncCount();
/** How often something was written to the disk. */
[[nodiscard]] int writeCount();

} // namespace KillPoints

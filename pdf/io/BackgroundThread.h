#pragma once

namespace quillon::pdf {

/// Makes the calling thread give way to others of the program by `steps` of niceness, up to the weakest. For threads
/// that work ahead of the one that everybody waits for: on a machine with few processors they would slow it down. Only
/// a hint: where the system does not allow it, nothing happens.
void giveWay(int steps) noexcept;

}  // namespace quillon::pdf

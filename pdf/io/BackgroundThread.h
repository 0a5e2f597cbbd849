#pragma once

namespace quillon::pdf {

/// Makes the calling thread give way to the main one, and those that run like it, by `steps` of niceness at least. For
/// threads that work ahead of or behind the one that finds out what is to be done: where processors are few they would
/// only slow that down. A hint: where the system does not allow it, nothing happens.
void giveWay(int steps) noexcept;

}  // namespace quillon::pdf

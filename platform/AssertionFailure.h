#pragma once

#include <string_view>

namespace quillon {

/// Stops the program because it is in a state that cannot be. Prints one line to standard error that names the place
/// and the condition that did not hold, then aborts. `file` is the base name of the source, without its ending.
[[noreturn]] void assertionFailure(std::string_view function, std::string_view file, int line,
                                   std::string_view condition);

}  // namespace quillon

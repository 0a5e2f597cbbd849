#include "platform/AssertionFailure.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace quillon {

void assertionFailure(std::string_view function, std::string_view file, int line, std::string_view condition) {
    std::string message(file);
    message.append(":").append(std::to_string(line)).append(": ").append(function);
    message.append(": Assertion `").append(condition).append("' failed.\n");
    // One call, so that the line stays whole when other threads print as well.
    std::fputs(message.c_str(), stderr);
    std::abort();
}

}  // namespace quillon

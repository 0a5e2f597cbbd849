#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// `data` in rows of `rowBytes` bytes, each predicted from the one above (PNG predictor 12).
[[nodiscard]] inline std::string predictedUp(std::string_view data, std::size_t rowBytes) {
    std::string out;
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (i % rowBytes == 0) out += '\2';
        out += static_cast<char>(data[i] - (i < rowBytes ? '\0' : data[i - rowBytes]));
    }
    return out;
}

}  // namespace quillon::pdf

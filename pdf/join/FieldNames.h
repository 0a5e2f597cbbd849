#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace quillon::pdf {

/// The names of fields at the top of a joined form, each of which stands for one field.
class FieldNames {
public:
    /// Takes `name`, a PDF text string, over as it is, or if it is taken with `-2`, `-3` and so on behind it.
    [[nodiscard]] std::string reserve(std::string_view name);

private:
    std::unordered_set<std::string> used_;  // as UTF-16
    std::unordered_map<std::string, std::size_t> last_;
};

}  // namespace quillon::pdf

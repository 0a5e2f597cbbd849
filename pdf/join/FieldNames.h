#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace quillon::pdf {

/// The names of fields at the top of a joined form, each of which stands for one field. Names are PDF text strings; two
/// are equal if they say the same, in whichever encoding.
class FieldNames {
public:
    /// Takes `name` over and returns what has to stand behind it then: nothing, or if the name is taken `-2`, `-3` and
    /// so on. `comparableName`: the name as comparable() has it.
    [[nodiscard]] std::string reserve(std::string_view name, const std::string& comparableName);

    /// `name` with an ending as `reserve` gives it.
    [[nodiscard]] static std::string ended(std::string_view name, std::string_view ending);
    /// Equal for equal names.
    [[nodiscard]] static std::string comparable(std::string_view name);
    /// How many bytes of a name in full, with those of the fields above in front and periods in between (ISO 32000-2,
    /// 12.7.4.2), are the first of these names.
    [[nodiscard]] static std::size_t firstLength(std::string_view name);

private:
    std::unordered_set<std::string> used_;  // as comparable() has them
    std::unordered_map<std::string, std::size_t> last_;
};

}  // namespace quillon::pdf

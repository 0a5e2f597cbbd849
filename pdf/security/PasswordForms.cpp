#include "pdf/security/PasswordForms.h"

#include "pdf/object/DocEncoding.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <stringprep.h>

namespace quillon::pdf {

namespace {

constexpr std::size_t mostBytes = 127;

template <class T>
using Allocated = std::unique_ptr<T, decltype(&std::free)>;

/// Nothing when the text has a character outside the encoding, or is no UTF-8.
std::optional<std::string> inDocEncoding(const std::string& utf8) {
    std::size_t count = 0;
    const Allocated<std::uint32_t> characters(
        stringprep_utf8_to_ucs4(utf8.data(), static_cast<ssize_t>(utf8.size()), &count), &std::free);
    if (!characters) return std::nullopt;
    std::string bytes;
    for (const std::uint32_t character : std::span(characters.get(), count)) {
        const int byte = character <= UINT16_MAX ? toDocEncoding(static_cast<char16_t>(character)) : -1;
        if (byte < 0) return std::nullopt;
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::optional<std::string> normalised(const std::string& utf8) {
    char* result = nullptr;
    const int status = stringprep_profile(utf8.c_str(), &result, "SASLprep", static_cast<Stringprep_profile_flags>(0));
    const Allocated<char> owner(result, &std::free);
    if (status != STRINGPREP_OK) return std::nullopt;
    return std::string(result);
}

/// `preferred`, if there is any, and `other`, if that is different.
std::vector<std::string> both(std::optional<std::string> preferred, std::string other) {
    std::vector<std::string> forms;
    if (preferred) forms.push_back(std::move(*preferred));
    if (forms.empty() || forms.front() != other) forms.push_back(std::move(other));
    return forms;
}

}  // namespace

std::vector<std::string> legacyPasswordForms(std::string_view utf8) {
    std::string typed(utf8);
    auto encoded = inDocEncoding(typed);
    return both(std::move(encoded), std::move(typed));
}

std::vector<std::string> passwordForms(std::string_view utf8) {
    std::string typed(utf8);
    auto prepared = normalised(typed);
    if (prepared) prepared->resize(std::min(prepared->size(), mostBytes));
    typed.resize(std::min(typed.size(), mostBytes));
    return both(std::move(prepared), std::move(typed));
}

}  // namespace quillon::pdf

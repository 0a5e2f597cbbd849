#pragma once

#include "pdf/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quillon::pdf {

class Object;

/// An indirect reference `number generation R` (ISO 32000-2, 7.3.10).
struct Reference {
    std::uint32_t number = 0;
    std::uint32_t generation = 0;

    auto operator<=>(const Reference&) const = default;
};

struct Name {
    std::string value;  ///< decoded, without the slash
    bool operator==(const Name&) const = default;
};

using Array = std::vector<Object>;

/// A dictionary in the order of its file. A key that is missing reads as null, as one whose value is null does; of
/// equal keys the last one holds, as most readers have it.
class Dictionary {
public:
    [[nodiscard]] const Object& operator[](std::string_view key) const noexcept;
    [[nodiscard]] bool contains(std::string_view key) const noexcept;
    /// Adds an entry without looking for an equal key, so that a huge dictionary is read in linear time.
    void append(std::string key, Object value);
    [[nodiscard]] const std::vector<std::pair<std::string, Object>>& entries() const noexcept { return entries_; }

private:
    std::vector<std::pair<std::string, Object>> entries_;
};

/// A parsed value, for what the program must understand; objects that only travel are never parsed. A stream is its
/// dictionary here. Copying copies the whole value.
class Object {
public:
    Object() = default;
    Object(bool value) : value_(value) {}
    Object(std::int64_t value) : value_(value) {}
    Object(double value) : value_(value) {}
    Object(std::string value) : value_(std::move(value)) {}
    Object(Name value) : value_(std::move(value)) {}
    Object(Reference value) : value_(value) {}
    Object(Array value) : value_(std::move(value)) {}
    Object(Dictionary value) : value_(std::move(value)) {}

    [[nodiscard]] bool isNull() const noexcept { return std::holds_alternative<std::monostate>(value_); }
    /// An integer, or a real with an integer's value.
    [[nodiscard]] std::optional<std::int64_t> integer() const noexcept;
    [[nodiscard]] std::optional<double> number() const noexcept;
    // Each null when the value is of another type.
    [[nodiscard]] const bool* boolean() const noexcept { return std::get_if<bool>(&value_); }
    [[nodiscard]] const std::string* string() const noexcept { return std::get_if<std::string>(&value_); }
    [[nodiscard]] const Name* name() const noexcept { return std::get_if<Name>(&value_); }
    [[nodiscard]] const Reference* reference() const noexcept { return std::get_if<Reference>(&value_); }
    [[nodiscard]] const Array* array() const noexcept { return std::get_if<Array>(&value_); }
    [[nodiscard]] const Dictionary* dictionary() const noexcept { return std::get_if<Dictionary>(&value_); }
    [[nodiscard]] bool isName(std::string_view text) const noexcept { return name() && name()->value == text; }

    /// Appends the value as PDF text, well-formed whatever it was read from.
    void write(std::string& out) const;

private:
    std::variant<std::monostate, bool, std::int64_t, double, std::string, Name, Reference, Array, Dictionary> value_;
};

/// Appends `/name`, escaped where needed.
void writeName(std::string& out, std::string_view name);
/// Appends `text` as a literal or hexadecimal string, whichever is shorter.
void writeString(std::string& out, std::string_view text);
/// Appends a reference to the object with a number, of generation 0, or null for the number 0.
void writeReference(std::string& out, std::uint32_t number);
/// Appends a real number as the shortest decimal without exponent that reads back the same, independent of the locale.
/// Infinities and NaN are written as 0.
void writeReal(std::string& out, double value);
/// Appends `[left bottom right top]`.
void writeRectangle(std::string& out, const Rectangle& rectangle);

}  // namespace quillon::pdf

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace quillon {

/// Integers in bytes that came from a file. Bytes past the end read as 0, so that parsers of broken files need no check
/// before each field; `has` tells where the difference matters.
class ByteView {
public:
    enum class Order { BigEndian, LittleEndian };

    explicit ByteView(std::span<const char> bytes, Order order = Order::BigEndian) noexcept
        : bytes_(bytes), order_(order) {}

    [[nodiscard]] std::size_t size() const noexcept { return bytes_.size(); }

    [[nodiscard]] bool has(std::size_t at, std::size_t length) const noexcept {
        return at <= bytes_.size() && length <= bytes_.size() - at;
    }

    [[nodiscard]] std::uint8_t u8(std::size_t at) const noexcept {
        return at < bytes_.size() ? static_cast<std::uint8_t>(bytes_[at]) : std::uint8_t{0};
    }

    [[nodiscard]] std::uint16_t u16(std::size_t at) const noexcept {
        const unsigned first = u8(at);
        const unsigned second = u8(at + 1);
        return static_cast<std::uint16_t>(order_ == Order::BigEndian ? first << 8 | second : second << 8 | first);
    }

    [[nodiscard]] std::uint32_t u32(std::size_t at) const noexcept {
        const std::uint32_t first = u16(at);
        const std::uint32_t second = u16(at + 2);
        return order_ == Order::BigEndian ? first << 16 | second : second << 16 | first;
    }

    [[nodiscard]] bool startsWith(std::string_view prefix) const noexcept {
        return std::string_view(bytes_.data(), bytes_.size()).starts_with(prefix);
    }

private:
    std::span<const char> bytes_;
    Order order_;
};

}  // namespace quillon

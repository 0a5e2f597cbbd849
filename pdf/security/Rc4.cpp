#include "pdf/security/Rc4.h"

#include <cstdint>

namespace quillon::pdf {

Rc4::Rc4(std::string_view key) {
    arcfour_set_key(&context_, key.size(), reinterpret_cast<const std::uint8_t*>(key.data()));
}

void Rc4::apply(std::span<char> data) {
    auto* const bytes = reinterpret_cast<std::uint8_t*>(data.data());
    arcfour_crypt(&context_, data.size(), bytes, bytes);
}

}  // namespace quillon::pdf

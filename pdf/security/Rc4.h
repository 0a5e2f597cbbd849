#pragma once

#include <nettle/arcfour.h>
#include <span>
#include <string_view>

namespace quillon::pdf {

/// The RC4 stream cipher, which old protected files use; deciphering and enciphering are the same.
class Rc4 {
public:
    /// `key` is 1 to 256 bytes long.
    explicit Rc4(std::string_view key);

    /// Goes on with `data`, in place.
    void apply(std::span<char> data);

private:
    arcfour_ctx context_;
};

}  // namespace quillon::pdf

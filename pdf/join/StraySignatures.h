#pragma once

#include "pdf/read/ObjectReader.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace quillon::pdf {

/// Finds signature fields of a source that its form does not list, or that have no form. Readers take the annotations
/// of pages for fields nevertheless.
class StraySignatures {
public:
    /// `reader` must outlive the use of this.
    void begin(ObjectReader& reader);

    /// Whether a signature field with a value may be in the object `text`. Cheap, since every object is asked.
    [[nodiscard]] static bool mayBeIn(std::string_view text);
    /// Whether `field` is a signature field, by what it says itself or one of those above it.
    [[nodiscard]] bool isSignature(const Dictionary& field) { return isSignature(field, 0); }

private:
    [[nodiscard]] bool isSignature(const Dictionary& field, int depth);

    ObjectReader* reader_ = nullptr;
    std::unordered_map<std::uint32_t, bool> known_;  // by object number
};

}  // namespace quillon::pdf

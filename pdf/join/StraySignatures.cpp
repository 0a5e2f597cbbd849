#include "pdf/join/StraySignatures.h"

#include "pdf/object/Characters.h"
#include "pdf/object/MayHaveKey.h"

namespace quillon::pdf {

namespace {

/// Whether a type of field may be given by a reference.
bool mayReferToType(std::string_view text) {
    for (std::size_t at = text.find("FT"); at != std::string_view::npos; at = text.find("FT", at + 2)) {
        std::size_t value = at + 2;
        while (value < text.size() && isWhiteSpace(text[value])) ++value;
        if (value < text.size() && isDigit(text[value])) return true;
    }
    return false;
}

}  // namespace

void StraySignatures::begin(ObjectReader& reader) {
    reader_ = &reader;
    known_.clear();
}

bool StraySignatures::mayBeIn(std::string_view text) {
    if (!mayHaveValueKey(text)) return false;
    if (text.find('#') != std::string_view::npos || text.find("Sig") != std::string_view::npos) return true;
    return mayReferToType(text) || (!mayHaveKey(text, "FT") && mayHaveKey(text, "Parent"));
}

bool StraySignatures::isSignature(const Dictionary& field, int depth) {
    constexpr int highest = 64;
    const Object type = reader_->resolve(field["FT"]);
    if (!type.isNull()) return type.isName("Sig");
    const Reference* above = field["Parent"].reference();
    if (!above || depth == highest) return false;
    // Meanwhile no signature, in case it leads back to itself.
    const auto [place, isNew] = known_.try_emplace(above->number, false);
    if (!isNew) return place->second;
    const Object parent = reader_->parse(*above);
    return parent.dictionary() && (known_[above->number] = isSignature(*parent.dictionary(), depth + 1));
}

}  // namespace quillon::pdf

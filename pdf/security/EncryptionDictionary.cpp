#include "pdf/security/EncryptionDictionary.h"

#include <algorithm>
#include <optional>

namespace quillon::pdf {

namespace {

std::string stringOf(const Object& object, std::size_t length) {
    if (!object.string()) return {};
    return object.string()->substr(0, length);
}

/// Lengths of keys as `Length` states them: in bits, but some programs write bytes, and some nonsense.
std::vector<std::size_t> keyLengthsOf(int version, const Object& stated) {
    constexpr std::size_t shortest = 5;
    constexpr std::size_t longest = 16;
    std::vector<std::size_t> lengths;
    const auto add = [&](std::int64_t bytes) {
        const auto length = static_cast<std::size_t>(std::max<std::int64_t>(bytes, 0));
        if (length < shortest || length > longest || std::ranges::count(lengths, length) != 0) return;
        lengths.push_back(length);
    };
    if (version == 1) add(shortest);
    if (version == 4) add(longest);
    const std::int64_t number = stated.integer().value_or(shortest * 8);
    add(number / 8);
    add(number);
    add(longest);
    add(shortest);
    return lengths;
}

/// Nothing for a method that is not known.
std::optional<Cipher> cipherOf(const Object& filter, int version) {
    if (!filter.dictionary()) return std::nullopt;
    const Object& method = (*filter.dictionary())["CFM"];
    if (method.isNull() || method.isName("None")) return Cipher::Identity;
    // In version 5 there is only one key, and only one way in which it can be used.
    if (version == 5) {
        const bool aes = method.isName("AESV3") || method.isName("AESV2");
        return aes ? std::optional(Cipher::Aes256) : std::nullopt;
    }
    if (method.isName("V2")) return Cipher::Rc4;
    if (method.isName("AESV2")) return Cipher::Aes128;
    return std::nullopt;
}

/// False when a filter is asked for that is not there or not known.
bool readFilters(EncryptionDictionary& result, const Dictionary& dictionary) {
    if (const Dictionary* filters = dictionary["CF"].dictionary()) {
        for (const auto& [name, filter] : filters->entries()) {
            if (const auto cipher = cipherOf(filter, result.version)) result.filters.emplace_back(name, *cipher);
        }
    }
    const auto find = [&](std::string_view key, Cipher fallback) -> std::optional<Cipher> {
        const Name* name = dictionary[key].name();
        if (!name) return fallback;
        if (name->value == "Identity") return Cipher::Identity;
        const auto found =
            std::ranges::find(result.filters, name->value, [](const auto& entry) { return entry.first; });
        return found == result.filters.end() ? std::nullopt : std::optional(found->second);
    };
    const auto streams = find("StmF", Cipher::Identity);
    const auto strings = find("StrF", Cipher::Identity);
    if (!streams || !strings) return false;
    result.streams = *streams;
    result.strings = *strings;
    result.embeddedFiles = find("EFF", *streams).value_or(*streams);
    return true;
}

bool readKeys(EncryptionDictionary& result, const Dictionary& dictionary) {
    constexpr std::size_t legacyLength = 32;
    constexpr std::size_t length = 48;
    constexpr std::size_t keyLength = 32;
    if (result.version < 5) {
        result.owner = stringOf(dictionary["O"], legacyLength);
        result.user = stringOf(dictionary["U"], legacyLength);
        result.owner.resize(legacyLength);
        result.user.resize(legacyLength);
        return dictionary["O"].string() && dictionary["U"].string();
    }
    result.owner = stringOf(dictionary["O"], length);
    result.user = stringOf(dictionary["U"], length);
    result.ownerKey = stringOf(dictionary["OE"], keyLength);
    result.userKey = stringOf(dictionary["UE"], keyLength);
    return result.owner.size() == length && result.user.size() == length && result.ownerKey.size() == keyLength &&
           result.userKey.size() == keyLength;
}

}  // namespace

EncryptionDictionary EncryptionDictionary::read(const Dictionary& dictionary, std::string fileId) {
    EncryptionDictionary result;
    result.fileId = std::move(fileId);
    if (!dictionary["Filter"].isName("Standard")) return result;
    const std::int64_t version = dictionary["V"].integer().value_or(0);
    const std::int64_t revision = dictionary["R"].integer().value_or(0);
    const bool legacy = (version == 1 || version == 2 || version == 4) && revision >= 2 && revision <= 4;
    const bool modern = version == 5 && (revision == 5 || revision == 6);
    if (!legacy && !modern) return result;
    result.version = static_cast<int>(version);
    result.revision = static_cast<int>(revision);
    // Meant are 32 bits; some programs write them as a signed number, some as an unsigned one.
    result.permissions = static_cast<std::uint32_t>(dictionary["P"].integer().value_or(0));
    if (const bool* metadata = dictionary["EncryptMetadata"].boolean()) result.encryptsMetadata = *metadata;
    if (legacy) result.keyLengths = keyLengthsOf(result.version, dictionary["Length"]);
    const bool filtered = version >= 4;
    if (!filtered) result.strings = result.streams = result.embeddedFiles = Cipher::Rc4;
    result.supported = (!filtered || readFilters(result, dictionary)) && readKeys(result, dictionary);
    return result;
}

Cipher EncryptionDictionary::filter(std::string_view name) const noexcept {
    if (name == "Identity") return Cipher::Identity;
    const auto found = std::ranges::find(filters, name, [](const auto& entry) { return entry.first; });
    return found == filters.end() ? streams : found->second;
}

}  // namespace quillon::pdf

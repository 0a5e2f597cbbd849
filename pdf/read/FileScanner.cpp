#include "pdf/read/FileScanner.h"

#include "pdf/object/Characters.h"
#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"
#include "pdf/read/Limits.h"
#include "pdf/read/ObjectStream.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

constexpr std::size_t overlap = 48;  // more than the longest `n g obj`

/// The place of `n g` in front of the keyword `obj` at `keyword`; nothing when none is there.
std::optional<std::size_t> headerBegin(std::string_view text, std::size_t keyword) {
    std::size_t at = keyword;
    const auto back = [&](auto belongs) {
        const std::size_t from = at;
        while (at > 0 && belongs(text[at - 1])) --at;
        return at != from;
    };
    back(isWhiteSpace);
    if (!back(isDigit) || !back(isWhiteSpace) || !back(isDigit)) return std::nullopt;
    return at;
}

}  // namespace

CrossReferenceTable FileScanner::scan() {
    table_.entries = ObjectMap<CrossReferenceEntry>(file_.file().size());
    table_.recovered = true;
    const std::uint64_t size = file_.file().size();
    for (std::uint64_t offset = 0; offset < size;) {
        const OwnedText view = file_.view(offset, 4096);
        const std::string_view text = view.text;
        if (text.empty()) break;
        const std::size_t object = text.find("obj");
        const std::size_t trailer = text.substr(0, object).find("trailer");
        if (object == std::string_view::npos && trailer == std::string_view::npos) {
            const bool atEnd = offset + text.size() >= size;
            offset += atEnd || text.size() <= overlap ? text.size() : text.size() - overlap;
        } else if (trailer < object) {
            offset += trailer + std::string_view("trailer").size();
            handleTrailer(offset);
        } else {
            const auto begin = headerBegin(text, object);
            const auto header = begin ? readObjectHeader(text.substr(*begin)) : std::nullopt;
            offset = header ? handleObject(offset + *begin, *header) : offset + object + 3;
        }
    }
    for (const Found& found : objectStreams_) addObjectStream(found);
    if (!table_.trailer["Root"].reference() && catalog_) table_.trailer.append("Root", *catalog_);
    return std::move(table_);
}

/// Records the object and returns where to go on.
std::uint64_t FileScanner::handleObject(std::uint64_t offset, const ObjectHeader& header) {
    const std::uint64_t content = offset + header.length;
    const std::uint32_t number = header.reference.number;
    if (number > maximumObjectNumber || number == 0) return content;
    table_.entries.at(number) = {CrossReferenceEntry::Kind::InFile, offset, header.reference.generation};
    constexpr std::size_t usualDictionary = 16 * 1024;
    constexpr std::size_t shortDictionary = 256;
    const bool patient = wasted_ < 4 * file_.file().size();
    const OwnedText view = file_.view(content, patient ? usualDictionary : shortDictionary);
    const std::string_view text = view.text.substr(0, patient ? usualDictionary : shortDictionary);
    const auto end = skipValue(text, 0);
    if (!end) wasted_ += text.size();
    const std::string_view dictionary = text.substr(0, end.value_or(0));
    const std::string_view type = findValue(dictionary, "Type");
    if (type == "/Catalog") catalog_ = header.reference;
    const auto data = end ? streamDataBegin(view.text, *end) : std::nullopt;
    if (!data) return content;
    if (type == "/ObjStm") objectStreams_.push_back({number, offset});
    if (type == "/XRef") {
        if (const Object parsed = Parser(dictionary).parse(); parsed.dictionary()) addTrailer(*parsed.dictionary());
    }
    return endOfStream(content + *data, dictionary);
}

std::uint64_t FileScanner::endOfStream(std::uint64_t data, std::string_view dictionary) {
    const auto stated = Parser(findValue(dictionary, "Length")).parse().integer();
    if (stated && *stated >= 0 && static_cast<std::uint64_t>(*stated) < file_.file().size()) {
        const std::uint64_t end = data + static_cast<std::uint64_t>(*stated);
        if (endsStreamAt(file_, end)) return end;
    }
    return data + searchStreamLength(file_, data, file_.file().size());
}

void FileScanner::handleTrailer(std::uint64_t offset) {
    const OwnedText view = file_.view(offset, limits::trailer);
    const Object parsed = Parser(view.text).parse();
    if (parsed.dictionary()) addTrailer(*parsed.dictionary());
}

/// The last trailer that names a catalog holds; a linearized file's first one is completed by it.
void FileScanner::addTrailer(const Dictionary& trailer) {
    const bool better = trailer["Root"].reference() || !table_.trailer["Root"].reference();
    Dictionary merged = better ? trailer : table_.trailer;
    for (const auto& [key, value] : (better ? table_.trailer : trailer).entries()) {
        if (!merged.contains(key)) merged.append(key, value);
    }
    table_.trailer = std::move(merged);
}

void FileScanner::addObjectStream(const Found& found) {
    if (table_.entries.get(found.number).place != found.offset) return;  // a later object took the number
    auto stream = readStreamAt(file_, found.offset);
    if (!stream) return;
    // Without a key, nothing good can be made of what is enciphered.
    if (!decryptor_ && !table_.trailer["Encrypt"].isNull()) return;
    if (decryptor_ && !decryptor_->decrypt(stream->reference, stream->dictionary, stream->data)) return;
    const auto objects = ObjectStream::decode(*stream);
    if (!objects) return;
    for (std::size_t i = 0; i < objects->count() && packed_ < file_.file().size() + limits::tableMargin;
         ++i, ++packed_) {
        const std::uint32_t number = objects->numberAt(i);
        if (number > maximumObjectNumber) continue;
        CrossReferenceEntry& entry = table_.entries.at(number);
        if (entry.kind == CrossReferenceEntry::Kind::InFile && entry.place > found.offset) continue;
        entry = {CrossReferenceEntry::Kind::InObjectStream, found.number, i};
        if (findValue(objects->textAt(i), "Type") == "/Catalog") catalog_ = Reference{number, 0};
    }
}

}  // namespace quillon::pdf

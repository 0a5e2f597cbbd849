#include "pdf/read/ObjectReader.h"

#include "pdf/filter/Filters.h"
#include "pdf/object/Characters.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"
#include "pdf/read/CrossReferenceReader.h"
#include "pdf/read/FileScanner.h"
#include "pdf/read/Limits.h"
#include "pdf/read/StreamText.h"
#include "pdf/security/CryptFilter.h"
#include "pdf/security/StringRewriter.h"

#include <algorithm>
#include <unordered_set>

namespace quillon::pdf {

namespace {

// Room for the object streams of a manual of a thousand pages.
constexpr std::size_t streamCacheBytes = 12U << 20U;

std::optional<std::uint64_t> findHeader(BlockCache& file) {
    constexpr std::size_t searched = 1024;
    const OwnedText view = file.view(0, searched);
    const std::size_t at = view.text.substr(0, searched + 4).find("%PDF-");
    if (at == std::string_view::npos) return std::nullopt;
    return at;
}

/// Whether an object may begin in `text`. One begins with two numbers and `obj`; the letters alone are in many names
/// and strings.
bool mayHoldObject(std::string_view text) {
    for (std::size_t at = text.find("obj"); at != std::string_view::npos; at = text.find("obj", at + 1)) {
        std::size_t before = at;
        while (before > 0 && isWhiteSpace(text[before - 1])) --before;
        if (before > 0 && isDigit(text[before - 1])) return true;
    }
    return false;
}

}  // namespace

std::optional<std::size_t> ObjectText::streamData() const noexcept {
    if (!inFile || valueEnd == 0) return std::nullopt;
    return streamDataBegin(text(), valueEnd);
}

ObjectReader::ObjectReader(std::shared_ptr<InputFile> file, Warnings& warnings)
    : file_(std::move(file)), warnings_(warnings), headerOffset_(findHeader(file_)) {
    CrossReferenceReader reader(file_, headerOffset_.value_or(0));
    if (auto table = reader.read()) {
        table_ = std::move(*table);
    } else {
        recover("the cross-reference data is damaged; the file was scanned for objects");
    }
}

bool ObjectReader::recover(std::string_view reason, std::uint32_t object, std::int64_t offset) {
    if (table_.recovered) return false;
    warnings_.add(reason, object, offset);
    CrossReferenceTable found = FileScanner(file_, decryptor_.get()).scan();
    for (const auto& [key, value] : table_.trailer.entries()) {
        if (!found.trailer.contains(key)) found.trailer.append(key, value);
    }
    table_ = std::move(found);
    trim();
    prefetcher_ = nullptr;  // what it reads is where objects were thought to be before
    offsets_.clear();
    return true;
}

bool ObjectReader::isNull(std::string_view valueText) {
    if (valueText.starts_with('[') || valueText.starts_with('/') || valueText.starts_with("<<")) return false;
    if (const auto reference = plainReference(valueText)) return !exists(*reference);
    const Object value = Parser(valueText).parse();
    return value.reference() ? !exists(*value.reference()) : value.isNull();
}

bool ObjectReader::mayVisit(std::uint64_t places) const noexcept {
    constexpr std::uint64_t shortestReference = 6;  // `1 0 R `
    constexpr std::uint64_t margin = 4096;
    return places <= (file_.file().size() + decodedBytes_) / shortestReference + margin;
}

void ObjectReader::setDecryptor(std::shared_ptr<const Decryptor> decryptor) {
    decryptor_ = std::move(decryptor);
    if (!decryptor_ || decryptor_->isLocked() || !table_.recovered) return;
    // The scan could not look into object streams yet.
    Dictionary trailer = std::move(table_.trailer);
    table_ = FileScanner(file_, decryptor_.get()).scan();
    table_.trailer = std::move(trailer);
    trim();
}

std::optional<ObjectText> ObjectReader::find(Reference reference, std::size_t wanted) {
    // Strings can only be deciphered in a whole value.
    if (decryptor_ && decryptor_->hasStringCipher()) return findWhole(reference);
    return findStored(reference, wanted);
}

std::optional<ObjectText> ObjectReader::findWhole(Reference reference) {
    auto object = findWholeStored(reference);
    if (decryptor_ && object) decryptStrings(reference.number, *object);
    return object;
}

void ObjectReader::decryptStrings(std::uint32_t number, ObjectText& object) const {
    if (!object.inFile || !decryptor_->hasStringCipher() || !mayHoldString(object.value())) return;
    const auto change = [&](std::string_view bytes) { return decryptor_->string({number, object.generation}, bytes); };
    const auto plain = std::make_shared<std::string>();
    rewriteStrings(object.value(), change, *plain);
    const std::size_t end = plain->size();
    if (object.valueEnd != 0) {
        // What tells a stream from a plain object comes along, and stays at its place in the file by the offset.
        plain->append(object.text(), object.valueEnd);
        object.offset += object.valueEnd;
        object.offset -= end;
        object.valueEnd = end;
    }
    object.source = {plain, *plain};
}

std::optional<ObjectText> ObjectReader::findStored(Reference reference, std::size_t wanted) {
    const CrossReferenceEntry entry = table_.entries.get(reference.number);
    if (!exists(reference, entry)) return std::nullopt;
    switch (entry.kind) {
        case CrossReferenceEntry::Kind::InFile:
            return findInFile(reference, entry, wanted);
        case CrossReferenceEntry::Kind::InObjectStream: {
            const auto text = findInStream(reference.number, entry);
            if (!text) return std::nullopt;
            ObjectText object;
            object.source = {lastObjects_, *text};
            object.complete = true;
            return object;
        }
        case CrossReferenceEntry::Kind::Free:
        case CrossReferenceEntry::Kind::Unknown:
            break;
    }
    return std::nullopt;
}

std::optional<ObjectText> ObjectReader::findInFile(Reference reference, const CrossReferenceEntry& entry,
                                                   std::size_t wanted) {
    ObjectText object;
    object.source = file_.view(entry.place, wanted);
    const auto header = readObjectHeader(object.source.text);
    if (!header || header->reference.number != reference.number) {
        const bool recovered = recover("the cross-reference entry leads elsewhere; the file was scanned for objects",
                                       reference.number, static_cast<std::int64_t>(entry.place));
        return recovered ? findStored(reference, wanted) : std::nullopt;
    }
    object.complete = entry.place + object.source.text.size() >= file_.file().size();
    object.source.text.remove_prefix(header->length);
    object.offset = entry.place + header->length;
    object.inFile = true;
    object.generation = header->reference.generation;
    return object;
}

/// The stream becomes the one asked for last, which keeps the text.
std::optional<std::string_view> ObjectReader::findInStream(std::uint32_t number, const CrossReferenceEntry& entry) {
    if (entry.place > maximumObjectNumber) return std::nullopt;
    if (entry.place != lastStream_) {
        lastObjects_ = objectStream(static_cast<std::uint32_t>(entry.place));
        lastStream_ = static_cast<std::uint32_t>(entry.place);
    }
    const auto index = lastObjects_ ? lastObjects_->find(number, entry.detail) : std::nullopt;
    return index ? std::optional(lastObjects_->textAt(*index)) : std::nullopt;
}

std::optional<std::string_view> ObjectReader::findPacked(Reference reference,
                                                         std::shared_ptr<const ObjectStream>& holder) {
    const CrossReferenceEntry entry = table_.entries.get(reference.number);
    if (entry.kind != CrossReferenceEntry::Kind::InObjectStream || !exists(reference, entry)) return std::nullopt;
    const auto text = findInStream(reference.number, entry);
    if (text && holder != lastObjects_) holder = lastObjects_;
    return text;
}

std::optional<ObjectText> ObjectReader::findWholeStored(Reference reference) {
    constexpr std::size_t growth = 16;
    for (std::size_t wanted = usualObject;; wanted *= growth) {
        auto object = findStored(reference, wanted);
        if (!object) return object;
        object->valueEnd = skipValue(object->text(), 0).value_or(0);
        if (!object->inFile) return object;
        if (wanted >= limits::objectText) {
            if (object->valueEnd == 0 && !object->complete) {
                warnings_.add("the object is longer than any sound one; the rest of it is left out", reference.number,
                              static_cast<std::int64_t>(object->offset));
            }
            return object;
        }
        constexpr std::size_t keyword = 16;  // longer than `stream` and its end of line
        const std::size_t next = skipBlank(object->text(), object->valueEnd);
        const bool whole = object->valueEnd != 0 && next + keyword <= object->text().size();
        // What is not closed where the next object begins is closed, if at all, by what that one holds. To know where
        // it begins all objects are put in order, if one may begin in the value at all.
        const bool isShort = object->valueEnd != 0 && object->valueEnd <= usualObject;
        const bool mayRunOn = !isShort && mayHoldObject(object->value());
        if (whole && !mayRunOn) return object;
        if (!mayRunOn && !object->complete) continue;
        const std::uint64_t bound = nextObject(object->offset) - object->offset;
        if (whole && object->valueEnd <= bound) return object;
        if (object->complete || object->text().size() >= bound) {
            object->source.text = object->text().substr(0, bound);
            object->valueEnd = skipValue(object->text(), 0).value_or(0);
            object->complete = true;
            return object;
        }
    }
}

Object ObjectReader::parse(Reference reference) {
    const auto object = findWhole(reference);
    return object ? Parser(object->text()).parse() : Object();
}

Object ObjectReader::resolve(const Object& object) {
    constexpr int mostSteps = 32;
    if (!object.reference()) return object;
    Object current = object;
    for (int step = 0; step < mostSteps && current.reference(); ++step) current = parse(*current.reference());
    return current.reference() ? Object() : current;
}

Object ObjectReader::resolve(std::string_view valueText) {
    return valueText.empty() ? Object() : resolve(Parser(valueText).parse());
}

std::shared_ptr<const ObjectStream> ObjectReader::objectStream(std::uint32_t number) {
    if (const auto found = streams_.find(number); found != streams_.end()) {
        found->second.lastUse = ++clock_;
        return found->second.objects;
    }
    streams_[number] = {nullptr, ++clock_};  // a stream that describes itself by its own objects ends here
    auto objects = prefetcher_ ? prefetcher_->take(file_.file(), number) : nullptr;
    if (!objects) objects = readObjectStream(number);
    const std::size_t bytes = objects ? objects->bytes().size() : 0;
    makeRoom(bytes);
    streamBytes_ += bytes;
    decodedBytes_ += bytes;
    streams_[number] = {objects, ++clock_};
    return objects;
}

std::shared_ptr<const ObjectStream> ObjectReader::readObjectStream(std::uint32_t number) {
    const CrossReferenceEntry entry = table_.entries.get(number);
    if (entry.kind != CrossReferenceEntry::Kind::InFile) return nullptr;
    // What describes an object stream must not be in one itself; following it there could go round in circles.
    const auto plain = [this](Reference reference) {
        const bool inFile = table_.entries.get(reference.number).kind == CrossReferenceEntry::Kind::InFile;
        return inFile ? parse(reference) : Object();
    };
    auto stream = readStreamAt(file_, entry.place, plain);
    if (stream && stream->reference.number == number) {
        for (const char* key : {"N", "First", "Filter", "DecodeParms"}) {
            if (const Reference* target = stream->dictionary[key].reference())
                stream->dictionary.append(key, plain(*target));
        }
        if (decryptor_ && !decryptor_->decrypt(stream->reference, stream->dictionary, stream->data)) return nullptr;
        if (auto objects = ObjectStream::decode(*stream)) return objects;
    }
    warnings_.add("the object stream cannot be read", number, static_cast<std::int64_t>(entry.place));
    return nullptr;
}

void ObjectReader::makeRoom(std::size_t bytes) {
    while (!streams_.empty() && streamBytes_ + bytes > streamCacheBytes) {
        const auto oldest =
            std::ranges::min_element(streams_, {}, [](const auto& entry) { return entry.second.lastUse; });
        streamBytes_ -= oldest->second.objects ? oldest->second.objects->bytes().size() : 0;
        streams_.erase(oldest);
    }
}

/// The value `text`, which is nearly always a number, or a reference to an object that is one.
std::optional<std::int64_t> ObjectReader::integer(std::string_view text) {
    const auto plain = [](std::string_view value) -> std::optional<std::int64_t> {
        std::size_t digits = 0;
        const auto number = readUnsigned(value, digits);
        const bool isWhole = number && digits == value.size() && *number <= INT64_MAX;
        return isWhole ? std::optional(static_cast<std::int64_t>(*number)) : std::nullopt;
    };
    if (const auto number = plain(text)) return number;
    const auto reference = plainReference(text);
    if (!reference) return resolve(text).integer();
    const auto object = findWhole(*reference);
    if (!object) return std::nullopt;
    const std::string_view value = object->value();
    if (const auto number = plain(value.substr(skipBlank(value, 0)))) return number;
    return resolve(Parser(object->text()).parse()).integer();
}

StreamExtent ObjectReader::streamExtent(std::uint32_t number, std::string_view length, std::uint64_t data) {
    const std::uint64_t size = file_.file().size();
    const auto stated = integer(length);
    if (stated && *stated >= 0 && static_cast<std::uint64_t>(*stated) <= size - std::min(data, size)) {
        const auto bytes = static_cast<std::uint64_t>(*stated);
        if (endsStreamAt(file_, data + bytes)) return {data, bytes};
    }
    const std::uint64_t bytes = searchStreamLength(file_, data, nextObject(data));
    warnings_.add("the length of the stream is wrong; " + std::to_string(bytes) + " bytes were found", number,
                  static_cast<std::int64_t>(data));
    return {data, bytes};
}

std::optional<std::string> ObjectReader::decodedStream(Reference reference, std::size_t limit) {
    const auto object = findWhole(reference);
    if (!object || !object->streamData()) return std::nullopt;
    std::string withoutCryptFilter;
    const auto cipher = streamKey(reference.number, *object, withoutCryptFilter);
    if (!cipher) return std::nullopt;
    const Object parsed = Parser(withoutCryptFilter.empty() ? object->value() : withoutCryptFilter).parse();
    if (!parsed.dictionary()) return std::nullopt;
    Dictionary dictionary = *parsed.dictionary();
    std::string length;
    dictionary["Length"].write(length);
    const StreamExtent extent = streamExtent(reference.number, length, object->offset + *object->streamData());
    if (extent.length > limit) return std::nullopt;
    for (const char* key : {"Filter", "DecodeParms"}) dictionary.append(key, resolveDeep(dictionary[key]));
    std::string data;
    file_.append(extent.offset, static_cast<std::size_t>(extent.length), data);
    decryptStream(*cipher, data);
    return decodeStream(dictionary, data, limit);
}

/// Resolves an array's elements too.
Object ObjectReader::resolveDeep(const Object& object) {
    Object resolved = resolve(object);
    if (!resolved.array()) return resolved;
    Array elements;
    for (const Object& element : *resolved.array()) elements.push_back(resolve(element));
    return elements;
}

std::optional<StreamKey> ObjectReader::streamKey(std::uint32_t number, const ObjectText& object,
                                                 std::string& dictionary) {
    if (!decryptor_ && object.value().find("Crypt") == std::string_view::npos) return StreamKey();
    const Object parsed = Parser(object.value()).parse();
    if (!parsed.dictionary()) return StreamKey();
    Dictionary resolved = *parsed.dictionary();
    for (const char* key : {"Type", "Filter", "DecodeParms"}) {
        if (resolved[key].reference()) resolved.append(key, resolve(resolved[key]));
    }
    if (cryptFilterOf(resolved)) {
        const PlainFilters plain = withoutCryptFilter(resolved);
        Dictionary kept;
        for (const auto& [key, value] : parsed.dictionary()->entries()) {
            if (key != "Filter" && key != "DecodeParms") kept.append(key, value);
        }
        if (!plain.filter.isNull()) kept.append("Filter", plain.filter);
        if (!plain.parameters.isNull()) kept.append("DecodeParms", plain.parameters);
        Object(std::move(kept)).write(dictionary);
    }
    return decryptor_ ? decryptor_->streamKey({number, object.generation}, resolved) : StreamKey();
}

std::uint64_t ObjectReader::nextObject(std::uint64_t offset) {
    if (offsets_.empty()) {
        table_.entries.forEach([this](std::uint32_t, const CrossReferenceEntry& entry) {
            if (entry.kind == CrossReferenceEntry::Kind::InFile) offsets_.push_back(entry.place);
        });
        std::ranges::sort(offsets_);
    }
    const auto next = std::ranges::upper_bound(offsets_, offset);
    return next == offsets_.end() ? file_.file().size() : *next;
}

bool ObjectReader::charge(std::uint64_t bytes) noexcept {
    charged_ += bytes;
    return canHold(charged_);
}

bool ObjectReader::canHold(std::uint64_t bytes) const noexcept {
    constexpr std::uint64_t margin = 16U << 20U;
    return bytes <= 4 * (file_.file().size() + decodedBytes_) + margin;
}

std::vector<ObjectStreamPrefetcher::Wanted> ObjectReader::objectStreams() const {
    std::vector<ObjectStreamPrefetcher::Wanted> wanted;
    std::unordered_set<std::uint32_t> seen;
    std::uint64_t last = 0;
    table_.entries.forEach([&](std::uint32_t, const CrossReferenceEntry& entry) {
        if (entry.kind != CrossReferenceEntry::Kind::InObjectStream || entry.place == last) return;
        last = entry.place;
        const auto number = static_cast<std::uint32_t>(std::min(entry.place, maximumObjectNumber));
        const CrossReferenceEntry stream = table_.entries.get(number);
        if (stream.kind != CrossReferenceEntry::Kind::InFile || streams_.contains(number)) return;
        if (!seen.insert(number).second) return;
        wanted.push_back({number, stream.place});
    });
    return wanted;
}

void ObjectReader::trim() {
    file_.clear();
    lastStream_ = 0;
    lastObjects_.reset();
    streams_.clear();
    streamBytes_ = 0;
}

std::size_t ObjectReader::memory() const noexcept {
    return table_.entries.memory() + offsets_.capacity() * sizeof(std::uint64_t);
}

}  // namespace quillon::pdf

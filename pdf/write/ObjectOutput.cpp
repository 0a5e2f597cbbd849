#include "pdf/write/ObjectOutput.h"

#include "pdf/object/Object.h"
#include "pdf/security/StringRewriter.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

constexpr std::string_view streamEnd = "\nendstream\nendobj\n";

void appendBigEndian(std::string& out, std::uint64_t value) {
    for (unsigned shift = 64; shift != 0; shift -= 8) out += static_cast<char>(value >> (shift - 8) & 0xFFU);
}

unsigned bytesFor(std::uint64_t value) {
    unsigned bytes = 1;
    while (bytes < 8 && value >> (8 * bytes) != 0) ++bytes;
    return bytes;
}

std::string idText(std::string_view firstId, XXH128_hash_t digest) {
    std::string own;
    appendBigEndian(own, digest.high64);
    appendBigEndian(own, digest.low64);
    std::string text = "/ID[";
    writeString(text, firstId.empty() ? std::string_view(own) : firstId);
    writeString(text, own);
    return text + ']';
}

}  // namespace

ObjectOutput::ObjectOutput(OutputFile& file, const Encryptor* encryptor)
    : file_(file), encryptor_(encryptor), pipeline_(file, encryptor) {
    beginBody();
}

void ObjectOutput::close(std::uint32_t number, std::size_t begin) {
    if (body_.size() - begin > longestPacked) {
        writeApart(number, begin);
        return;
    }
    packed_.push_back({number, static_cast<std::uint32_t>(begin - indexRoom)});
    body_ += '\n';
    if (packed_.size() == bodyObjects || body_.size() >= bodyBytes) flushBody();
}

/// Writes the object whose value begins at `begin` of the body directly into the file.
void ObjectOutput::writeApart(std::uint32_t number, std::size_t begin) {
    const std::string_view value = std::string_view(body_).substr(begin);
    beginObject(number);
    appendEnciphered(value);
    chunk_ += "\nendobj\n";
    body_.resize(begin);
    body_.shrink_to_fit();
    flushChunk();
}

void ObjectOutput::flushBody() {
    if (packed_.empty()) return;
    const std::uint32_t stream = reserve();
    for (std::size_t i = 0; i < packed_.size(); ++i) places_.setInStream(packed_[i].number, stream, i);
    std::string entries = "/Type/ObjStm/N " + std::to_string(packed_.size()) + "/First " + std::to_string(indexRoom);
    if (bodies_++ % bodiesOfCodes == 0) {
        // The index is part of the sample, so here it is not left to the pipeline.
        writeObjectStreamIndex(packed_, body_);
        packed_.clear();
        codes_ = std::make_shared<const DeflateCodes>(body_);
    }
    pipeline_.writeObjectStream(stream, std::move(entries), std::move(body_), std::move(packed_), codes_);
    body_ = pipeline_.buffer(indexRoom + bodyBytes);
    beginBody();
    packed_ = {};
    packed_.reserve(bodyObjects);
}

void ObjectOutput::beginBody() {
    body_.assign(indexRoom, ' ');
}

void ObjectOutput::flushChunk() {
    if (chunk_.empty()) return;
    pipeline_.write(std::move(chunk_), std::move(chunkObjects_), std::move(chunkSealed_));
    chunk_ = pipeline_.buffer(chunkBytes + StreamIndex::longStream);
    chunkObjects_.clear();
    chunkSealed_.clear();
}

/// Begins an object that stands directly in the file.
void ObjectOutput::beginObject(std::uint32_t number) {
    chunkObjects_.push_back({number, chunk_.size()});
    chunk_ += std::to_string(number);
    chunk_ += " 0 obj\n";
}

/// A value, or the entries of a dictionary; its strings are enciphered if the document is.
void ObjectOutput::appendEnciphered(std::string_view text) {
    if (encryptor_ && mayHoldString(text)) {
        chunk_ += encryptor_->withStrings(text);
    } else {
        chunk_ += text;
    }
}

void ObjectOutput::beginStream(std::uint32_t number, std::string_view entries, std::uint64_t length) {
    beginObject(number);
    chunk_ += "<<";
    appendEnciphered(entries);
    chunk_ += "/Length ";
    chunk_ += std::to_string(encryptor_ ? Encryptor::lengthOf(length) : length);
    chunk_ += ">>stream\n";
}

/// To be called in front of data that is enciphered in the chunk.
void ObjectOutput::makeRoom() {
    if (encryptor_) chunk_.append(aesBlock, '\0');
}

/// To be called behind data that begins at `begin` of the chunk.
void ObjectOutput::sealData(std::size_t begin) {
    if (!encryptor_) return;
    const std::size_t length = chunk_.size() - begin;
    chunkSealed_.push_back({begin - aesBlock, length});
    chunk_.resize(begin - aesBlock + static_cast<std::size_t>(Encryptor::lengthOf(length)));
}

std::uint32_t ObjectOutput::addFileStream(std::uint32_t number, std::string_view entries, BlockCache& file,
                                          StreamExtent extent) {
    const FileRange range{extent.offset, extent.length};
    if (extent.length >= StreamIndex::longStream)
        return copyLarge(number, entries, file.sharedFile(), std::span(&range, 1));
    const std::size_t before = chunk_.size();
    const std::uint32_t own = number != 0 ? number : places_.next();
    beginStream(own, entries, extent.length);
    makeRoom();
    const std::size_t begin = chunk_.size();
    const std::size_t got = file.append(extent.offset, static_cast<std::size_t>(extent.length), chunk_);
    if (got < extent.length) noteShortened(file.file().path());
    chunk_.resize(begin + static_cast<std::size_t>(extent.length));
    return endStream({own, number == 0, before, begin}, entries, file.file(), std::span(&range, 1));
}

/// The data was read to where it will stand; it is taken back if an equal stream is there already.
std::uint32_t ObjectOutput::endStream(const OpenStream& stream, std::string_view entries, InputFile& file,
                                      std::span<const FileRange> ranges) {
    const std::string_view data = std::string_view(chunk_).substr(stream.data);
    const StreamContent content{.dictionary = entries, .data = data, .file = &file, .ranges = ranges};
    if (const auto known = enter(content, stream.number, stream.shareable)) {
        chunk_.resize(stream.begin);
        chunkObjects_.pop_back();
        return *known;
    }
    sealData(stream.data);
    chunk_ += streamEnd;
    if (chunk_.size() >= chunkBytes) flushChunk();
    return stream.number;
}

std::optional<std::uint32_t> ObjectOutput::enter(const StreamContent& stream, std::uint32_t number, bool shareable) {
    if (!shareable) {
        streams_.add(stream, number);
        return std::nullopt;
    }
    const auto known = streams_.findOrAdd(stream, number);
    if (!known) static_cast<void>(reserve());
    return known;
}

void ObjectOutput::noteShortened(const std::string& path) {
    if (std::ranges::find(shortened_, path) == shortened_.end()) shortened_.push_back(path);
}

std::uint32_t ObjectOutput::copyLarge(std::uint32_t number, std::string_view entries,
                                      const std::shared_ptr<InputFile>& file, std::span<const FileRange> ranges) {
    const StreamContent stream{.dictionary = entries, .file = file.get(), .ranges = ranges};
    const std::uint32_t own = number != 0 ? number : places_.next();
    if (const auto known = enter(stream, own, number == 0)) return *known;
    hold(file);
    beginStream(own, entries, stream.length());
    flushChunk();
    pipeline_.copy(file, {ranges.begin(), ranges.end()});
    // Not left in the chunk, since an object stream may be written before that.
    pipeline_.write(std::string(streamEnd), {});
    return own;
}

std::uint32_t ObjectOutput::addObject(std::string_view value) {
    const std::uint32_t number = reserve();
    addObject(number, value);
    return number;
}

void ObjectOutput::addObject(std::uint32_t number, std::string_view value) {
    const std::size_t begin = body_.size();
    body_ += value;
    close(number, begin);
}

std::uint32_t ObjectOutput::addFileStream(std::uint32_t number, std::string_view entries, BlockCache& file,
                                          StreamExtent extent, StreamKey key) {
    if (key.cipher == Cipher::Identity) return addFileStream(number, entries, file, extent);
    if (extent.length <= mostInMemory) {
        std::string data;
        if (file.append(extent.offset, static_cast<std::size_t>(extent.length), data) < extent.length) {
            noteShortened(file.file().path());
            data.resize(static_cast<std::size_t>(extent.length));
        }
        decryptStream(key, data);
        return addData(number, entries, data);
    }
    auto reader = std::make_unique<DecryptingReader>(file.sharedFile(), extent.offset, extent.length, std::move(key));
    const std::uint32_t own = number != 0 ? number : places_.next();
    if (const auto known = enter({.dictionary = entries, .reader = reader.get()}, own, number == 0)) return *known;
    beginStream(own, entries, reader->length());
    flushChunk();
    pipeline_.copy(std::move(reader));
    pipeline_.write(std::string(streamEnd), {});
    return own;
}

std::uint32_t ObjectOutput::addStream(std::string_view entries, std::span<const char> data) {
    return addData(0, entries, {data.data(), data.size()});
}

/// An equal stream is used instead unless `number` is given (not 0).
std::uint32_t ObjectOutput::addData(std::uint32_t number, std::string_view entries, std::string_view data) {
    const std::uint32_t own = number != 0 ? number : places_.next();
    if (const auto known = enter({.dictionary = entries, .data = data}, own, number == 0)) return *known;
    beginStream(own, entries, data.size());
    makeRoom();
    const std::size_t begin = chunk_.size();
    chunk_ += data;
    sealData(begin);
    chunk_ += streamEnd;
    if (chunk_.size() >= chunkBytes) flushChunk();
    return own;
}

std::uint32_t ObjectOutput::addStream(std::string_view entries, const std::shared_ptr<InputFile>& file,
                                      std::span<const FileRange> ranges) {
    std::uint64_t length = 0;
    for (const FileRange& range : ranges) length += range.length;
    if (length >= StreamIndex::longStream) return copyLarge(0, entries, file, ranges);
    hold(file);
    const std::size_t before = chunk_.size();
    const std::uint32_t own = places_.next();
    beginStream(own, entries, length);
    makeRoom();
    const std::size_t begin = chunk_.size();
    for (const FileRange& range : ranges) {
        const std::size_t at = chunk_.size();
        chunk_.resize(at + static_cast<std::size_t>(range.length));
        if (file->readAt(range.offset, std::span(chunk_).subspan(at)) < range.length) noteShortened(file->path());
    }
    return endStream({own, true, before, begin}, entries, *file, ranges);
}

void ObjectOutput::hold(const std::shared_ptr<InputFile>& file) {
    if (held_.empty() || held_.back() != file) held_.push_back(file);
}

bool ObjectOutput::finishObjects() {
    flushBody();
    flushChunk();
    if (!pipeline_.finish()) return false;
    for (const std::string& path : pipeline_.shortened()) noteShortened(path);
    for (const auto& placed : pipeline_.places()) places_.setInFile(placed.number, placed.offset);
    streams_.clear();  // makes room for the cross-reference data
    return true;
}

bool ObjectOutput::finish(std::string_view trailer, std::string_view firstId) {
    const std::string encryption = encryptionEntry();
    const std::uint32_t own = reserve();
    const std::uint64_t offset = file_.size();
    places_.setInFile(own, offset);
    const unsigned width = bytesFor(std::max<std::uint64_t>(offset, own));
    const std::string rows = places_.deflatedRows(width);
    std::string text = std::to_string(own) + " 0 obj\n<</Type/XRef/Size " + std::to_string(places_.next()) + "/W[1 " +
                       std::to_string(width) + " 2]" + std::string(trailer) + encryption +
                       idText(firstId, pipeline_.digest()) + "/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns " +
                       std::to_string(ObjectPlaces::rowBytes(width)) + ">>/Length " + std::to_string(rows.size()) +
                       ">>stream\n" + rows;
    text += streamEnd;
    text += "startxref\n" + std::to_string(offset) + "\n%%EOF\n";
    return file_.write(text);
}

/// Writes the encryption dictionary, if there is one, as an object of its own, since it may not be in an object stream.
/// Returns the entry of the trailer.
std::string ObjectOutput::encryptionEntry() {
    if (!encryptor_) return {};
    const std::uint32_t own = reserve();
    const std::string number = std::to_string(own);
    places_.setInFile(own, file_.size());
    file_.write(number + " 0 obj\n" + encryptor_->dictionary() + "\nendobj\n");
    return "/Encrypt " + number + " 0 R";
}

}  // namespace quillon::pdf

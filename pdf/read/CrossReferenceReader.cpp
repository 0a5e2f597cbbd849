#include "pdf/read/CrossReferenceReader.h"

#include "pdf/filter/Filters.h"
#include "pdf/object/Characters.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/Parser.h"
#include "pdf/read/Limits.h"
#include "pdf/read/StreamText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace quillon::pdf {

namespace {

static_assert(std::endian::native == std::endian::little);

// Bytes of a field of a cross-reference stream.
constexpr std::size_t widestField = 8;

std::uint64_t eightBytes(const char* at) noexcept {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, at, sizeof bytes);
    return bytes;
}

/// Takes a big-endian number of `width` bytes from the front of `row`, of which `widestField` are read.
std::uint64_t takeField(const char*& row, std::size_t width) noexcept {
    if (width == 0) return 0;
    const std::uint64_t bytes = __builtin_bswap64(eightBytes(row));
    row += width;
    return bytes >> (64 - 8 * width);
}

/// The number that eight digits are; nothing for any other characters.
std::optional<std::uint64_t> eightDigits(const char* at) noexcept {
    constexpr std::uint64_t zeros = 0x3030303030303030;
    constexpr std::uint64_t highHalves = 0xf0f0f0f0f0f0f0f0;
    constexpr std::uint64_t toSixteen = 0x0606060606060606;
    std::uint64_t digits = eightBytes(at);
    if ((digits & highHalves) != zeros || ((digits + toSixteen) & highHalves) != zeros) return std::nullopt;
    // Neighbours are put together: digits to numbers of two, these to numbers of four, and those to one of eight.
    digits -= zeros;
    digits = (10 * digits + (digits >> 8U)) & 0x00ff00ff00ff00ff;
    digits = (100 * digits + (digits >> 16U)) & 0x0000ffff0000ffff;
    return (10'000 * digits + (digits >> 32U)) & 0xffffffff;
}

// Nearly all entries are so many digits and this.
constexpr std::size_t placeDigits = 10;
constexpr std::string_view inUse = " 00000 n";
constexpr std::size_t usualEntry = placeDigits + inUse.size();

/// The place in such an entry; nothing for any other.
std::optional<std::uint64_t> usualPlace(std::string_view text, std::size_t at) noexcept {
    if (at + usualEntry > text.size() || text.substr(at + placeDigits, inUse.size()) != inUse) return std::nullopt;
    const auto low = eightDigits(text.data() + at + 2);
    if (!low || !isDigit(text[at]) || !isDigit(text[at + 1])) return std::nullopt;
    const auto high = static_cast<std::uint64_t>(10 * (text[at] - '0') + (text[at + 1] - '0'));
    return 100'000'000 * high + *low;
}

std::optional<std::uint64_t> offsetIn(const Dictionary& dictionary, std::string_view key) {
    const auto value = dictionary[key].integer();
    if (!value || *value < 0) return std::nullopt;
    return static_cast<std::uint64_t>(*value);
}

}  // namespace

std::optional<CrossReferenceTable> CrossReferenceReader::read() {
    table_.entries = ObjectMap<CrossReferenceEntry>(file_.file().size());
    const auto start = findStart();
    if (!start) return std::nullopt;
    Dictionary section;
    if (!readSection(*start, section)) {
        if (headerOffset_ == 0) return std::nullopt;
        bias_ = headerOffset_;
        visited_.clear();
        freed_.clear();
        if (!readSection(*start, section)) return std::nullopt;
    }
    table_.trailer = section;
    while (true) {
        // A hybrid file hides the newer objects of a section in a stream that older readers do not know. Its table
        // calls them free, so what is free counts only after that stream.
        if (const auto hybrid = offsetIn(section, "XRefStm")) {
            Dictionary ignored;
            if (!readSection(*hybrid, ignored)) return std::nullopt;
        }
        for (const auto& [number, entry] : freed_) table_.addOlder(number, entry);
        freed_.clear();
        const auto previous = offsetIn(section, "Prev");
        if (!previous || *previous == 0 || visited_.contains(*previous + bias_)) break;
        Dictionary older;
        if (!readSection(*previous, older)) return std::nullopt;
        complete(older);
        section = std::move(older);
    }
    return std::move(table_);
}

std::optional<std::uint64_t> CrossReferenceReader::findStart() {
    constexpr std::uint64_t tail = 2048;
    const std::uint64_t size = file_.file().size();
    std::string end;
    file_.append(size - std::min(size, tail), tail, end);
    const std::size_t keyword = end.rfind("startxref");
    if (keyword == std::string::npos) return std::nullopt;
    std::size_t at = keyword + std::string_view("startxref").size();
    skipWhiteSpace(end, at);
    return readUnsigned(end, at);
}

bool CrossReferenceReader::readSection(std::uint64_t offset, Dictionary& trailer) {
    offset += bias_;
    if (!visited_.insert(offset).second) return false;
    const OwnedText view = file_.view(offset, 64);
    const std::string_view start = view.text;
    std::size_t at = 0;
    skipWhiteSpace(start, at);
    if (start.substr(std::min(at, start.size())).starts_with("xref")) return readTable(offset + at + 4, trailer);
    return readStream(offset, trailer);
}

bool CrossReferenceReader::readTable(std::uint64_t offset, Dictionary& trailer) {
    while (true) {
        const OwnedText view = file_.view(offset, 1024);
        const std::string_view text = view.text;
        std::size_t at = 0;
        skipWhiteSpace(text, at);
        if (text.substr(std::min(at, text.size())).starts_with("trailer")) {
            offset += at + std::string_view("trailer").size();
            break;
        }
        const auto first = readUnsigned(text, at);
        skipWhiteSpace(text, at);
        const auto count = readUnsigned(text, at);
        if (!first || !count) return false;
        skipWhiteSpace(text, at);
        offset += at;
        if (!readSubsection(offset, *first, *count)) return false;
    }
    const OwnedText view = file_.view(offset, limits::trailer);
    Parser parser(view.text);
    const Object parsed = parser.parse();
    if (!parsed.dictionary()) return false;
    trailer = *parsed.dictionary();
    return true;
}

/// Entries are read by their fields, not by the twenty bytes that each should have: many files end them otherwise.
bool CrossReferenceReader::readSubsection(std::uint64_t& offset, std::uint64_t first, std::uint64_t count) {
    if (first > maximumObjectNumber || count > maximumObjectNumber) return false;
    if (count > (file_.file().size() - std::min(offset, file_.file().size())) / 8) return false;
    table_.entries.expect(first + count);
    for (std::uint64_t done = 0; done < count;) {
        constexpr std::size_t longestEntry = 64;
        const OwnedText view = file_.view(offset, 4096);
        const std::string_view text = view.text;
        const bool last = offset + text.size() >= file_.file().size();
        std::size_t at = 0;
        for (; done < count && (last || at + longestEntry <= text.size()); ++done) {
            skipWhiteSpace(text, at);
            const auto number = static_cast<std::uint32_t>(first + done);
            using enum CrossReferenceEntry::Kind;
            if (const auto place = usualPlace(text, at)) {
                table_.addOlder(number, {*place != 0 ? InFile : Free, *place + bias_, 0});
                at += usualEntry;
                continue;
            }
            const std::size_t begin = at;
            const auto place = readUnsigned(text, at);
            skipWhiteSpace(text, at);
            const auto generation = readUnsigned(text, at);
            skipWhiteSpace(text, at);
            const char kind = at < text.size() ? text[at] : '\0';
            if (!place || !generation || (kind != 'n' && kind != 'f')) {
                // Fewer entries than announced is a common slip; the trailer follows.
                offset += begin;
                return text.substr(std::min(begin, text.size())).starts_with("trailer");
            }
            ++at;
            const CrossReferenceEntry entry(kind == 'n' && *place != 0 ? InFile : Free, *place + bias_, *generation);
            if (kind == 'f') {
                freed_.emplace_back(number, entry);
            } else {
                table_.addOlder(number, entry);
            }
        }
        offset += at;
    }
    return true;
}

bool CrossReferenceReader::readStream(std::uint64_t offset, Dictionary& trailer) {
    const auto stream = readStreamAt(file_, offset);
    if (!stream || !stream->dictionary["Type"].isName("XRef")) return false;
    constexpr std::uint64_t widestRow = 24;
    const std::uint64_t most = (file_.file().size() + limits::tableMargin) * widestRow;
    const auto data =
        decodeStream(stream->dictionary, stream->data, std::min<std::uint64_t>(most, limits::decodedStream));
    if (!data) return false;
    trailer = stream->dictionary;
    return addStreamEntries(stream->dictionary, *data);
}

bool CrossReferenceReader::addStreamEntries(const Dictionary& dictionary, std::string_view data) {
    const Array* widths = dictionary["W"].array();
    if (!widths || widths->size() < 3) return false;
    std::array<std::size_t, 3> width{};
    for (std::size_t i = 0; i < width.size(); ++i) {
        const auto value = (*widths)[i].integer();
        if (!value || *value < 0 || static_cast<std::size_t>(*value) > widestField) return false;
        width[i] = static_cast<std::size_t>(*value);
    }
    const std::size_t row = width[0] + width[1] + width[2];
    if (row == 0) return false;
    const Array whole{Object(std::int64_t{0}), dictionary["Size"]};
    const Array& index = dictionary["Index"].array() ? *dictionary["Index"].array() : whole;
    for (std::size_t i = 0; i + 1 < index.size(); i += 2) {
        const auto first = index[i].integer();
        const auto count = index[i + 1].integer();
        if (!first || !count || *first < 0 || *count < 0) return false;
        const auto rows = std::min<std::uint64_t>(static_cast<std::uint64_t>(*count), data.size() / row);
        const auto begin = static_cast<std::uint64_t>(*first);
        rows_ += rows;
        if (rows_ > file_.file().size() + limits::tableMargin) return false;
        if (rows != 0 && begin + rows > maximumObjectNumber + 1) return false;
        table_.entries.expect(begin + rows);
        std::array<char, 4 * widestField> last{};  // room for the last rows, behind which nothing may be read
        for (std::uint64_t n = 0; n < rows; ++n, data.remove_prefix(row)) {
            const auto number = static_cast<std::uint32_t>(begin + n);
            const bool isLast = data.size() < row + widestField;
            if (isLast) std::ranges::copy(data.substr(0, row), last.begin());
            table_.addOlder(number, streamEntry(isLast ? last.data() : data.data(), width));
        }
    }
    return true;
}

CrossReferenceEntry CrossReferenceReader::streamEntry(const char* row, const std::array<std::size_t, 3>& width) const {
    const std::uint64_t type = width[0] == 0 ? 1 : takeField(row, width[0]);
    const std::uint64_t place = takeField(row, width[1]);
    const std::uint64_t detail = takeField(row, width[2]);
    using enum CrossReferenceEntry::Kind;
    if (type == 1) return {InFile, place + bias_, detail};
    return {type == 2 ? InObjectStream : Free, place, detail};
}

void CrossReferenceReader::complete(const Dictionary& older) {
    for (const auto& [key, value] : older.entries()) {
        if (!table_.trailer.contains(key)) table_.trailer.append(key, value);
    }
}

}  // namespace quillon::pdf

#include "pdf/read/SourceDocument.h"

#include "pdf/object/Characters.h"
#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

/// `1.7` as 17; 0 when the text is no version. Of those that there are not, the nearest below.
Version readVersionText(std::string_view text) {
    if (text.size() < 3 || !isDigit(text[0]) || text[1] != '.' || !isDigit(text[2])) return 0;
    constexpr Version lastOfOne = 17;
    constexpr Version lastOfTwo = 20;
    const Version version = (text[0] - '0') * 10 + (text[2] - '0');
    return version < lastOfTwo ? std::min(version, lastOfOne) : version < lastOfTwo + 10 ? lastOfTwo : 0;
}

std::optional<Rectangle> readRectangle(ObjectReader& reader, const Object& object) {
    const Array* array = object.array();
    if (!array || array->size() < 4) return std::nullopt;
    std::array<double, 4> value{};
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto number = reader.resolve((*array)[i]).number();
        if (!number) return std::nullopt;
        value[i] = *number;
    }
    const Rectangle box{std::min(value[0], value[2]), std::min(value[1], value[3]), std::max(value[0], value[2]),
                        std::max(value[1], value[3])};
    if (!(box.width() > 0) || !(box.height() > 0)) return std::nullopt;
    return box;
}

/// A copy of `object` without references, down to `depth` levels.
Object resolved(ObjectReader& reader, const Object& object, int depth) {
    Object value = reader.resolve(object);
    if (depth == 0) return value;
    if (const Array* array = value.array()) {
        Array copy;
        for (const Object& element : *array) copy.push_back(resolved(reader, element, depth - 1));
        return copy;
    }
    if (const Dictionary* dictionary = value.dictionary()) {
        Dictionary copy;
        for (const auto& [key, entry] : dictionary->entries()) copy.append(key, resolved(reader, entry, depth - 1));
        return copy;
    }
    return value;
}

/// The value of `Kids` in a node of the page tree; empty for a page.
std::string_view kidsOfNode(std::string_view dictionary) {
    std::string_view kids;
    DictionaryScanner scanner(dictionary);
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        if (keyIs(entry.key, "Type") && entry.value == "/Page") return {};
        if (keyIs(entry.key, "Kids")) kids = entry.value;
    }
    return kids;
}

}  // namespace

std::unique_ptr<SourceDocument> SourceDocument::load(const std::shared_ptr<InputFile>& file, Warnings& warnings,
                                                     bool believeCounts, Keyring& keys) {
    std::unique_ptr<SourceDocument> document(new SourceDocument(file, warnings, believeCounts));
    if (document->readStructure(keys)) return document;
    const bool again =
        document->reader_.recover("the catalog or the page tree cannot be read; the file was scanned for objects");
    if (again && document->readStructure(keys)) return document;
    return document->collectPages() ? std::move(document) : nullptr;
}

/// False when the road from the trailer to the page tree is broken.
bool SourceDocument::readStructure(Keyring& keys) {
    if (!isEncrypted()) readProtection(keys);
    const std::size_t warningsBefore = reader_.warnings().lines().size();
    bool found = readTree();
    // The search for objects may have come upon a trailer that speaks of protection.
    if (!isEncrypted() && !reader_.resolve(reader_.trailer()["Encrypt"]).isNull()) return readStructure(keys);
    if (!isLocked()) return found;
    // Of a tree that lies partly in enciphered object streams, not even the count is right; that is no damage.
    found = found && reader_.warnings().lines().size() == warningsBefore;
    reader_.warnings().keepFirst(warningsBefore);
    if (found) return true;
    catalog_.reset();
    readVersion(nullptr);
    pages_ = std::make_unique<PageTree>(std::vector<Reference>{});
    return true;
}

/// To be done before anything else is read, since what this reads itself is never enciphered.
void SourceDocument::readProtection(Keyring& keys) {
    const Object encrypt = reader_.resolve(reader_.trailer()["Encrypt"]);
    if (encrypt.isNull()) return;
    if (!keys.isKnown()) {
        constexpr int deepest = 3;  // the entries of a crypt filter
        const Object id = resolved(reader_, reader_.trailer()["ID"], 1);
        const bool hasId = id.array() && !id.array()->empty() && id.array()->front().string();
        const Object whole = resolved(reader_, encrypt, deepest);
        keys.learn(EncryptionDictionary::read(whole.dictionary() ? *whole.dictionary() : Dictionary(),
                                              hasId ? *id.array()->front().string() : std::string()));
    }
    reader_.setDecryptor(keys.decryptor());
}

bool SourceDocument::readTree() {
    const Object root = reader_.trailer()["Root"];
    const Object catalog = reader_.resolve(root);
    if (!root.reference() || !catalog.dictionary()) return false;
    const Object& pages = (*catalog.dictionary())["Pages"];
    const Object top = reader_.resolve(pages);
    if (!top.dictionary() || !reader_.resolve((*top.dictionary())["Kids"]).array()) return false;
    auto tree = std::make_unique<PageTree>(reader_, pages, believeCounts_);
    const bool claimsPages = reader_.resolve((*top.dictionary())["Count"]).integer().value_or(0) > 0;
    if (tree->pages().empty() && claimsPages) return false;
    pages_ = std::move(tree);
    catalog_ = *root.reference();
    catalogKeys_ = CatalogKeys(*catalog.dictionary());
    readVersion(catalog.dictionary());
    return true;
}

/// The last resort: every object that says it is a page, in the order of object numbers.
bool SourceDocument::collectPages() {
    std::vector<Reference> found;
    reader_.table().entries.forEach([&](std::uint32_t number, const CrossReferenceEntry& entry) {
        // Number 0 heads the list of free objects and can be none.
        if (number == 0 || entry.kind == CrossReferenceEntry::Kind::Unknown) return;
        if (entry.kind == CrossReferenceEntry::Kind::Free) return;
        const std::uint32_t generation = entry.kind == CrossReferenceEntry::Kind::InFile ? entry.detail : 0;
        const auto object = reader_.find({number, generation});
        if (object && findValue(object->text(), "Type") == "/Page") found.push_back({number, generation});
    });
    if (found.empty()) return false;
    std::ranges::sort(found);
    reader_.warnings().add(
        "the page tree cannot be read; the pages were collected in the order of their object numbers");
    pages_ = std::make_unique<PageTree>(found);
    readVersion(nullptr);
    return true;
}

void SourceDocument::readVersion(const Dictionary* catalog) {
    if (const auto offset = reader_.headerOffset()) {
        constexpr std::string_view mark = "%PDF-";
        version_ = std::max(version_, readVersionText(reader_.file().view(*offset + mark.size(), 3).text));
    }
    if (!catalog) return;
    if (const Object own = reader_.resolve((*catalog)["Version"]); own.name()) {
        version_ = std::max(version_, readVersionText(own.name()->value));
    }
}

void SourceDocument::trim() {
    reader_.trim();
    pageOfText_ = nullptr;
    std::string().swap(pageText_);  // an assignment would keep the memory
}

std::size_t SourceDocument::memory() const noexcept {
    constexpr std::size_t fixed = 2048;  // this object and the trailer
    return fixed + reader_.memory() + pages_->memory();
}

const std::string& SourceDocument::pageText(const PageTree::Page& page) {
    // What is found while the file is being repaired is read once more.
    const bool isRecovered = reader_.table().recovered;
    if (pageOfText_ != &page || wasRecovered_ != isRecovered) {
        pageText_ = readPageText(page);
        pageOfText_ = &page;
        wasRecovered_ = isRecovered;
    }
    return pageText_;
}

std::string SourceDocument::readPageText(const PageTree::Page& page) {
    constexpr int mostLevels = 32;
    if (page.number == 0) return pages_->directPage(page);
    Reference reference{page.number, page.generation};
    for (int level = 0; level < mostLevels; ++level) {
        const auto object = reader_.findWhole(reference);
        if (!object) return {};
        std::string text(object->value());
        std::string_view kids = kidsOfNode(text);
        if (object->valueEnd == 0) {
            const Object parsed = Parser(object->text()).parse();
            text.clear();
            parsed.write(text);
            kids = kidsOfNode(text);
        }
        if (skipBlank(text, 0) >= text.size() || text[skipBlank(text, 0)] != '<') return {};
        if (kids.empty()) return text;
        misled_ = believeCounts_;
        const Object list = reader_.resolve(kids);
        if (!list.array() || list.array()->empty() || !list.array()->front().reference()) return {};
        reference = *list.array()->front().reference();
    }
    return {};
}

Object SourceDocument::attribute(const PageTree::Page& page, InheritedAttribute attribute) {
    const std::string_view own =
        findValue(pageText(page), inheritedAttributeNames[static_cast<std::size_t>(attribute)]);
    const Object value = reader_.resolve(own);
    return value.isNull() ? reader_.resolve(pages_->inherited(page, attribute)) : value;
}

std::optional<Rectangle> SourceDocument::box(const PageTree::Page& page, InheritedAttribute attribute) {
    return readRectangle(reader_, this->attribute(page, attribute));
}

int SourceDocument::rotation(const PageTree::Page& page) {
    const std::int64_t degrees = attribute(page, InheritedAttribute::Rotate).integer().value_or(0);
    if (degrees % 90 != 0) return 0;
    return static_cast<int>((degrees % 360 + 360) % 360);
}

}  // namespace quillon::pdf

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon::test {

/// Writes a PDF file piece by piece, with right offsets however odd the pieces are: what a test breaks it breaks on
/// purpose.
///
///     RawPdf().object(1, "<</Type/Catalog/Pages 2 0 R>>").table("/Root 1 0 R").bytes()
class RawPdf {
public:
    explicit RawPdf(std::string header = "%PDF-1.5\n%\xe2\xe3\xcf\xd3\n") : text_(std::move(header)) {}

    /// Any bytes.
    RawPdf& raw(std::string_view bytes);
    /// `number generation obj … endobj`, known to the next cross-reference section.
    RawPdf& object(int number, std::string_view value, int generation = 0);
    /// A stream with the right `Length`; `entries` are the others of its dictionary.
    RawPdf& stream(int number, std::string_view entries, std::string_view data);
    /// An object stream, not compressed, that holds `objects`.
    RawPdf& packed(int number, const std::vector<std::pair<int, std::string>>& objects, std::string_view entries = {});
    /// The catalog as object 1 and a flat page tree as object 2.
    RawPdf& catalogOf(const std::vector<int>& pages);
    /// A page that shows `mark`, with its content as object `number` + 1. `entries` are more of its dictionary.
    RawPdf& page(int number, std::string_view mark, std::string_view entries = "/Parent 2 0 R/MediaBox[0 0 612 792]");

    /// What the next section says of an object, be it true or not.
    RawPdf& entry(int number, std::uint64_t offset, int generation = 0);
    RawPdf& freed(int number, int generation = 1);
    /// Offsets of the sections to come are counted from this place.
    RawPdf& countOffsetsFrom(std::size_t place);

    // A cross-reference section for what was added since the last one, with `Prev` leading to that, and the end of
    // file. `trailer` are the entries besides Size and Prev.
    RawPdf& table(std::string_view trailer = "/Root 1 0 R", std::string_view lineEnd = " \n");
    RawPdf& crossStream(int number, std::string_view trailer = "/Root 1 0 R");
    /// A table, and a cross-reference stream `number` for the packed objects, which the table calls free.
    RawPdf& hybrid(int number, std::string_view trailer = "/Root 1 0 R");

    [[nodiscard]] std::size_t size() const noexcept { return text_.size(); }
    /// Where the last section begins.
    [[nodiscard]] std::size_t lastSection() const noexcept { return section_; }
    [[nodiscard]] const std::string& bytes() const noexcept { return text_; }

    [[nodiscard]] static std::string bigEndian(std::uint64_t value, int bytes);
    /// Content that shows `mark` with the resources of `font`.
    [[nodiscard]] static std::string content(std::string_view mark);
    [[nodiscard]] static std::string font();

private:
    struct Entry {
        int type;  // as in a cross-reference stream
        std::uint64_t place;
        int detail;
    };
    using Entries = std::map<int, Entry>;

    void writeTable(const Entries& entries, std::string_view trailer, std::string_view lineEnd);
    void writeStream(int number, const Entries& entries, std::string_view trailer);
    std::string sizeAndPrev(const Entries& entries) const;
    void end();

    std::string text_;
    Entries entries_;
    int highest_ = 0;
    std::size_t base_ = 0;
    std::size_t section_ = 0;
    bool hasSection_ = false;
};

}  // namespace quillon::test

#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quillon::test {

/// Builds small PDF files: pages that each show one word, their mark, by which they are recognised after a merge.
///
///     PdfFixture("A", 3).link(0, 2).info("Title", "Three pages").bytes()
class PdfFixture {
public:
    PdfFixture() = default;
    /// `count` pages with the marks `prefix`1, `prefix`2 and so on.
    PdfFixture(const std::string& prefix, int count);

    /// Adds a page, 612 × 792 points large. Marks are ASCII without brackets and backslashes.
    PdfFixture& page(const std::string& mark);
    /// Gives a page, counted from 0, a media box of this size in points.
    PdfFixture& size(int page, double width, double height);
    /// Gives a page a link annotation that leads to another one.
    PdfFixture& link(int fromPage, int toPage);
    /// Adds a top-level outline node that leads to the top of a page.
    PdfFixture& bookmark(const std::string& label, int page);
    /// Adds an entry of the document information, such as Title.
    PdfFixture& info(const std::string& key, const std::string& text);

    /// The file: classic cross-reference table, nothing compressed.
    [[nodiscard]] std::string bytes() const;

private:
    struct Page {
        std::string mark;
        double width = 612;
        double height = 792;
        std::vector<int> links;
    };
    struct Bookmark {
        std::string label;
        int page;
    };

    [[nodiscard]] static int pageNumber(int page);
    [[nodiscard]] int firstBookmark() const;
    void addPages(std::vector<std::string>& objects) const;
    void addOutline(std::vector<std::string>& objects) const;
    [[nodiscard]] std::string pageObject(const Page& page, int contentNumber) const;
    [[nodiscard]] std::string infoObject() const;

    std::vector<Page> pages_;
    std::vector<Bookmark> bookmarks_;
    std::vector<std::pair<std::string, std::string>> info_;
};

}  // namespace quillon::test

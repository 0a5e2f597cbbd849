#include "tests/support/PdfFixture.h"

#include <cstdio>
#include <sstream>

namespace quillon::test {
namespace {

// The fixed object numbers; pages with their contents follow, then outline nodes.
constexpr int catalogNumber = 1;
constexpr int pagesNumber = 2;
constexpr int fontNumber = 3;
constexpr int infoNumber = 4;
constexpr int outlinesNumber = 5;
constexpr int firstPageNumber = 6;

std::string reference(int number) {
    return std::to_string(number) + " 0 R";
}

/// Puts the objects, numbered from 1, into a file.
std::string assemble(const std::vector<std::string>& objects, const std::string& trailer) {
    std::string file = "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        char line[24];
        std::snprintf(line, sizeof line, "%010zu 00000 n \n", file.size());
        table += line;
        file += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string size = std::to_string(objects.size() + 1);
    const std::string start = std::to_string(file.size());
    file += "xref\n0 " + size + "\n" + table;
    file += "trailer\n<</Size " + size + trailer + ">>\nstartxref\n" + start + "\n%%EOF\n";
    return file;
}

}  // namespace

PdfFixture::PdfFixture(const std::string& prefix, int count) {
    for (int i = 1; i <= count; ++i) page(prefix + std::to_string(i));
}

PdfFixture& PdfFixture::page(const std::string& mark) {
    pages_.push_back({.mark = mark, .links = {}});
    return *this;
}

PdfFixture& PdfFixture::size(int page, double width, double height) {
    auto& one = pages_.at(static_cast<std::size_t>(page));
    one.width = width;
    one.height = height;
    return *this;
}

PdfFixture& PdfFixture::link(int fromPage, int toPage) {
    pages_.at(static_cast<std::size_t>(fromPage)).links.push_back(toPage);
    return *this;
}

PdfFixture& PdfFixture::bookmark(const std::string& label, int page) {
    bookmarks_.push_back({label, page});
    return *this;
}

PdfFixture& PdfFixture::info(const std::string& key, const std::string& text) {
    info_.emplace_back(key, text);
    return *this;
}

std::string PdfFixture::bytes() const {
    std::string kids;
    for (std::size_t i = 0; i < pages_.size(); ++i) kids += reference(pageNumber(static_cast<int>(i))) + " ";
    std::string catalog = "<</Type/Catalog/Pages " + reference(pagesNumber);
    if (!bookmarks_.empty()) catalog += "/Outlines " + reference(outlinesNumber);

    std::vector<std::string> objects;
    objects.push_back(catalog + ">>");
    objects.push_back("<</Type/Pages/Count " + std::to_string(pages_.size()) + "/Kids[" + kids + "]>>");
    objects.emplace_back("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    objects.push_back(infoObject());
    objects.emplace_back();
    addPages(objects);
    addOutline(objects);
    std::string trailer = "/Root " + reference(catalogNumber);
    if (!info_.empty()) trailer += "/Info " + reference(infoNumber);
    return assemble(objects, trailer);
}

int PdfFixture::pageNumber(int page) {
    return firstPageNumber + 2 * page;
}

int PdfFixture::firstBookmark() const {
    return pageNumber(static_cast<int>(pages_.size()));
}

void PdfFixture::addPages(std::vector<std::string>& objects) const {
    for (const auto& page : pages_) {
        const int contentNumber = static_cast<int>(objects.size()) + 2;
        objects.push_back(pageObject(page, contentNumber));
        const std::string content = "BT /F1 24 Tf 20 20 Td (" + page.mark + ") Tj ET";
        objects.push_back("<</Length " + std::to_string(content.size()) + ">>\nstream\n" + content + "\nendstream");
    }
}

std::string PdfFixture::pageObject(const Page& page, int contentNumber) const {
    std::ostringstream text;
    text << "<</Type/Page/Parent " << reference(pagesNumber) << "/MediaBox[0 0 " << page.width << ' ' << page.height
         << "]/Resources<</Font<</F1 " << reference(fontNumber) << ">>>>/Contents " << reference(contentNumber);
    if (!page.links.empty()) {
        text << "/Annots[";
        for (const int to : page.links) {
            text << "<</Type/Annot/Subtype/Link/Border[0 0 0]/Rect[20 20 80 44]/Dest[" << reference(pageNumber(to))
                 << "/Fit]>>";
        }
        text << ']';
    }
    text << ">>";
    return text.str();
}

/// The root takes the place that was kept for it, null when there are no bookmarks.
void PdfFixture::addOutline(std::vector<std::string>& objects) const {
    auto& root = objects.at(static_cast<std::size_t>(outlinesNumber - 1));
    const int count = static_cast<int>(bookmarks_.size());
    const int first = firstBookmark();
    root = "null";
    if (count == 0) return;
    root = "<</Type/Outlines/First " + reference(first) + "/Last " + reference(first + count - 1) + "/Count " +
           std::to_string(count) + ">>";
    for (int i = 0; i < count; ++i) {
        const auto& bookmark = bookmarks_[static_cast<std::size_t>(i)];
        std::string node = "<</Title(" + bookmark.label + ")/Parent " + reference(outlinesNumber) + "/Dest[" +
                           reference(pageNumber(bookmark.page)) + "/XYZ 0 792 null]";
        if (i > 0) node += "/Prev " + reference(first + i - 1);
        if (i + 1 < count) node += "/Next " + reference(first + i + 1);
        objects.push_back(node + ">>");
    }
}

std::string PdfFixture::infoObject() const {
    std::string text = "<<";
    for (const auto& [key, value] : info_) text += "/" + key + "(" + value + ")";
    return text + ">>";
}

}  // namespace quillon::test

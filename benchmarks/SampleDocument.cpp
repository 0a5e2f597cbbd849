#include "benchmarks/SampleDocument.h"

#include <array>
#include <cstdio>

namespace quillon {
namespace {

// Objects 1 to 3 are the catalog, the page tree and the font; then come a page and its content in turn.
constexpr std::size_t firstPage = 4;

std::string number(std::size_t value) {
    return std::to_string(value);
}

std::string tree(std::size_t pages) {
    std::string kids;
    for (std::size_t i = 0; i < pages; ++i) kids += number(firstPage + 2 * i) + " 0 R ";
    return "<</Type/Pages/Count " + number(pages) + "/MediaBox[0 0 420 595]/Resources<</Font<</F 3 0 R>>>>/Kids[" +
           kids + "]>>";
}

std::string tableLine(std::size_t offset) {
    std::array<char, 24> line{};
    std::snprintf(line.data(), line.size(), "%010zu 00000 n \n", offset);
    return line.data();
}

}  // namespace

SampleDocument& SampleDocument::sheet(const std::string& text, double gray) {
    const std::string paper = std::to_string(gray) + " g 0 0 420 595 re f 0 G 2 w 30 30 360 535 re S ";
    contents_.push_back(paper + "0 g BT /F 28 Tf 60 300 Td (" + text + ") Tj ET");
    return *this;
}

std::string SampleDocument::bytes() const {
    std::vector<std::string> objects{"<</Type/Catalog/Pages 2 0 R>>", tree(contents_.size()),
                                     "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"};
    for (const std::string& content : contents_) {
        objects.push_back("<</Type/Page/Parent 2 0 R/Contents " + number(objects.size() + 2) + " 0 R>>");
        objects.push_back("<</Length " + number(content.size()) + ">>stream\n" + content + "\nendstream");
    }
    std::string file = "%PDF-1.4\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        table += tableLine(file.size());
        file += number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string start = number(file.size());
    const std::string size = number(objects.size() + 1);
    return file + "xref\n0 " + size + "\n" + table + "trailer\n<</Size " + size + "/Root 1 0 R>>\nstartxref\n" + start +
           "\n%%EOF\n";
}

}  // namespace quillon

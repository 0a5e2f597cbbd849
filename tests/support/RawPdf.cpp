#include "tests/support/RawPdf.h"

#include <algorithm>
#include <cstdio>

namespace quillon::test {

RawPdf& RawPdf::raw(std::string_view bytes) {
    text_ += bytes;
    return *this;
}

RawPdf& RawPdf::object(int number, std::string_view value, int generation) {
    entry(number, text_.size() - base_, generation);
    text_ += std::to_string(number) + ' ' + std::to_string(generation) + " obj\n";
    text_ += value;
    text_ += "\nendobj\n";
    return *this;
}

RawPdf& RawPdf::stream(int number, std::string_view entries, std::string_view data) {
    std::string value = "<<" + std::string(entries) + "/Length " + std::to_string(data.size()) + ">>\nstream\n";
    value += data;
    return object(number, value + "\nendstream");
}

RawPdf& RawPdf::packed(int number, const std::vector<std::pair<int, std::string>>& objects, std::string_view entries) {
    std::string index;
    std::string body;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        index += std::to_string(objects[i].first) + ' ' + std::to_string(body.size()) + ' ';
        body += objects[i].second + '\n';
    }
    stream(number,
           "/Type/ObjStm/N " + std::to_string(objects.size()) + "/First " + std::to_string(index.size()) +
               std::string(entries),
           index + body);
    for (std::size_t i = 0; i < objects.size(); ++i) {
        entries_[objects[i].first] = {2, static_cast<std::uint64_t>(number), static_cast<int>(i)};
    }
    return *this;
}

RawPdf& RawPdf::catalogOf(const std::vector<int>& pages) {
    object(1, "<</Type/Catalog/Pages 2 0 R>>");
    std::string kids;
    for (const int page : pages) kids += std::to_string(page) + " 0 R ";
    return object(2, "<</Type/Pages/Count " + std::to_string(pages.size()) + "/Kids[" + kids + "]>>");
}

RawPdf& RawPdf::page(int number, std::string_view mark, std::string_view entries) {
    object(number,
           "<</Type/Page/Contents " + std::to_string(number + 1) + " 0 R" + font() + std::string(entries) + ">>");
    return stream(number + 1, {}, content(mark));
}

RawPdf& RawPdf::entry(int number, std::uint64_t offset, int generation) {
    entries_[number] = {1, offset, generation};
    return *this;
}

RawPdf& RawPdf::freed(int number, int generation) {
    entries_[number] = {0, 0, generation};
    return *this;
}

RawPdf& RawPdf::countOffsetsFrom(std::size_t place) {
    base_ = place;
    return *this;
}

RawPdf& RawPdf::table(std::string_view trailer, std::string_view lineEnd) {
    writeTable(entries_, trailer, lineEnd);
    end();
    return *this;
}

RawPdf& RawPdf::crossStream(int number, std::string_view trailer) {
    entry(number, text_.size() - base_);
    writeStream(number, entries_, sizeAndPrev(entries_) + std::string(trailer));
    end();
    return *this;
}

RawPdf& RawPdf::hybrid(int number, std::string_view trailer) {
    entry(number, text_.size() - base_);
    Entries plain = entries_;
    Entries hidden;
    for (auto& [object, entry] : plain) {
        if (entry.type != 2) continue;
        hidden[object] = entry;
        entry = {0, 0, 65535};
    }
    writeStream(number, hidden, "/Size " + std::to_string(plain.rbegin()->first + 1));
    const std::size_t offset = section_;
    writeTable(plain, "/XRefStm " + std::to_string(offset) + std::string(trailer), " \n");
    end();
    return *this;
}

std::string RawPdf::bigEndian(std::uint64_t value, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) text += static_cast<char>(value >> shift);
    return text;
}

std::string RawPdf::content(std::string_view mark) {
    return "BT /F1 24 Tf 20 20 Td (" + std::string(mark) + ") Tj ET";
}

std::string RawPdf::font() {
    return "/Resources<</Font<</F1<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>>>";
}

void RawPdf::writeTable(const Entries& entries, std::string_view trailer, std::string_view lineEnd) {
    Entries all = entries;
    if (!hasSection_) all.try_emplace(0, Entry{0, 0, 65535});
    const std::string rest = sizeAndPrev(all);
    section_ = text_.size();
    text_ += "xref\n";
    for (auto at = all.begin(); at != all.end();) {
        auto runEnd = at;
        int next = at->first;
        while (runEnd != all.end() && runEnd->first == next) {
            ++runEnd;
            ++next;
        }
        text_ += std::to_string(at->first) + ' ' + std::to_string(next - at->first) + '\n';
        for (; at != runEnd; ++at) {
            char line[32];
            std::snprintf(line, sizeof line, "%010llu %05d %c", static_cast<unsigned long long>(at->second.place),
                          at->second.detail, at->second.type == 0 ? 'f' : 'n');
            text_ += line;
            text_ += lineEnd;
        }
    }
    text_ += "trailer\n<<" + rest + std::string(trailer) + ">>\n";
}

void RawPdf::writeStream(int number, const Entries& entries, std::string_view trailer) {
    std::string index;
    std::string rows;
    for (const auto& [object, entry] : entries) {
        index += std::to_string(object) + " 1 ";
        rows += bigEndian(static_cast<std::uint64_t>(entry.type), 1) + bigEndian(entry.place, 4) +
                bigEndian(static_cast<std::uint64_t>(entry.detail), 2);
    }
    section_ = text_.size();
    stream(number, "/Type/XRef/W[1 4 2]/Index[" + index + "]" + std::string(trailer), rows);
}

std::string RawPdf::sizeAndPrev(const Entries& entries) const {
    const int highest = std::max(highest_, entries.empty() ? 0 : entries.rbegin()->first);
    std::string text = "/Size " + std::to_string(highest + 1);
    if (hasSection_) text += "/Prev " + std::to_string(section_ - base_);
    return text;
}

void RawPdf::end() {
    if (!entries_.empty()) highest_ = std::max(highest_, entries_.rbegin()->first);
    entries_.clear();
    hasSection_ = true;
    text_ += "startxref\n" + std::to_string(section_ - base_) + "\n%%EOF\n";
}

}  // namespace quillon::test

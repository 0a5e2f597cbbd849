#include "tests/platform/image/ImagePdfSink.h"

#include <algorithm>
#include <sstream>

namespace quillon::testing {

std::uint32_t ImagePdfSink::add(std::string object) {
    const auto known = std::find(objects_.begin(), objects_.end(), object);
    if (known != objects_.end()) return static_cast<std::uint32_t>(known - objects_.begin() + 1);
    objects_.push_back(std::move(object));
    return static_cast<std::uint32_t>(objects_.size());
}

std::uint32_t ImagePdfSink::addObject(std::string_view body) {
    return add(std::string(body));
}

std::uint32_t ImagePdfSink::addStream(std::string_view entries, std::span<const char> data) {
    streams_.push_back(
        std::make_unique<Stream>(Stream{std::string(entries), std::string(data.data(), data.size()), false, {}}));
    const Stream& stream = *streams_.back();
    return add("<<" + stream.entries + "/Length " + std::to_string(data.size()) + ">>stream\n" + stream.data +
               "\nendstream");
}

std::uint32_t ImagePdfSink::addStream(std::string_view entries, const std::shared_ptr<pdf::InputFile>& file,
                                      std::span<const pdf::FileRange> ranges) {
    std::string data;
    for (const pdf::FileRange& range : ranges) {
        std::string piece(range.length, '\0');
        piece.resize(file->readAt(range.offset, piece));
        data += piece;
    }
    const std::uint32_t number = addStream(entries, data);
    streams_.back()->isCopied = true;
    streams_.back()->ranges.assign(ranges.begin(), ranges.end());
    return number;
}

std::vector<const ImagePdfSink::Stream*> ImagePdfSink::streamsWith(std::string_view text) const {
    std::vector<const Stream*> found;
    for (const auto& stream : streams_) {
        if (stream->entries.find(text) != std::string::npos) found.push_back(stream.get());
    }
    return found;
}

std::optional<std::string> ImagePdfSink::document(const pdf::PageProducer& page) {
    const std::optional<std::string> entries = page.produce(*this);
    if (!entries) return std::nullopt;
    std::ostringstream box;
    box.precision(17);
    const pdf::Rectangle media = page.mediaBox();
    box << media.left << " " << media.bottom << " " << media.right << " " << media.top;
    const std::size_t pages = objects_.size() + 2;
    objects_.push_back("<</Type/Page/Parent " + std::to_string(pages) + " 0 R/MediaBox[" + box.str() + "]" + *entries +
                       ">>");
    objects_.push_back("<</Type/Pages/Count 1/Kids[" + std::to_string(pages - 1) + " 0 R]>>");
    objects_.push_back("<</Type/Catalog/Pages " + std::to_string(pages) + " 0 R>>");

    std::string file = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
    std::string table = "xref\n0 " + std::to_string(objects_.size() + 1) + "\n0000000000 65535 f \n";
    for (std::size_t index = 0; index < objects_.size(); ++index) {
        const std::string offset = std::to_string(file.size());
        table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        file += std::to_string(index + 1) + " 0 obj\n" + objects_[index] + "\nendobj\n";
    }
    const std::string start = std::to_string(file.size());
    return file + table + "trailer\n<</Size " + std::to_string(objects_.size() + 1) + "/Root " +
           std::to_string(objects_.size()) + " 0 R>>\nstartxref\n" + start + "\n%%EOF\n";
}

}  // namespace quillon::testing

#include "platform/image/BilevelEncoder.h"

#include <algorithm>
#include <iterator>

namespace quillon {

BilevelEncoder::BilevelEncoder(int width, int height) : width_(width), height_(height), fax_(width, height) {}

void BilevelEncoder::write(std::span<const unsigned char> row) {
    inverted_.clear();
    std::transform(row.begin(), row.end(), std::back_inserter(inverted_),
                   [](unsigned char pixels) { return static_cast<unsigned char>(~pixels); });
    fax_.write(inverted_);
    flate_.write(row);
}

std::uint32_t BilevelEncoder::addTo(pdf::ObjectSink& sink, std::string entries) {
    const std::vector<char> flate = flate_.finish();
    const std::vector<char> fax = fax_.finish();
    if (flate.size() < fax.size()) return sink.addStream(entries += "/Filter/FlateDecode", flate);
    entries += "/Filter/CCITTFaxDecode/DecodeParms<</K -1/Columns " + std::to_string(width_) + "/Rows " +
               std::to_string(height_) + ">>";
    return sink.addStream(entries, fax);
}

}  // namespace quillon

#pragma once

#include "pdf/write/ObjectSink.h"
#include "platform/image/FaxEncoder.h"
#include "platform/image/FlateEncoder.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quillon {

/// Writes a black and white picture as an image XObject, in whichever of Flate and CCITT Group 4 turns out smaller:
/// text is, in Group 4, half as large or less, but dithered pictures come out larger than they were.
class BilevelEncoder {
public:
    /// In pixels.
    BilevelEncoder(int width, int height);

    /// Eight pixels a byte, the first in the highest bit, 1 for white. To be called for each row in turn.
    void write(std::span<const unsigned char> row);

    /// Returns the object number. `entries` is the text of the dictionary without the filter. Ends the encoding.
    std::uint32_t addTo(pdf::ObjectSink& sink, std::string entries);

private:
    int width_;
    int height_;
    FaxEncoder fax_;
    FlateEncoder flate_;
    std::vector<unsigned char> inverted_;
};

}  // namespace quillon

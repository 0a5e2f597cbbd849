#pragma once

#include "pdf/write/ObjectSink.h"
#include "platform/image/IccProfile.h"
#include "platform/image/PictureFacts.h"
#include "platform/image/RasterImage.h"

#include <cstdint>
#include <string>

namespace quillon {

/// Writes a picture as an image XObject without loss, in the smallest form that holds all its colours: black and white,
/// grey, a palette of up to 256 colours, or RGB, of 1 to 16 bits. Alpha becomes a soft mask.
class ImageEncoder {
public:
    /// `image` must outlive this.
    ImageEncoder(const RasterImage& image, IccProfile profile);

    /// Returns the object number of the image XObject.
    std::uint32_t addTo(pdf::ObjectSink& sink) const;

private:
    enum class Source { Gray, Rgb, Palette, Alpha };

    /// Which samples are written, and in how many bits.
    struct Form {
        Source source;
        int bits;
    };

    [[nodiscard]] bool mayBeGray() const;
    [[nodiscard]] Form chooseForm() const;
    [[nodiscard]] std::string addColorSpace(Source source, pdf::ObjectSink& sink) const;
    std::uint32_t addSoftMask(pdf::ObjectSink& sink) const;
    std::uint32_t addSamples(Form form, const std::string& colorEntries, pdf::ObjectSink& sink) const;
    template <typename Write>
    void packRows(Form form, Write write) const;

    const RasterImage& image_;
    PictureFacts facts_;
    IccProfile profile_;
};

}  // namespace quillon

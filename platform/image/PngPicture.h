#pragma once

#include "platform/image/Picture.h"

namespace quillon {

struct PngHeader;

/// A PNG file. Its compressed pixels go into the document as they are when PDF can show them so: /FlateDecode has the
/// predictors of PNG, but knows neither interlacing nor alpha among the samples. Otherwise they are decoded and encoded
/// again without loss.
class PngPicture final : public Picture {
public:
    /// Null when the file has no valid header, no pixels at all, or when it needs decoding and is too large for that.
    [[nodiscard]] static std::unique_ptr<const Picture> open(const std::shared_ptr<pdf::InputFile>& file);

    [[nodiscard]] std::optional<std::uint32_t> addTo(pdf::ObjectSink& sink) const override;

private:
    using Picture::Picture;

    std::uint32_t addPixelData(const PngHeader& header, pdf::ObjectSink& sink) const;
    std::optional<std::uint32_t> addDecoded(const PngHeader& header, pdf::ObjectSink& sink) const;
};

}  // namespace quillon

#pragma once

#include "platform/image/Picture.h"

namespace quillon {

class TiffFile;

/// A TIFF file. CCITT Group 4 in one strip goes into the document as it is; other black and white pictures are encoded
/// again by rows, so that pages far too large to be decoded whole are shown too; the rest is decoded.
class TiffPicture final : public Picture {
public:
    /// Null when the file has no valid first directory, or is of a kind that no decoder takes or one too large for it.
    [[nodiscard]] static std::unique_ptr<const Picture> open(const std::shared_ptr<pdf::InputFile>& file);

    [[nodiscard]] std::optional<std::uint32_t> addTo(pdf::ObjectSink& sink) const override;

private:
    using Picture::Picture;

    [[nodiscard]] std::optional<std::uint32_t> addStrip(const TiffFile& tiff, const pdf::FileRange& strip,
                                                        pdf::ObjectSink& sink) const;
    [[nodiscard]] std::optional<std::uint32_t> addRows(TiffFile& tiff, pdf::ObjectSink& sink) const;
    [[nodiscard]] std::string bilevelEntries(const TiffFile& tiff, pdf::ObjectSink& sink) const;
};

}  // namespace quillon

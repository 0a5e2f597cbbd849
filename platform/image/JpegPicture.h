#pragma once

#include "platform/image/Picture.h"

namespace quillon {

struct JpegHeader;

/// A JPEG file that /DCTDecode can hold. Its bytes go into the document as they are.
class JpegPicture final : public Picture {
public:
    /// Null when the file has no complete header or another coding process than PDF knows.
    [[nodiscard]] static std::unique_ptr<const Picture> open(const std::shared_ptr<pdf::InputFile>& file);

    [[nodiscard]] std::optional<std::uint32_t> addTo(pdf::ObjectSink& sink) const override;

private:
    using Picture::Picture;
};

}  // namespace quillon

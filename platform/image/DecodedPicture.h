#pragma once

#include "platform/image/Picture.h"

#include <utility>

namespace quillon {

/// A picture of any kind that Qt can decode. It is encoded again without loss.
class DecodedPicture final : public Picture {
public:
    /// Null when no decoder takes the file, or when the picture is too large to be decoded.
    [[nodiscard]] static std::unique_ptr<const Picture> open(const std::shared_ptr<pdf::InputFile>& file,
                                                             const QByteArray& suffix);

    [[nodiscard]] std::optional<std::uint32_t> addTo(pdf::ObjectSink& sink) const override;

private:
    DecodedPicture(std::shared_ptr<pdf::InputFile> file, const Properties& properties, QByteArray format)
        : Picture(std::move(file), properties), format_(std::move(format)) {}

    QByteArray format_;
};

}  // namespace quillon

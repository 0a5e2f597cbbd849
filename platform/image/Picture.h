#pragma once

#include "pdf/io/InputFile.h"
#include "pdf/write/ObjectSink.h"
#include "platform/image/ExifTags.h"
#include "platform/image/Resolution.h"

#include <QByteArray>
#include <QSize>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quillon {

/// The first picture of a file of one kind, known by its headers. Immutable; may be used from any thread.
class Picture {
public:
    struct Properties {
        QSize pixels;  ///< as stored, before the orientation is applied; never empty
        Resolution resolution;
        Orientation orientation;
    };

    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    virtual ~Picture() = default;

    /// Looks at the first bytes for the kind, then reads the headers. `suffix` is that of the file's name: some kinds
    /// cannot be told by their first bytes. Null when there is no picture that can be shown.
    [[nodiscard]] static std::unique_ptr<const Picture> open(const std::shared_ptr<pdf::InputFile>& file,
                                                             const QByteArray& suffix);

    [[nodiscard]] const std::string& path() const noexcept { return file_->path(); }
    [[nodiscard]] const Properties& properties() const noexcept { return properties_; }

    /// Adds the picture to `sink` as an image XObject (ISO 32000-2, 8.9.5) and returns its number. Nothing when the
    /// file has no longer the pixels.
    [[nodiscard]] virtual std::optional<std::uint32_t> addTo(pdf::ObjectSink& sink) const = 0;

protected:
    Picture(std::shared_ptr<pdf::InputFile> file, const Properties& properties);

    [[nodiscard]] const std::shared_ptr<pdf::InputFile>& file() const noexcept { return file_; }

private:
    std::shared_ptr<pdf::InputFile> file_;
    Properties properties_;
};

}  // namespace quillon

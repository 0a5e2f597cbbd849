#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

struct tiff;

namespace quillon {

/// What libtiff reads from or writes to instead of a file.
class TiffStream {
public:
    using Handle = std::unique_ptr<tiff, void (*)(tiff*)>;

    TiffStream() = default;
    TiffStream(const TiffStream&) = delete;
    TiffStream& operator=(const TiffStream&) = delete;
    virtual ~TiffStream() = default;

    /// `mode` as TIFFOpen takes it. Null when libtiff refuses the file. What libtiff has to say about it is dropped.
    /// The stream must outlive the handle.
    [[nodiscard]] Handle open(const char* mode);

    [[nodiscard]] virtual std::uint64_t size() const = 0;
    [[nodiscard]] virtual std::size_t readAt(std::uint64_t offset, std::span<char> into) = 0;
    [[nodiscard]] virtual std::size_t writeAt(std::uint64_t offset, std::span<const char> data) = 0;

private:
    friend struct TiffProcedures;

    std::uint64_t position_ = 0;
};

}  // namespace quillon

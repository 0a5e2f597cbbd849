#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct libdeflate_compressor;

namespace quillon::pdf {

/// Inflates zlib data (FlateDecode). Damaged or broken-off data gives what comes before the damage. Nothing when more
/// than `limit` bytes would come out.
[[nodiscard]] std::optional<std::string> inflate(std::string_view data, std::size_t limit);

/// The CRC-32 of `data`.
[[nodiscard]] std::uint32_t checksum(std::string_view data) noexcept;

/// Deflates for FlateDecode. Keeps its working memory from call to call; not thread-safe.
class Deflater {
public:
    /// `level` 1 (fast) to 12 (small).
    explicit Deflater(int level);

    /// Replaces the contents of `out`.
    void deflate(std::string_view data, std::string& out);

private:
    struct Release {
        void operator()(libdeflate_compressor* compressor) const noexcept;
    };
    std::unique_ptr<libdeflate_compressor, Release> compressor_;
    std::unique_ptr<char[]> room_;
    std::size_t roomBytes_ = 0;
};

}  // namespace quillon::pdf

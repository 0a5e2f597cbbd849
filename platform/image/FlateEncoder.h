#pragma once

#include <zlib.h>

#include <span>
#include <vector>

namespace quillon {

/// Compresses data that arrives piece by piece for /FlateDecode, so that a picture's rows need never stand in memory
/// together a second time.
class FlateEncoder {
public:
    FlateEncoder();
    FlateEncoder(const FlateEncoder&) = delete;
    FlateEncoder& operator=(const FlateEncoder&) = delete;
    ~FlateEncoder();

    void write(std::span<const unsigned char> data);

    /// Ends the stream and returns it whole; nothing may be written afterwards.
    [[nodiscard]] std::vector<char> finish();

private:
    void run(std::span<const unsigned char> data, int flush);

    z_stream stream_{};
    std::vector<char> output_;
};

}  // namespace quillon

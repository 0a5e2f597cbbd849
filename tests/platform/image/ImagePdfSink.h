#pragma once

#include "pdf/write/ObjectSink.h"
#include "pdf/write/PageProducer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::testing {

/// Collects the objects of one page and makes a complete PDF file of them, so that an independent reader can judge it.
class ImagePdfSink final : public pdf::ObjectSink {
public:
    /// A stream as it was handed over.
    struct Stream {
        std::string entries;
        std::string data;
        bool isCopied = false;  ///< whether it was given as ranges of a file
        std::vector<pdf::FileRange> ranges;
    };

    std::uint32_t addObject(std::string_view body) override;
    std::uint32_t addStream(std::string_view entries, std::span<const char> data) override;
    std::uint32_t addStream(std::string_view entries, const std::shared_ptr<pdf::InputFile>& file,
                            std::span<const pdf::FileRange> ranges) override;

    /// The streams whose entries contain `text`, in the order in which they were added.
    [[nodiscard]] std::vector<const Stream*> streamsWith(std::string_view text) const;

    /// The file with the one page that `page` produces into this sink; nothing when it produces none.
    [[nodiscard]] std::optional<std::string> document(const pdf::PageProducer& page);

private:
    std::uint32_t add(std::string object);

    std::vector<std::string> objects_;
    std::vector<std::unique_ptr<Stream>> streams_;
};

}  // namespace quillon::testing

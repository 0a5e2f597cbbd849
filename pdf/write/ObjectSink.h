#pragma once

#include "pdf/io/InputFile.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace quillon::pdf {

/// A run of bytes of a file.
struct FileRange {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// Where a page that is made by the program, not copied from a source, puts its objects while a document is written.
/// Objects are added from the leaves up: what an object refers to is added before it.
class ObjectSink {
public:
    virtual ~ObjectSink() = default;

    /// Adds an indirect object that is no stream; `body` is its value as PDF text. Returns its object number.
    virtual std::uint32_t addObject(std::string_view body) = 0;

    /// Adds a stream. `entries` is the text of its dictionary without the brackets and without `/Length`, for instance
    /// `/Type/XObject/Subtype/Image/Width 1`; `data` is the stream as it is to stand in the file, already encoded as
    /// `/Filter` says. Returns the object number, that of an earlier stream if an equal one has been written.
    virtual std::uint32_t addStream(std::string_view entries, std::span<const char> data) = 0;

    /// The same for bytes that are copied from a file when they are written: the concatenation of `ranges`.
    virtual std::uint32_t addStream(std::string_view entries, const std::shared_ptr<InputFile>& file,
                                    std::span<const FileRange> ranges) = 0;
};

}  // namespace quillon::pdf

#pragma once

#include "pdf/Geometry.h"
#include "pdf/write/ObjectSink.h"

#include <optional>
#include <string>

namespace quillon::pdf {

/// A page that the program makes. It is asked for its objects only when a document is written, once for each time that
/// it stands in the document, on the writing thread.
class PageProducer {
public:
    virtual ~PageProducer() = default;

    [[nodiscard]] virtual Rectangle mediaBox() const = 0;

    /// What to call the page in a warning: the path of its file.
    [[nodiscard]] virtual std::string name() const = 0;

    /// Adds the page's objects to `sink` and returns the entries of its page dictionary besides `/Type`, `/Parent` and
    /// `/MediaBox`, for instance `/Resources<<…>>/Contents 7 0 R`. Nothing when the page cannot be made any more (its
    /// file has gone): the page is then left out.
    [[nodiscard]] virtual std::optional<std::string> produce(ObjectSink& sink) const = 0;
};

}  // namespace quillon::pdf

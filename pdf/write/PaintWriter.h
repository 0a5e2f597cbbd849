#pragma once

#include "pdf/filter/Flate.h"
#include "pdf/object/Object.h"
#include "pdf/write/ObjectOutput.h"
#include "pdf/write/Painting.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

/// Writes what is painted over the pages of one document: each resource once, and the content of the layers.
class PaintWriter {
public:
    /// A resource that painted content needs, as it stands in the file.
    struct Needed {
        std::string_view category;
        std::uint32_t number;
        auto operator<=>(const Needed&) const = default;
    };
    /// How the values of a resource dictionary are read and written: where it comes from a source, references must be
    /// followed there and get the numbers of the output.
    struct Origin {
        std::function<Object(const Object&)> resolve;
        std::function<void(const Object&, std::string&)> write;
        /// For values with the numbers of the output.
        [[nodiscard]] static Origin output();
    };

    explicit PaintWriter(ObjectOutput& output) : output_(output) {}

    [[nodiscard]] ObjectSink& sink() noexcept { return output_; }
    [[nodiscard]] std::uint32_t numberOf(const std::shared_ptr<const PaintResource>& resource);

    /// What the contents need, each once.
    [[nodiscard]] std::vector<Needed> neededBy(std::span<const PaintContent> contents);
    /// Appends the resource dictionary `own` with `needed` added. Returns what begins the names of those, and no other
    /// name that it has.
    std::string writeResources(const Dictionary& own, std::span<const Needed> needed, const Origin& origin,
                               std::string& out);
    /// The operators of `content`, the names of its resources beginning with `prefix`.
    [[nodiscard]] std::string text(const PaintContent& content, std::string_view prefix);
    /// Adds a stream of operators, deflated where that makes it shorter. `entries` as for ObjectSink::addStream.
    [[nodiscard]] std::uint32_t addContent(std::string_view entries, const std::string& content);

    /// Appends the elements of a page's Contents array for the layers.
    void writeLayers(const Painting& painting, std::string_view prefix, std::string& out);

    /// Paints over a page that the program makes. `entries` are those of its dictionary, with Resources standing in it
    /// directly.
    [[nodiscard]] std::string paintOver(const std::string& entries, const Painting& painting);

private:
    ObjectOutput& output_;
    std::unordered_map<const PaintResource*, std::uint32_t> numbers_;
    std::optional<Deflater> deflater_;
};

}  // namespace quillon::pdf

#pragma once

#include "pdf/read/KeyTree.h"
#include "pdf/read/SourceDocument.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillon::pdf {

/// A place in a document (ISO 32000-2, 12.3.2).
struct Destination {
    std::uint32_t page = 0;      ///< zero-based
    std::string view = "/Fit";   ///< how the page is shown: the elements of the array behind the page, as text
    std::optional<double> left;  ///< of the point that is shown, if the view names it, in points of the page
    std::optional<double> top;
};

/// Finds out where the destinations of one document lead. Reads the names only when one is asked for.
class DestinationResolver {
public:
    /// `document` must outlive the resolver.
    explicit DestinationResolver(SourceDocument& document) : document_(document) {}

    /// An explicit destination, a name or text that stands for one, or a dictionary that holds one. Nothing when it
    /// leads to no page of the document.
    [[nodiscard]] std::optional<Destination> resolve(const Object& destination) { return find(destination, Form::Any); }

private:
    enum class Form : std::uint8_t { Any, ListOrDictionary, List };

    [[nodiscard]] std::optional<Destination> find(const Object& value, Form form);
    [[nodiscard]] std::optional<Destination> named(const std::string& name);
    [[nodiscard]] std::optional<std::uint32_t> pageOf(const Object& page);
    void readNames();

    SourceDocument& document_;
    std::optional<std::unordered_map<std::string, Object>> names_;
    std::unordered_map<std::uint64_t, std::optional<Destination>> known_;  // by object number and form
    std::unordered_map<std::uint32_t, std::uint32_t> pages_;  // object number: index; empty until asked for
};

/// The names of a document: those of the dictionary `Dests` of its catalog, and those of the name tree.
struct DestinationNames {
    NamedValues old;   ///< PDF 1.1 names
    NamedValues tree;  ///< texts
};
[[nodiscard]] DestinationNames readDestinationNames(SourceDocument& document);

/// A destination that names its page by a reference, as nearly all do.
struct ExplicitDestination {
    Reference page;
    std::string_view behind;  ///< what follows the reference in the array, with its bracket; no other reference
};
/// That of the text of a destination's object, if it is short and the object says nothing else.
[[nodiscard]] std::optional<ExplicitDestination> explicitDestination(std::string_view object);

}  // namespace quillon::pdf

#pragma once

#include "tests/support/RawPdf.h"

#include <string>
#include <vector>

namespace quillon::test {

// Small files of two pages, marked `mark`1 and `mark`2, each with one kind of thing that belongs to the document and
// not to its pages alone. Object 10 is the first page, 12 the second.

/// The beginning of a file whose catalog has the entries `catalog`, with a page for each of `pages`, the entries it has
/// besides its size. The pages are objects 10, 12 and so on and marked 1, 2 and so on; objects from 30 on are free,
/// with up to ten pages.
[[nodiscard]] RawPdf beginPdf(const std::string& catalog, const std::vector<std::string>& pages);

/// The fields `person.first` (on the first page, value `mark`), `person.both` (on both pages) and `sum` (on the second,
/// calculated, in the font F), and the default appearance /F 9 Tf. `font` is the base font that F stands for.
[[nodiscard]] std::string formPdf(const std::string& mark, const std::string& font = "Helvetica");

/// A signature field `seal` with a value and an appearance on the first page, the value at the field or above it.
[[nodiscard]] std::string signedPdf(const std::string& mark, bool above = false);

/// The layers `mark`-shown, used by the first page, and `mark`-hidden, used by the second; with `hidesAll` by a
/// configuration that hides all layers but one.
[[nodiscard]] std::string layeredPdf(const std::string& mark, bool hidesAll = false);

/// The labels i and A-5.
[[nodiscard]] std::string labelledPdf(const std::string& mark);

/// The attachment `mark`.txt under the name note, which is also an associated file, and the document script start.
[[nodiscard]] std::string attachedPdf(const std::string& mark);

/// A tagged file: a document element with a paragraph on each page, of the type Text, which stands for `role`, and a
/// link annotation on the second page that belongs to an element Link. The first paragraph has the identifier id.
[[nodiscard]] std::string taggedPdf(const std::string& mark, const std::string& role = "P",
                                    const std::string& language = {});

/// An article with a bead on each page, and the title `mark`.
[[nodiscard]] std::string articlePdf(const std::string& mark);

/// An output intent with the identifier `mark`, the language `mark`, and a page transition on the second page.
[[nodiscard]] std::string presentedPdf(const std::string& mark);

/// On the first page a comment `mark` with its pop-up, and a reply to it.
[[nodiscard]] std::string commentedPdf(const std::string& mark);

/// On the first page three links to the second: to the page itself, by a name and by the index of the page; on the
/// second one to the first.
[[nodiscard]] std::string linkedPdf(const std::string& mark);

}  // namespace quillon::test

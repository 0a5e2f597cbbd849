#pragma once

#include "tests/support/JudgedPdf.h"

#include <string>
#include <vector>

namespace quillon::test {

// What belongs to a document and not to its pages alone, in a file that was written, from what other programs say of
// it. Pages are counted from 1; what is not in order is said in the place of the thing itself.

/// A line `name@page=value` for each widget of the form, in the order of its fields, the name of the field in full.
[[nodiscard]] std::vector<std::string> fieldLines(const JudgedPdf& pdf);

/// A line `name+` or `name-` for each layer, as it is shown or hidden when the file is opened.
[[nodiscard]] std::vector<std::string> layerLines(const JudgedPdf& pdf);

/// The ranges of page labels as `page style prefix start`.
[[nodiscard]] std::vector<std::string> labelLines(const std::string& file);

/// A line `title@page,page` for each article.
[[nodiscard]] std::vector<std::string> articleLines(const JudgedPdf& pdf);

/// A line `Document/Text@page` for each piece of content in the structure tree, behind the types of the elements from
/// the top. With `!` behind it where the parent tree does not
/// lead back from the page or the annotation, or the element not to the one above.
[[nodiscard]] std::vector<std::string> tagLines(const JudgedPdf& pdf);

/// A line `from>to` for each link of each page to a page of the file, as the page itself or by a name; `from>` for one
/// that leads nowhere.
[[nodiscard]] std::vector<std::string> linkLines(const JudgedPdf& pdf);

/// A line `page:texts` for each page with comments; with `!` behind it where pop-ups, replies or pages are not those of
/// the same copy.
[[nodiscard]] std::vector<std::string> commentLines(const JudgedPdf& pdf);

/// The texts of the scripts of the document.
[[nodiscard]] std::vector<std::string> scriptLines(const JudgedPdf& pdf);

/// The names of the files that are attached.
[[nodiscard]] std::vector<std::string> attachmentLines(const std::string& file);

}  // namespace quillon::test

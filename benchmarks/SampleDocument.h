#pragma once

#include <string>
#include <vector>

namespace quillon {

/// A small PDF file made from nothing: A5 sheets that each show one line of text inside a border.
class SampleDocument {
public:
    /// Adds a sheet. `text` is ASCII without brackets and backslashes; `gray` is the shade of the paper, from 0 (black)
    /// to 1 (white).
    SampleDocument& sheet(const std::string& text, double gray = 1);

    /// The file: nothing compressed, classic cross-reference table.
    [[nodiscard]] std::string bytes() const;

private:
    std::vector<std::string> contents_;
};

}  // namespace quillon

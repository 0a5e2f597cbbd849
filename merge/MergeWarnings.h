#pragma once

#include <QUrl>

#include <set>
#include <string>
#include <vector>

namespace quillon {

class PDFDocument;
class cacheData;

/// What a merge met with that did not stop it, a line each. A file may be opened anew in every round; it is
/// reported once.
class MergeWarnings {
public:
    /// Takes over what `document` has to say about the file of `entry`; null: that the file could not be opened.
    void noteInput(const cacheData& entry, const PDFDocument* document);
    /// The same for a file that is no entry.
    void noteFile(const QUrl& url, const PDFDocument* document);
    /// A picture that could not be loaded.
    void noteUnreadablePicture(const cacheData& entry);
    /// Adds the lines that are not there yet.
    void add(const std::vector<std::string>& lines);

    [[nodiscard]] const std::vector<std::string>& lines() const noexcept { return lines_; }

private:
    std::vector<std::string> lines_;
    std::set<std::string> known_;        // what add has added
    std::set<const cacheData*> missed_;  // entries whose file could not be read
};

}  // namespace quillon

#include "merge/MergeWarnings.h"

#include "merge/cacheData.h"
#include "platform/pdf/PDFDocument.h"

#include <QFileInfo>
#include <QString>

namespace quillon {
namespace {

std::string nameOf(const QUrl& url) {
    return (url.isLocalFile() ? url.toLocalFile() : url.toDisplayString()).toStdString();
}

std::string unreadable(const QUrl& url, const char* kind) {
    if (url.isLocalFile() && !QFileInfo::exists(url.toLocalFile())) return nameOf(url) + ": does not exist";
    return nameOf(url) + ": cannot be read as a " + kind;
}

}  // namespace

void MergeWarnings::noteInput(const cacheData& entry, const PDFDocument* document) {
    if (document != nullptr) {
        add(document->warnings());
        if (document->isLocked())
            add({nameOf(entry.url()) + ": is protected and could not be unlocked; its pages are left out"});
    } else if (missed_.insert(&entry).second) {
        // Not through add: a file that stands in the list twice is missing twice.
        lines_.push_back(unreadable(entry.url(), "PDF"));
    }
}

void MergeWarnings::noteFile(const QUrl& url, const PDFDocument* document) {
    if (document != nullptr) {
        add(document->warnings());
        if (document->isLocked()) add({nameOf(url) + ": is protected; no page of it is used"});
    } else {
        add({unreadable(url, "PDF")});
    }
}

void MergeWarnings::noteUnreadablePicture(const cacheData& entry) {
    if (missed_.insert(&entry).second) lines_.push_back(unreadable(entry.url(), "picture"));
}

void MergeWarnings::add(const std::vector<std::string>& lines) {
    for (const auto& line : lines) {
        if (known_.insert(line).second) lines_.push_back(line);
    }
}

}  // namespace quillon

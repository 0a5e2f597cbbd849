#include "platform/pdf/DocumentPreloader.h"

#include "platform/pdf/FilePath.h"

#include <string>

namespace quillon {

namespace {

std::vector<std::string> pathsOf(const std::vector<QUrl>& urls) {
    std::vector<std::string> paths;
    paths.reserve(urls.size());
    for (const QUrl& url : urls) paths.push_back(filePathOf(url));
    return paths;
}

}  // namespace

DocumentPreloader::DocumentPreloader(const std::vector<QUrl>& urls) : sources_(pathsOf(urls)) {}

}  // namespace quillon

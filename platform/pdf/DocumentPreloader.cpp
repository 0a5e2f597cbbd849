#include "platform/pdf/DocumentPreloader.h"

#include "platform/pdf/FilePath.h"

#include <utility>

namespace quillon {

DocumentPreloader::DocumentPreloader(std::size_t count, UrlAt urlAt)
    : sources_(count, [urlAt = std::move(urlAt)](std::size_t index) { return filePathOf(urlAt(index)); }) {}

}  // namespace quillon

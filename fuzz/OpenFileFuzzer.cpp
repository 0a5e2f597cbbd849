// Whatever bytes a file holds: opening it, with a password if it needs one, and copying all its pages into a new file,
// neither crashes nor hangs, and the new file, protected every other time, opens with the pages that were said to be in
// it.

#include "fuzz/MemoryFile.h"
#include "fuzz/ScratchFolder.h"
#include "pdf/read/Source.h"
#include "pdf/write/DocumentWriter.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace quillon;

// A page tree of a few bytes may list one page thousands of times, which is slow and shows nothing new.
constexpr std::size_t mostPages = 200;

// Of the protected files among the first inputs, and of what is written.
constexpr const char* password = "user";

/// Every page of the first opening, then every page of a second one, so that pages are written twice; of a part every
/// other page, and without a base, so that what belongs to the document is cut down.
pdf::DocumentPlan planFor(const std::shared_ptr<pdf::Source>& source, bool part) {
    pdf::DocumentPlan plan;
    if (!part) plan.base = source;
    plan.sync = false;
    const auto pages = static_cast<std::uint32_t>(std::min(source->pageCount(), mostPages));
    for (int round = 0; round < 2; ++round) {
        const std::uint32_t opening = pdf::newOpening();
        for (std::uint32_t index = 0; index < pages; index += part ? 2 : 1) {
            plan.pages.push_back({pdf::SourcePage{source, index, opening}, true});
        }
    }
    return plan;
}

void checkWritten(const std::string& path, std::uint64_t pages) {
    const auto written = pdf::Source::open(path);
    if (written && written->unlock(password) != pdf::Access::None && written->pageCount() == pages) return;
    std::fprintf(stderr, "%llu pages were written, %llu are read\n", static_cast<unsigned long long>(pages),
                 static_cast<unsigned long long>(written ? written->pageCount() : 0));
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchFolder folder;
    const std::string target = folder.file("output.pdf");
    const fuzz::MemoryFile file({data, size});
    const auto source = pdf::Source::open(file.path());
    if (!source) return 0;
    static_cast<void>(source->unlock(password));
    pdf::DocumentPlan plan = planFor(source, size % 4 >= 2);
    if (size % 2 != 0) plan.protection = pdf::Protection{password, {}};
    const pdf::WriteResult result = pdf::writeDocument(plan, target);
    if (result.written) checkWritten(target, result.pages);
    return 0;
}

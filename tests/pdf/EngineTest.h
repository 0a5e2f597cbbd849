#pragma once

#include "pdf/write/DocumentWriter.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

using Strings = std::vector<std::string>;

/// What the tests of reading and writing whole documents share: a folder, and the ways into the engine and out again.
class EngineTest : public testing::Test {
protected:
    /// Puts `bytes` into the file `name` and opens it; null when it cannot be read as a PDF.
    std::shared_ptr<Source> open(std::string_view bytes, std::string_view name = "in.pdf") const;

    /// Pages of a source by their zero-based indexes, all of one opening.
    static std::vector<OutputPage> pagesOf(const std::shared_ptr<Source>& source,
                                           const std::vector<std::uint32_t>& indexes);
    /// All of them.
    static std::vector<OutputPage> pagesOf(const std::shared_ptr<Source>& source);
    /// A document of all pages of `sources`, based on the first.
    static DocumentPlan planOf(const std::vector<std::shared_ptr<Source>>& sources);

    /// Writes to the file `name`, expects that to succeed and qpdf to find nothing wrong with it, and returns its path.
    std::string write(const DocumentPlan& plan, std::string_view name = "out.pdf") const;

    /// The same, and expects that it takes no longer than inputs of a few hundred kilobytes may, many times what they
    /// do.
    std::string writeSoon(const DocumentPlan& plan) const;

    /// The marks of the pages of a file as the engine reads it: opened, written, and read back by pdftotext. Empty when
    /// it cannot be opened.
    Strings marks(std::string_view bytes) const;

    static std::string contentOf(const std::string& path);
    [[nodiscard]] int filesInFolder() const;

    const test::TempDir dir;
};

}  // namespace quillon::pdf

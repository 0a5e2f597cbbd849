#pragma once

#include "merge/MergeOperation.h"
#include "merge/cacheData.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/PlainSettings.h"
#include "tests/support/RecordingOwner.h"
#include "tests/support/TempDir.h"

#include <QUrl>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quillon::test {

/// A list of inputs that is merged into one file by a real job on a real queue.
class MergeTest : public testing::Test {
protected:
    /// Writes `name`.pdf with `count` pages that are marked with the name and a number, and adds it to the list.
    cacheData& add(const std::string& name, int count, std::int32_t method = MergeMethodWhole,
                   const QString& value = QString());
    cacheData& addFile(const QUrl& url, std::int32_t method = MergeMethodWhole, const QString& value = QString());
    /// Adds a PDF entry whose file does not exist.
    cacheData& addMissing(std::int32_t method = MergeMethodWhole, const QString& value = QString());
    /// Adds a picture of 10 × 10 pixels.
    cacheData& addPicture(std::int32_t method = MergeMethodWhole);

    [[nodiscard]] QUrl write(const std::string& name, const PdfFixture& fixture) const;
    [[nodiscard]] QUrl urlOf(const std::string& path) const {
        return QUrl::fromLocalFile(QString::fromStdString(path));
    }

    /// The job for the list; made when it is first asked for.
    MergeOperation& job();
    /// Runs the job to its end, delivering its calls to the main thread.
    void run();
    /// The same on the main thread itself, for a job with settings of the test's own.
    void runHere(MergeOperation& job);

    [[nodiscard]] std::string target() const { return dir_.file("out.pdf"); }
    /// The marks of the written pages, as another program reads them, one after the other; `-` for a page without a
    /// mark, `no file` when nothing was written. Fails the test when that program finds the file damaged.
    [[nodiscard]] std::string pages() const;
    [[nodiscard]] std::string merged() {
        run();
        return pages();
    }

    TempDir dir_;
    PlainSettings settings_;
    RecordingOwner owner_;
    std::vector<std::shared_ptr<cacheData>> list_;

private:
    std::shared_ptr<MergeOperation> job_;
};

}  // namespace quillon::test

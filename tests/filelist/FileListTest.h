#pragma once

#include "filelist/TableViewDataSource.h"
#include "merge/cacheData.h"
#include "platform/ui/TableView.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/RecordingWorkspace.h"

#include <QString>
#include <QStringList>
#include <QUrl>
#include <gtest/gtest.h>

#include <string>

namespace quillon::test {

/// A file list with its table, which is not shown, and files to put into it.
class FileListTest : public testing::Test {
protected:
    FileListTest();
    ~FileListTest() override;

    [[nodiscard]] QUrl urlOf(const std::string& path) const {
        return QUrl::fromLocalFile(QString::fromStdString(path));
    }
    [[nodiscard]] QUrl write(const std::string& name, const std::string& bytes) const;
    /// A PDF of `pages` pages.
    [[nodiscard]] QUrl pdf(const std::string& name, int pages = 1) const;
    /// A PNG file, whatever it is called.
    [[nodiscard]] QUrl picture(const std::string& name) const;
    /// A PDF that qpdf has protected with 256-bit AES.
    [[nodiscard]] QUrl protectedPdf(const std::string& name, const QString& userPassword, const QString& ownerPassword,
                                    const QStringList& restrictions = {}) const;

    /// The names of the files in the list.
    [[nodiscard]] QStringList names() const;
    /// What the table shows.
    [[nodiscard]] QString shown(const char* column, int row) {
        return list_.tableViewObjectValueForTableColumn(QString::fromLatin1(column), row).toString();
    }
    [[nodiscard]] cacheData& entry(int row) { return *list_.cache()[static_cast<std::size_t>(row)]; }

    TempDir dir_;
    TableView table_;
    RecordingWorkspace workspace_;
    TableViewDataSource list_{table_, workspace_};
};

}  // namespace quillon::test

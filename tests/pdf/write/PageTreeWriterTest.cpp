#include "pdf/write/PageTreeWriter.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/TempDir.h"

#include <QJsonArray>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace quillon::pdf {
namespace {

/// Writes pages, each `100 + index` points wide, but for those in `dropped`.
class PageTreeWriting : public testing::Test {
protected:
    std::size_t write(std::size_t pages, const std::set<std::size_t>& dropped = {}) {
        const auto file = OutputFile::create(path);
        file->write("%PDF-1.5\n");
        ObjectOutput output(*file);
        const std::uint32_t catalog = output.reserve();
        PageTreeWriter tree(output, pages);
        for (std::size_t i = 0; i < pages; ++i) {
            if (dropped.contains(i)) {
                tree.drop(i);
                continue;
            }
            const std::size_t begin = output.body().size();
            output.body() += "<</Type/Page/Parent " + std::to_string(tree.parentOf(i)) +
                             " 0 R/Resources<<>>/MediaBox[0 0 " + std::to_string(100 + i) + " 100]>>";
            output.close(tree.pageNumber(i), begin);
        }
        const std::size_t written = tree.write();
        const std::size_t begin = output.body().size();
        output.body() += "<</Type/Catalog/Pages " + std::to_string(tree.root()) + " 0 R>>";
        output.close(catalog, begin);
        EXPECT_TRUE(output.finishObjects());
        EXPECT_TRUE(output.finish("/Root " + std::to_string(catalog) + " 0 R", {}));
        EXPECT_TRUE(file->commit(false));
        return written;
    }

    /// Goes through the nodes: counts right, parents right, no node too wide. Returns the widths of the pages in order.
    std::vector<int> walk(const test::JudgedPdf& pdf, const QString& node, const QString& parent = {}) {
        const QJsonObject dictionary = pdf.dictionary(node);
        EXPECT_EQ(dictionary[QStringLiteral("/Parent")].toString(), parent);
        if (dictionary[QStringLiteral("/Type")].toString() == QStringLiteral("/Page")) {
            return {dictionary[QStringLiteral("/MediaBox")].toArray().at(2).toInt()};
        }
        const QJsonArray kids = dictionary[QStringLiteral("/Kids")].toArray();
        EXPECT_LE(kids.size(), 64);
        EXPECT_GT(kids.size(), 0);
        std::vector<int> all;
        for (const QJsonValue& kid : kids) {
            for (const int width : walk(pdf, kid.toString(), node)) all.push_back(width);
        }
        EXPECT_EQ(dictionary[QStringLiteral("/Count")].toInt(), static_cast<int>(all.size()));
        return all;
    }

    void check(std::size_t pages, const std::set<std::size_t>& dropped = {}) {
        EXPECT_EQ(write(pages, dropped), pages - dropped.size());
        EXPECT_EQ(test::qpdfProblems(path), "");
        const test::JudgedPdf pdf(path);
        std::vector<int> expected;
        for (std::size_t i = 0; i < pages; ++i) {
            if (!dropped.contains(i)) expected.push_back(static_cast<int>(100 + i));
        }
        EXPECT_EQ(walk(pdf, pdf.catalog()[QStringLiteral("/Pages")].toString()), expected);
    }

    const test::TempDir dir;
    const std::string path = dir.file("out.pdf");
};

TEST_F(PageTreeWriting, OnePage) {
    check(1);
}

TEST_F(PageTreeWriting, AsManyPagesAsOneNodeHolds) {
    check(64);
}

TEST_F(PageTreeWriting, OneMore) {
    check(65);
}

TEST_F(PageTreeWriting, FiveThousandPages) {
    check(5000);
}

TEST_F(PageTreeWriting, DroppedPagesAreNotCounted) {
    check(10, {0, 5, 9});
    check(200, {3, 64, 199});
}

TEST_F(PageTreeWriting, ANodeAllOfWhosePagesAreDroppedIsLeftOut) {
    std::set<std::size_t> dropped;
    for (std::size_t i = 64; i < 128; ++i) dropped.insert(i);
    check(200, dropped);
}

TEST_F(PageTreeWriting, NoPageAtAllIsReported) {
    EXPECT_EQ(write(2, {0, 1}), 0U);
}

}  // namespace
}  // namespace quillon::pdf

#pragma once

#include "decoration/MyPdfDocument.h"
#include "decoration/Utility.h"
#include "platform/pdf/Color.h"
#include "platform/pdf/WriteOptions.h"
#include "platform/text/Font.h"
#include "platform/text/TextDrawing.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/RawPdf.h"
#include "tests/support/TempDir.h"
#include "tests/support/TracedText.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon::test {

/// Writes documents with a decoration, which is off before every test.
class DecorationTest : public testing::Test {
protected:
    void SetUp() override { switchOff(); }
    void TearDown() override { switchOff(); }

    static void switchOff() {
        Utility::resetShouldAddwaterMark();
        Utility::setWatermarkContent(QString());
        Utility::setShouldaddPageNumber(false);
        Utility::setPageNumberPrefixString(QString());
        Utility::setPageNumberBegin(0, 0);
        Utility::setPageNumberStringAttri({});
        Utility::setPageNUmberPosition(0);
    }
    static void watermark(const QString& text) {
        Utility::setShouldAddWaterMark();
        Utility::setWatermarkContent(text);
    }
    static void numbers(std::uint32_t position, const QString& prefix = QStringLiteral("Page"), std::int32_t begin = 1,
                        std::int32_t step = 1, const TextAttributes& attributes = {}) {
        Utility::setPageNUmberPosition(position);
        Utility::setPageNumberPrefixString(prefix);
        Utility::setPageNumberStringAttri(attributes);
        Utility::setPageNumberBegin(begin, step);
        Utility::setShouldaddPageNumber(true);
    }
    static TextAttributes attributes(const QString& font, double size, const Color& color = Color::blackColor()) {
        return attributesWithObjectsAndKeys({{Font::objectWithName(font, size), NSFontAttributeName},
                                             {QVariant::fromValue(color), NSForegroundColorAttributeName}});
    }
    static TextAttributes watermarkAttributes() { return attributes(QStringLiteral("Microsoft Sans Serif"), 20); }

    QUrl url(std::string_view name) const { return QUrl::fromLocalFile(QString::fromStdString(dir.file(name))); }
    std::shared_ptr<MyPdfDocument> open(const std::string& bytes, std::string_view name = "in.pdf") const {
        dir.write(name, bytes);
        return MyPdfDocument::initWithURL(url(name));
    }
    /// Expects qpdf to find nothing wrong.
    std::string write(PDFDocument& document, std::string_view name = "out.pdf") const {
        EXPECT_TRUE(document.writeToURL(url(name), {{kWriteWithoutSync, true}}));
        EXPECT_EQ(qpdfProblems(dir.file(name)), "");
        return dir.file(name);
    }
    std::string written(const std::string& bytes) const {
        const auto document = open(bytes);
        return document ? write(*document) : std::string();
    }

    /// A page with the text `Body` in plain user space, and these entries.
    static std::string onePage(const std::string& entries, const std::string& before = {},
                               const std::string& after = {}) {
        RawPdf pdf;
        pdf.catalogOf({3});
        pdf.object(3, "<</Type/Page/Parent 2 0 R/Contents 4 0 R/Resources<</Font<</F 5 0 R>>>>" + entries + ">>");
        pdf.stream(4, {}, before + "BT /F 24 Tf 100 700 Td (Body) Tj ET" + after);
        pdf.object(5, "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
        return pdf.table().bytes();
    }

    /// A page without content.
    static std::string blankPage(const std::string& entries) {
        RawPdf pdf;
        pdf.catalogOf({3});
        pdf.object(3, "<</Type/Page/Parent 2 0 R/Resources<<>>" + entries + ">>");
        return pdf.table().bytes();
    }

    const TempDir dir;
};

}  // namespace quillon::test

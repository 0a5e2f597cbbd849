#pragma once

#include "platform/image/Image.h"
#include "tests/platform/image/ImagePdfSink.h"

#include <QByteArray>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quillon::testing {

/// A test that makes picture files, turns them into PDF files and has these read by other programs. It fails when
/// anything writes a Qt message.
class PictureTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// The path of the file `name` in a folder of the test's own.
    [[nodiscard]] QString pathOf(const QString& name) const;
    QString writeFile(const QString& name, const QByteArray& bytes) const;

    [[nodiscard]] std::shared_ptr<const Image> load(const QString& name) const;
    [[nodiscard]] std::shared_ptr<const Image> load(const QString& name, const QByteArray& bytes) const;

    /// The image XObjects that the page puts into a document, soft masks before what they belong to. Empty when there
    /// is no page.
    [[nodiscard]] std::vector<ImagePdfSink::Stream> imagesOf(const Image& image) const;

    /// The page as MuPDF draws it, at 72 pixels per inch. Null when there is no page or MuPDF complains.
    [[nodiscard]] QImage drawnByMuPdf(const Image& image) const;

    /// The same by Poppler.
    [[nodiscard]] QImage drawnByPoppler(const Image& image) const;

    /// Fails unless both draw `expected`, pixel by pixel with no sample off by more than `tolerance`.
    void expectDrawn(const Image& image, const QImage& expected, int tolerance = 0) const;

private:
    [[nodiscard]] QString writeDocument(const Image& image) const;

    QTemporaryDir folder_;
};

/// The largest difference of any red, green or blue sample; 256 when the sizes differ.
[[nodiscard]] int largestDifference(const QImage& one, const QImage& other);

[[nodiscard]] bool contains(const std::string& text, const std::string& part);

}  // namespace quillon::testing

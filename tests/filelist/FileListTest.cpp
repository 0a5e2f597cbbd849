#include "tests/filelist/FileListTest.h"

#include "tests/support/ExternalReader.h"

#include <QImage>

namespace quillon::test {

FileListTest::FileListTest() {
    table_.setColumns({{QStringLiteral("FileName"), QStringLiteral("Name"), 100, Qt::AlignLeft}});
    table_.setDataSource(&list_);
}

FileListTest::~FileListTest() {
    table_.setDataSource(nullptr);
}

QUrl FileListTest::write(const std::string& name, const std::string& bytes) const {
    return urlOf(dir_.write(name, bytes));
}

QUrl FileListTest::pdf(const std::string& name, int pages) const {
    return write(name, PdfFixture("P", pages).bytes());
}

QUrl FileListTest::picture(const std::string& name) const {
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::green);
    const std::string path = dir_.file(name);
    EXPECT_TRUE(image.save(QString::fromStdString(path), "PNG"));
    return urlOf(path);
}

QUrl FileListTest::protectedPdf(const std::string& name, const QString& userPassword, const QString& ownerPassword,
                                const QStringList& restrictions) const {
    const QUrl plain = pdf("plain-" + name);
    const std::string path = dir_.file(name);
    QStringList arguments{QStringLiteral("--encrypt"), userPassword, ownerPassword, QStringLiteral("256")};
    arguments << restrictions << QStringLiteral("--") << plain.toLocalFile() << QString::fromStdString(path);
    EXPECT_EQ(runProgram(QStringLiteral("qpdf"), arguments).exitCode, 0);
    return urlOf(path);
}

QStringList FileListTest::names() const {
    QStringList result;
    for (const auto& data : list_.cache()) result.append(data->url().fileName());
    return result;
}

}  // namespace quillon::test

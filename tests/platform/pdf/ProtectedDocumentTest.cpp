#include "platform/pdf/DocumentAttributes.h"
#include "platform/pdf/PDFDocument.h"
#include "platform/pdf/WriteOptions.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/ProtectedFile.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>

namespace quillon {
namespace {

using test::PdfFixture;
using Strings = std::vector<std::string>;

class ProtectedDocument : public testing::Test {
protected:
    QUrl url(std::string_view name) const { return QUrl::fromLocalFile(QString::fromStdString(dir.file(name))); }

    /// A document of two pages, protected by qpdf.
    std::shared_ptr<PDFDocument> protect(const char* user, const char* owner, const QStringList& options = {}) const {
        const std::string plain = dir.write("plain.pdf", PdfFixture("A", 2).info("Title", "Secret").bytes());
        test::protectFile(plain, dir.file("protected.pdf"), QString::fromUtf8(user), QString::fromUtf8(owner),
                          QStringList{QStringLiteral("256")} + options);
        return again();
    }
    std::shared_ptr<PDFDocument> again() const { return PDFDocument::initWithURL(url("protected.pdf")); }

    Strings marks(PDFDocument& document, const QVariantMap& options = {{kWriteWithoutSync, true}},
                  const QString& password = {}) const {
        EXPECT_TRUE(document.writeToURL(url("out.pdf"), options));
        EXPECT_EQ(test::qpdfProblems(dir.file("out.pdf"), password), "");
        return test::pageMarks(dir.file("out.pdf"), password);
    }

    const test::TempDir dir;
};

const QString right = QStringLiteral("user");
const QString owners = QStringLiteral("owner");
const QString wrong = QStringLiteral("wrong");

TEST_F(ProtectedDocument, OpensLockedAndTellsNothingButItsNumberOfPages) {
    const auto document = protect("user", "owner");
    ASSERT_TRUE(document);
    EXPECT_TRUE(document->isEncrypted());
    EXPECT_TRUE(document->isLocked());
    EXPECT_FALSE(document->allowsCopying());
    EXPECT_FALSE(document->allowsPrinting());
    EXPECT_EQ(document->pageCount(), 2);
    EXPECT_FALSE(document->pageAtIndex(0));
    document->removePageAtIndex(0);
    document->exchangePageAtIndex(0, 1);
    EXPECT_EQ(document->pageCount(), 2);
    EXPECT_TRUE(document->documentAttributes().isEmpty());
    EXPECT_FALSE(document->writeToURL(url("out.pdf"), {}));
}

TEST_F(ProtectedDocument, HasNoPagesWhereTheyCannotBeCounted) {
    EXPECT_EQ(protect("user", "owner", {QStringLiteral("--object-streams=generate")})->pageCount(), 0);
}

TEST_F(ProtectedDocument, AWrongPasswordChangesNothing) {
    const auto document = protect("user", "owner");
    for (const QString& password : {wrong, QString(), QStringLiteral(""), QStringLiteral("User")}) {
        EXPECT_FALSE(document->unlockWithPassword(password));
        EXPECT_TRUE(document->isLocked());
    }
    EXPECT_TRUE(document->unlockWithPassword(right));
    EXPECT_FALSE(document->unlockWithPassword(wrong));
    EXPECT_FALSE(document->isLocked());
    EXPECT_EQ(marks(*document), (Strings{"A1", "A2"}));
}

TEST_F(ProtectedDocument, EitherPasswordUnlocksIt) {
    for (const QString& password : {right, owners}) {
        const auto document = protect("user", "owner");
        EXPECT_TRUE(document->unlockWithPassword(password));
        EXPECT_FALSE(document->isLocked());
        EXPECT_TRUE(document->isEncrypted());
        EXPECT_EQ(document->pageCount(), 2);
        EXPECT_EQ(document->pageAtIndex(1)->boundsForBox(PDFDisplayBox::MediaBox).width(), 612);
        EXPECT_EQ(document->documentAttributes().value(PDFDocumentTitleAttribute), QStringLiteral("Secret"));
        EXPECT_EQ(marks(*document), (Strings{"A1", "A2"}));
        EXPECT_EQ(test::documentInfo(dir.file("out.pdf"), "Title"), "Secret");
    }
}

TEST_F(ProtectedDocument, OfAllOpeningsOnlyTheOneThatKnowsThePasswordIsUnlocked) {
    const auto open = protect("user", "owner");
    EXPECT_TRUE(open->unlockWithPassword(right));
    const auto other = again();
    EXPECT_TRUE(other->isLocked());
    EXPECT_FALSE(other->pageAtIndex(0));
    EXPECT_FALSE(other->unlockWithPassword(wrong));
    EXPECT_TRUE(other->isLocked());
    EXPECT_FALSE(other->writeToURL(url("out.pdf"), {}));
}

TEST_F(ProtectedDocument, TheUserMayDoWhatTheFileSays) {
    const auto permissions = [&](const QStringList& options, const QString& password) {
        const auto document = protect("user", "owner", options);
        EXPECT_TRUE(document->unlockWithPassword(password));
        return std::pair(document->allowsCopying(), document->allowsPrinting());
    };
    const QStringList noCopying{QStringLiteral("--extract=n")};
    const QStringList noPrinting{QStringLiteral("--print=none")};
    EXPECT_EQ(permissions({}, right), std::pair(true, true));
    EXPECT_EQ(permissions(noCopying, right), std::pair(false, true));
    EXPECT_EQ(permissions(noPrinting, right), std::pair(true, false));
    EXPECT_EQ(permissions(noCopying + noPrinting, right), std::pair(false, false));
    EXPECT_EQ(permissions(noCopying + noPrinting, owners), std::pair(true, true));
}

TEST_F(ProtectedDocument, TheOwnersPasswordGivesMoreAfterTheUsers) {
    const auto document = protect("user", "owner", {QStringLiteral("--extract=n")});
    EXPECT_TRUE(document->unlockWithPassword(right));
    EXPECT_FALSE(document->allowsCopying());
    EXPECT_TRUE(document->unlockWithPassword(owners));
    EXPECT_TRUE(document->allowsCopying());
    EXPECT_TRUE(document->unlockWithPassword(right));
    EXPECT_TRUE(document->allowsCopying()) << "what was given is not taken back";
}

TEST_F(ProtectedDocument, WithoutAUsersPasswordItIsOpenButEncrypted) {
    const auto document = protect("", "owner", {QStringLiteral("--extract=n")});
    EXPECT_TRUE(document->isEncrypted());
    EXPECT_FALSE(document->isLocked());
    EXPECT_FALSE(document->allowsCopying());
    EXPECT_TRUE(document->allowsPrinting());
    EXPECT_EQ(document->pageCount(), 2);
    EXPECT_FALSE(document->unlockWithPassword(wrong));
    EXPECT_FALSE(document->unlockWithPassword(QString()));
    EXPECT_TRUE(document->unlockWithPassword(QStringLiteral("")));
    EXPECT_FALSE(document->allowsCopying());
    EXPECT_TRUE(document->unlockWithPassword(owners));
    EXPECT_TRUE(document->allowsCopying());
    EXPECT_EQ(marks(*document), (Strings{"A1", "A2"}));
}

TEST_F(ProtectedDocument, AnOpenFileTakesAnyPassword) {
    dir.write("open.pdf", PdfFixture("A", 1).bytes());
    const auto document = PDFDocument::initWithURL(url("open.pdf"));
    EXPECT_TRUE(document->unlockWithPassword(wrong));
    EXPECT_TRUE(document->allowsCopying() && document->allowsPrinting());
    EXPECT_TRUE(PDFDocument().unlockWithPassword(wrong));
}

TEST_F(ProtectedDocument, ItsPagesGoIntoAnother) {
    const auto document = protect("user", "owner");
    EXPECT_TRUE(document->unlockWithPassword(right));
    dir.write("open.pdf", PdfFixture("B", 1).bytes());
    const auto other = PDFDocument::initWithURL(url("open.pdf"));
    other->insertPage(document->pageAtIndex(1), 0);
    EXPECT_EQ(marks(*other), (Strings{"A2", "B1"}));
}

TEST_F(ProtectedDocument, OpeningItAgainAndAgainDerivesNoKeyAnew) {
    const auto held = protect("user", "owner");
    EXPECT_TRUE(held->unlockWithPassword(right));
    const auto begin = std::chrono::steady_clock::now();
    constexpr int rounds = 5'000;  // at two milliseconds each, deriving alone takes ten seconds and more
    for (int i = 0; i < rounds; ++i) {
        const auto document = again();
        ASSERT_TRUE(document->unlockWithPassword(right));
        ASSERT_TRUE(document->pageAtIndex(0));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(ProtectedDocument, TheWriteOptionsProtectTheOutput) {
    dir.write("open.pdf", PdfFixture("B", 1).bytes());
    const auto document = PDFDocument::initWithURL(url("open.pdf"));
    QVariantMap options{{kWriteWithoutSync, true},
                        {kCGPDFContextUserPassword, QStringLiteral("пароль")},
                        {kCGPDFContextOwnerPassword, QStringLiteral("o")},
                        {kCGPDFContextTitle, QStringLiteral("T")}};
    EXPECT_EQ(marks(*document, options, QStringLiteral("пароль")), Strings{"B1"});
    EXPECT_FALSE(test::opensInQpdf(dir.file("out.pdf"), QStringLiteral("")));
    const auto allows = [&](const char* what) {
        const std::string shown = test::encryptionOf(dir.file("out.pdf"), QStringLiteral("пароль"));
        return shown.find(std::string(what) + ": allowed") != std::string::npos;
    };
    EXPECT_TRUE(allows("extract for any purpose") && allows("print high resolution"));
    options[kCGPDFContextAllowsCopying] = false;
    EXPECT_EQ(marks(*document, options, QStringLiteral("пароль")), Strings{"B1"});
    EXPECT_TRUE(!allows("extract for any purpose") && allows("print high resolution"));
    options[kCGPDFContextAllowsPrinting] = false;
    EXPECT_EQ(marks(*document, options, QStringLiteral("пароль")), Strings{"B1"});
    EXPECT_TRUE(!allows("extract for any purpose") && !allows("print high resolution"));
}

}  // namespace
}  // namespace quillon

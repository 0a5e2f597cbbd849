#include "platform/pdf/PDFDocument.h"
#include "tests/filelist/FileListTest.h"

using namespace quillon;

namespace {

class PasswordAttempt : public test::FileListTest {
protected:
    PasswordAttempt() {
        list_.addFiles(
            {protectedPdf("a.pdf", QStringLiteral("alpha"), QStringLiteral("owner")),
             protectedPdf("b.pdf", QStringLiteral("beta"), QStringLiteral("owner")),
             protectedPdf("c.pdf", QStringLiteral("gamma"), QStringLiteral("owner"), {QStringLiteral("--extract=n")})});
        for (int row = 0; row < 3; ++row) EXPECT_EQ(shown("Password", row), QStringLiteral("Need"));
    }

    [[nodiscard]] bool attempt(int row, const char* password) {
        return list_.decryptInRow(row, QString::fromLatin1(password));
    }
};

TEST_F(PasswordAttempt, ARightPasswordIsKeptInTheEntry) {
    EXPECT_TRUE(attempt(1, "beta"));
    EXPECT_EQ(entry(1).password(), QStringLiteral("beta"));
    EXPECT_TRUE(entry(1).isDecrypted());
    EXPECT_EQ(shown("Password", 1), QStringLiteral("None"));
    EXPECT_FALSE(list_.isAllDecrypt());
}

TEST_F(PasswordAttempt, AWrongOrAbsentOneChangesNothing) {
    EXPECT_FALSE(attempt(0, "beta"));
    EXPECT_FALSE(list_.decryptInRow(0, QString()));
    EXPECT_TRUE(entry(0).password().isNull());
    EXPECT_FALSE(entry(0).isDecrypted());
    EXPECT_TRUE(list_.isEncrypt(0));
}

TEST_F(PasswordAttempt, OneThatForbidsCopyingIsRefused) {
    EXPECT_FALSE(attempt(2, "gamma"));
    EXPECT_FALSE(entry(2).isDecrypted());
    EXPECT_TRUE(attempt(2, "owner"));
}

TEST_F(PasswordAttempt, AttemptsOnOneRowUseOneDocument) {
    EXPECT_FALSE(attempt(0, "wrong"));
    const auto document = list_.cachePDFDocument();
    EXPECT_TRUE(attempt(0, "alpha"));
    EXPECT_EQ(list_.cachePDFDocument(), document);
    EXPECT_TRUE(attempt(1, "beta"));
    EXPECT_NE(list_.cachePDFDocument(), document);
}

TEST_F(PasswordAttempt, AFileMovedIntoTheRowIsTestedAgainstTheDocumentOfThatRow) {
    EXPECT_TRUE(attempt(1, "beta"));
    list_.swapRow(0, 1);
    EXPECT_FALSE(attempt(1, "alpha"));
    EXPECT_TRUE(attempt(1, "beta"));
    EXPECT_EQ(entry(1).password(), QStringLiteral("beta"));
}

TEST_F(PasswordAttempt, RemovingTheRowForgetsItsDocument) {
    EXPECT_TRUE(attempt(0, "alpha"));
    list_.deleteRow(0);
    EXPECT_FALSE(attempt(0, "alpha"));
    EXPECT_TRUE(attempt(0, "beta"));
}

TEST_F(PasswordAttempt, RemovingAnotherRowDoesNot) {
    EXPECT_TRUE(attempt(0, "alpha"));
    list_.deleteRow(2);
    EXPECT_TRUE(attempt(0, "alpha"));
    EXPECT_FALSE(attempt(0, "wrong"));
}

TEST_F(PasswordAttempt, RemovingAllForgetsIt) {
    EXPECT_TRUE(attempt(0, "alpha"));
    list_.deleteAll();
    list_.addFiles({urlOf(dir_.file("b.pdf"))});
    EXPECT_TRUE(attempt(0, "beta"));
}

}  // namespace

// Protected inputs with and without their passwords, and protected outputs.

#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/ProtectedFile.h"

#include <chrono>

namespace quillon::test {
namespace {

class MergeProtection : public MergeTest {
protected:
    /// Adds an entry whose file qpdf has protected.
    cacheData& addProtected(const std::string& name, int count, const QString& password,
                            std::int32_t method = MergeMethodWhole, const QString& value = {},
                            const QString& user = QStringLiteral("user")) {
        const std::string plain = dir_.write(name + "-plain.pdf", PdfFixture(name, count).bytes());
        protectFile(plain, dir_.file(name + ".pdf"), user, QStringLiteral("owner"));
        cacheData& entry = addFile(urlOf(dir_.file(name + ".pdf")), method, value);
        entry.setPassword(password);
        return entry;
    }
    [[nodiscard]] bool allows(const QString& password, const char* what) const {
        return encryptionOf(target(), password).find(std::string(what) + ": allowed") != std::string::npos;
    }
};

const QString none;
const QString user = QStringLiteral("user");
const QString owner = QStringLiteral("owner");
const QString wrong = QStringLiteral("wrong");
const QString one = QStringLiteral("1");

TEST_F(MergeProtection, EntriesAreUnlockedByTheirPasswords) {
    addProtected("A", 2, user);
    addProtected("B", 1, owner);
    add("C", 1);
    EXPECT_EQ(merged(), "A1 A2 B1 C1");
    EXPECT_TRUE(job().warnings().empty());
}

TEST_F(MergeProtection, AnEntryThatIsKnownToNeedNoneIsNotUnlocked) {
    add("A", 1);
    addProtected("B", 1, user).setNeedPassword(0);
    EXPECT_EQ(merged(), "A1");
}

TEST_F(MergeProtection, AFileThatOpensWithoutAPasswordIsMerged) {
    addProtected("A", 2, none, MergeMethodWhole, {}, QStringLiteral(""));
    addProtected("B", 1, wrong, MergeMethodWhole, {}, QStringLiteral(""));
    EXPECT_EQ(merged(), "A1 A2 B1");
}

TEST_F(MergeProtection, ALockedEntryGivesNoPages) {
    add("A", 1);
    addProtected("B", 3, wrong);
    addProtected("C", 3, none);
    add("D", 1);
    EXPECT_EQ(merged(), "A1 D1");
    EXPECT_EQ(job().warnings().size(), 2U);
}

TEST_F(MergeProtection, ALockedFirstEntryIsNotCountedAsPages) {
    settings_.addPage = true;
    settings_.addBlankPage = true;
    addProtected("A", 3, wrong);
    add("B", 2);
    EXPECT_EQ(merged(), "B1 B2");
}

TEST_F(MergeProtection, ALockedEntryInAWeaveGivesNoPages) {
    add("A", 2, MergeMethodCross, one);
    addProtected("B", 2, wrong, MergeMethodCross, one);
    add("C", 2, MergeMethodCross, one);
    EXPECT_EQ(merged(), "A1 C1 A2 C2");
}

TEST_F(MergeProtection, EveryMethodUnlocksItsEntry) {
    addProtected("A", 3, user, MergeMethodPart, QStringLiteral("2-3,1"));
    addProtected("B", 2, user, MergeMethodCross, one);
    addProtected("C", 2, owner, MergeMethodCrossReverse, one);
    addProtected("D", 1, user, MergeMethodRepeat);
    EXPECT_EQ(merged(), "A2 A3 A1 B1 C2 D1 B2 C1 D1");
}

TEST_F(MergeProtection, AWeaveOfManyRoundsTriesEachPasswordOnce) {
    constexpr int rounds = 1'000;  // at two milliseconds a try, six seconds and more
    add("A", rounds, MergeMethodCross, one);
    addProtected("B", rounds, user, MergeMethodCross, one);
    addProtected("C", rounds, wrong, MergeMethodCross, one);
    add("D", rounds, MergeMethodCross, one);
    const auto begin = std::chrono::steady_clock::now();
    run();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    EXPECT_EQ(pageCount(target()), 3 * rounds);
}

TEST_F(MergeProtection, AUsersPasswordAloneForbidsNothing) {
    settings_.userEncrypt = true;
    settings_.userPassword = QStringLiteral("u");
    add("A", 2);
    run();
    EXPECT_EQ(pageMarks(target(), QStringLiteral("u")), (std::vector<std::string>{"A1", "A2"}));
    EXPECT_FALSE(opensInQpdf(target(), QStringLiteral("")));
    EXPECT_FALSE(opensInQpdf(target(), wrong));
    EXPECT_NE(encryptionOf(target(), QStringLiteral("u")).find("Supplied password is owner password"),
              std::string::npos);
    EXPECT_TRUE(allows(QStringLiteral("u"), "extract for any purpose"));
    EXPECT_TRUE(allows(QStringLiteral("u"), "print high resolution"));
}

TEST_F(MergeProtection, AnOwnersPasswordForbidsWhatIsNotAllowed) {
    settings_.ownerEncrypt = true;
    settings_.ownerPassword = QStringLiteral("contraseña");
    settings_.copyAllowed = true;
    add("A", 1);
    run();
    EXPECT_EQ(pageMarks(target()), std::vector<std::string>{"A1"});
    EXPECT_TRUE(opensInQpdf(target(), QStringLiteral("contraseña")));
    EXPECT_FALSE(opensInQpdf(target(), wrong));
    EXPECT_TRUE(allows(QStringLiteral(""), "extract for any purpose"));
    EXPECT_FALSE(allows(QStringLiteral(""), "print high resolution"));
    EXPECT_FALSE(allows(QStringLiteral(""), "print low resolution"));
}

TEST_F(MergeProtection, ProtectedInputsComeOutWithoutProtectionOrWithTheNewOne) {
    settings_.userEncrypt = true;
    settings_.userPassword = QStringLiteral("new");
    settings_.ownerEncrypt = true;
    settings_.ownerPassword = QStringLiteral("boss");
    addProtected("A", 1, user);
    addProtected("B", 1, user);
    run();
    for (const QString& password : {QStringLiteral("new"), QStringLiteral("boss")}) {
        EXPECT_TRUE(opensInQpdf(target(), password));
    }
    for (const QString& password : {user, owner}) EXPECT_FALSE(opensInQpdf(target(), password));
    EXPECT_EQ(pageMarks(target(), QStringLiteral("new")), (std::vector<std::string>{"A1", "B1"}));
}

}  // namespace
}  // namespace quillon::test

#include "platform/store/UserDefaults.h"
#include "tests/support/Process.h"
#include "tests/support/TempDir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace quillon;

namespace {

class Defaults : public testing::Test {
protected:
    test::TempDir folder_;
    std::string name_ = folder_.file("Quillon/Quillon.conf");
    QString path_ = QString::fromStdString(name_);
    QString key_ = QStringLiteral("QUILLON_KEY");

    static mode_t rights(const std::string& path) {
        struct stat status = {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
    }

    void write(const QByteArray& bytes) {
        static_cast<void>(UserDefaults(path_));
        QFile file(path_);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    }

    QByteArray bytes(const QString& ending = {}) {
        QFile file(path_ + ending);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString textAfterReopening(const QString& text) {
        UserDefaults(path_).setString(key_, text);
        return UserDefaults(path_).stringForKey(key_);
    }
};

TEST_F(Defaults, AMissingKeyReadsAsNothing) {
    const UserDefaults defaults(path_);
    EXPECT_FALSE(defaults.contains(key_));
    EXPECT_EQ(defaults.integerForKey(key_), 0);
    EXPECT_FALSE(defaults.boolForKey(key_));
    EXPECT_TRUE(defaults.stringForKey(key_).isNull());
    EXPECT_TRUE(defaults.dataForKey(key_).isNull());
    EXPECT_TRUE(defaults.URLForKey(key_).isEmpty());
}

TEST_F(Defaults, ValuesOfEachKindComeBackAfterReopening) {
    {
        UserDefaults defaults(path_);
        defaults.setInteger(QStringLiteral("I"), -3);
        defaults.setString(QStringLiteral("S"), QStringLiteral("a=b; \"c\", d\\e #f"));
        defaults.setData(QStringLiteral("D"), QByteArray("\0\xff)\"\n", 5));
        defaults.setString(QStringLiteral("U"), QStringLiteral("/tmp/100% ä?#.pdf"));
    }
    const UserDefaults defaults(path_);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("I")), -3);
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("I")));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("S")), QStringLiteral("a=b; \"c\", d\\e #f"));
    EXPECT_EQ(defaults.dataForKey(QStringLiteral("D")), QByteArray("\0\xff)\"\n", 5));
    EXPECT_EQ(defaults.URLForKey(QStringLiteral("U")).toLocalFile(), QStringLiteral("/tmp/100% ä?#.pdf"));
}

TEST_F(Defaults, AnEmptyTextIsNotAMissingOne) {
    const QString text = textAfterReopening(QStringLiteral(""));
    EXPECT_TRUE(text.isEmpty());
    EXPECT_FALSE(text.isNull());
}

TEST_F(Defaults, UnusualTextsComeBackAsTheyWere) {
    for (const QString& text :
         {QStringLiteral("two\nlines\r\n\tand a tab"), QString(QChar::Null),
          QStringLiteral("a\0001b").prepend(QChar::Null), QStringLiteral("@Variant(\\0)"),
          QStringLiteral("@ByteArray(x)"), QStringLiteral("  blanks  "), QStringLiteral("%Original_Title%"),
          QStringLiteral("نص 文字 \U0001F600"), QString(100'000, u'x')}) {
        EXPECT_EQ(textAfterReopening(text), text);
    }
}

TEST_F(Defaults, HalfACharacterDoesNotHurtWhatStandsBesideIt) {
    const QString text = textAfterReopening(QStringLiteral("a") + QChar(0xD83D) + QStringLiteral("b"));
    EXPECT_TRUE(text.startsWith(u'a'));
    EXPECT_TRUE(text.endsWith(u'b'));
}

TEST_F(Defaults, ValuesOfAnotherKindReadAsNothing) {
    write("QUILLON_KEY=@ByteArray(12)\nLIST=1, 2\nRECT=@Rect(1 2 3 4)\nNONE=@Invalid()\nTEXT=12 pages\n");
    const UserDefaults defaults(path_);
    EXPECT_EQ(defaults.integerForKey(key_), 0);
    EXPECT_TRUE(defaults.stringForKey(key_).isNull());
    for (const char* key : {"LIST", "RECT", "NONE"}) {
        EXPECT_TRUE(defaults.stringForKey(QString::fromLatin1(key)).isNull()) << key;
        EXPECT_EQ(defaults.integerForKey(QString::fromLatin1(key)), 0) << key;
    }
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("TEXT")), 0);
    EXPECT_TRUE(defaults.dataForKey(QStringLiteral("TEXT")).isNull());
}

TEST_F(Defaults, IntegersBeyondTheRangeBecomeItsEnds) {
    write("A=99999999999\nB=-99999999999\nC=999999999999999999999999999999\n");
    const UserDefaults defaults(path_);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("A")), 2147483647);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("B")), -2147483647 - 1);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("C")), 0);
}

TEST_F(Defaults, OnlyTheOwnerMayReadTheFileAndItsFolder) {
    UserDefaults defaults(path_);
    EXPECT_EQ(rights(name_), 0600U);
    EXPECT_EQ(rights(folder_.file("Quillon")), 0700U);
    defaults.setInteger(key_, 1);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(rights(name_), 0600U);
}

TEST_F(Defaults, AFileThatOthersMayReadIsClosedToThem) {
    write("QUILLON_KEY=5\n");
    ::chmod(name_.c_str(), 0644);
    UserDefaults defaults(path_);
    EXPECT_EQ(rights(name_), 0600U);
    EXPECT_EQ(defaults.integerForKey(key_), 5);
}

TEST_F(Defaults, AFileThatWasRemovedMeanwhileIsMadeAgainForItsOwnerOnly) {
    UserDefaults defaults(path_);
    ASSERT_TRUE(QFile::remove(path_));
    defaults.setInteger(key_, 1);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(rights(name_), 0600U);
    EXPECT_EQ(UserDefaults(path_).integerForKey(key_), 1);
}

TEST_F(Defaults, ADamagedFileReadsAsEmptyAndIsKeptAside) {
    const QByteArray zeros(4096, '\0');
    const QByteArray noise = QByteArrayLiteral("\x89PNG\r\n\x1a\n\xff\xd8 \xff\xfe").repeated(20);
    const QByteArray variant = "QUILLON_KEY=@Variant(\\0\\0\\0\\t\\xff\\xff\\xff\\xf0)\n";
    const QByteArray list = "QUILLON_KEY=\"a, b\", \"@Variant(\\0\\0\\0\\t\\xff\\xff\\xff\\xf0)\"\n";
    for (const QByteArray& damaged : {QByteArray("QUILLON_KEY=1\nQUILLON_TI"), zeros, noise, variant, list}) {
        write(damaged);
        ::chmod(name_.c_str(), 0600);
        UserDefaults defaults(path_);
        EXPECT_FALSE(defaults.contains(key_));
        EXPECT_EQ(bytes(QStringLiteral(".damaged")), damaged);
        EXPECT_EQ(rights(name_ + ".damaged"), 0600U);
        defaults.setInteger(key_, 2);
        EXPECT_TRUE(defaults.synchronize());
        EXPECT_EQ(UserDefaults(path_).integerForKey(key_), 2);
        ASSERT_TRUE(QFile::remove(path_ + QStringLiteral(".damaged")));
        ASSERT_TRUE(QFile::remove(path_));
    }
}

TEST_F(Defaults, AnotherDamagedFileTakesAnotherName) {
    write("one");
    static_cast<void>(UserDefaults(path_));
    write("two");
    static_cast<void>(UserDefaults(path_));
    EXPECT_EQ(bytes(QStringLiteral(".damaged")), "one");
    EXPECT_EQ(bytes(QStringLiteral(".damaged-2")), "two");
}

TEST_F(Defaults, ATextThatOnlyLooksLikeAnObjectIsNoDamage) {
    for (const char* text : {"@Variant(1)", "x, @Variant(1)", "see @DateTime(2)", "\", @Variant(1)"}) {
        EXPECT_EQ(textAfterReopening(QString::fromLatin1(text)), QString::fromLatin1(text));
    }
    EXPECT_FALSE(QFileInfo::exists(path_ + QStringLiteral(".damaged")));
}

TEST_F(Defaults, UnknownKeysAndSectionsStayInTheFile) {
    write("; a remark\nOTHER=1\n[Later]\nQUILLON_KEY=2\n");
    {
        UserDefaults defaults(path_);
        EXPECT_FALSE(defaults.contains(key_));
        defaults.setInteger(key_, 3);
    }
    const UserDefaults defaults(path_);
    EXPECT_EQ(defaults.integerForKey(key_), 3);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("OTHER")), 1);
    EXPECT_TRUE(bytes().contains("[Later]"));
}

TEST_F(Defaults, WhatWasSynchronizedOutlivesAKill) {
    const int ended = test::inChildProcess([this] {
        UserDefaults defaults(path_);
        defaults.setInteger(key_, 42);
        if (!defaults.synchronize()) return 1;
        ::kill(::getpid(), SIGKILL);
        return 0;
    });
    EXPECT_EQ(ended, 100 + SIGKILL);
    EXPECT_EQ(UserDefaults(path_).integerForKey(key_), 42);
}

TEST_F(Defaults, AFolderThatCannotBeWrittenLosesNothingButTheChange) {
    write("QUILLON_KEY=5\n");
    ::chmod(folder_.file("").c_str(), 0755);
    ::chmod(folder_.file("Quillon").c_str(), 0555);
    ::chmod(name_.c_str(), 0444);
    const int ended = test::asPlainUser([this] {
        UserDefaults defaults(path_);
        if (defaults.integerForKey(key_) != 5) return 1;
        defaults.setInteger(key_, 6);
        if (defaults.synchronize()) return 2;
        return defaults.integerForKey(key_) == 6 ? 0 : 3;
    });
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(bytes(), "QUILLON_KEY=5\n");
    ::chmod(folder_.file("Quillon").c_str(), 0755);
}

TEST_F(Defaults, AFolderInThePlaceOfTheFileIsLeftAlone) {
    ASSERT_TRUE(QDir().mkpath(path_));
    UserDefaults defaults(path_);
    defaults.setInteger(key_, 1);
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.integerForKey(key_), 1);
    EXPECT_TRUE(QFileInfo(path_).isDir());
}

/// Two programs write a long value and a number each, again and again; whoever reads meanwhile finds whole values.
TEST_F(Defaults, TwoProgramsWritingAtOnceNeverLeaveHalfAFile) {
    static_cast<void>(UserDefaults(path_));
    const auto writer = [this](const char* name, QChar letter) {
        return [this, name, letter] {
            for (int round = 1; round <= 25; ++round) {
                UserDefaults defaults(path_);
                defaults.setString(QStringLiteral("TEXT"), QString(20'000, letter));
                defaults.setInteger(QString::fromLatin1(name), round);
                if (!defaults.synchronize()) return 1;
            }
            return 0;
        };
    };
    test::ChildProcess one(writer("ONE", u'1'));
    test::ChildProcess two(writer("TWO", u'2'));
    int halves = 0;
    do {
        const QByteArray text = bytes();
        if (text.contains("TEXT=") && text.count('1') < 20'000 && text.count('2') < 20'000) ++halves;
        if (!text.isEmpty() && !text.endsWith('\n')) ++halves;
    } while (one.isRunning() || two.isRunning());
    EXPECT_EQ(one.exitCode(), 0);
    EXPECT_EQ(two.exitCode(), 0);
    EXPECT_EQ(halves, 0);
    const UserDefaults defaults(path_);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("ONE")), 25);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("TWO")), 25);
}

TEST_F(Defaults, TheProgramsOwnLieInTheUsersFolderForSettings) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    EXPECT_EQ(UserDefaults::standardPath(), folder + QStringLiteral("/Quillon/Quillon.conf"));
}

}  // namespace

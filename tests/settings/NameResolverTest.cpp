#include "settings/NameResolver.h"

#include <gtest/gtest.h>

#include <thread>

namespace quillon {
namespace {

/// One of the four fields that have a macro.
struct Field {
    const char* name;
    const char* macro;
    void (NameResolver::*set)(const QString&);
    QString (NameResolver::*get)() const;
    QString (NameResolver::*resolve)(const QString&);
};

class NameResolverField : public testing::TestWithParam<Field> {
protected:
    void set(const char* text) { (resolver.*GetParam().set)(QString::fromUtf8(text)); }
    QString get() const { return (resolver.*GetParam().get)(); }
    QString resolve(const QString& text) { return (resolver.*GetParam().resolve)(text); }
    static QString macro() { return QString::fromLatin1(GetParam().macro); }

    NameResolver resolver;
};

INSTANTIATE_TEST_SUITE_P(All, NameResolverField,
                         testing::Values(Field{"Title", "%Original_Title%", &NameResolver::registerTitle,
                                               &NameResolver::title, &NameResolver::resolveTitle},
                                         Field{"Author", "%Original_Author%", &NameResolver::registerAuthor,
                                               &NameResolver::author, &NameResolver::resolveAuthor},
                                         Field{"Subject", "%Original_Subject%", &NameResolver::registerSubject,
                                               &NameResolver::subject, &NameResolver::resolveSubject},
                                         Field{"Keywords", "%Original_Keywords%", &NameResolver::setKeywords,
                                               &NameResolver::keywords, &NameResolver::resolveKeywords}),
                         [](const auto& field) { return std::string(field.param.name); });

TEST_P(NameResolverField, HasNoValueAtFirst) {
    EXPECT_TRUE(get().isNull());
}

TEST_P(NameResolverField, TheLastValueHolds) {
    set("first");
    set("last");
    EXPECT_EQ(get(), QStringLiteral("last"));
    (resolver.*GetParam().set)(QString());
    EXPECT_TRUE(get().isNull());
}

TEST_P(NameResolverField, TheMacroAloneGivesTheValue) {
    set("Report");
    EXPECT_EQ(resolve(macro()), QStringLiteral("Report"));
}

TEST_P(NameResolverField, TheMacroWithoutAValueGivesTheEmptyText) {
    const QString resolved = resolve(macro());
    EXPECT_TRUE(resolved.isEmpty());
    EXPECT_FALSE(resolved.isNull());
}

TEST_P(NameResolverField, EveryMacroIsReplacedAndOtherWordsAreKept) {
    set("Report");
    EXPECT_EQ(resolve(QStringLiteral("The ") + macro() + QStringLiteral(", again ") + macro() + QStringLiteral("!")),
              QStringLiteral("The Report, again Report!"));
    EXPECT_EQ(resolve(macro() + macro()), QStringLiteral("ReportReport"));
}

TEST_P(NameResolverField, AnEmptyTextGivesTheValue) {
    set("Ann");
    EXPECT_EQ(resolve(QStringLiteral("")), QStringLiteral("Ann"));
    EXPECT_EQ(resolve(QString()), QStringLiteral("Ann"));
}

TEST_P(NameResolverField, AnEmptyTextWithoutAValueGivesNone) {
    EXPECT_TRUE(resolve(QStringLiteral("")).isNull());
    EXPECT_TRUE(get().isNull()) << "asking with an empty text records nothing";
}

TEST_P(NameResolverField, AMissingValueIsRecordedAsEmptyOnceATextAsksForIt) {
    EXPECT_EQ(resolve(QStringLiteral("fixed")), QStringLiteral("fixed"));
    EXPECT_FALSE(get().isNull());
    EXPECT_TRUE(get().isEmpty());
    const QString then = resolve(QString());
    EXPECT_FALSE(then.isNull());
    EXPECT_TRUE(then.isEmpty());
}

TEST_P(NameResolverField, CaseMatters) {
    set("Report");
    EXPECT_EQ(resolve(macro().toLower()), macro().toLower());
}

TEST_P(NameResolverField, OtherFieldsMacrosStayAsTheyAre) {
    resolver.registerTitle(QStringLiteral("t"));
    resolver.registerAuthor(QStringLiteral("a"));
    resolver.registerSubject(QStringLiteral("s"));
    resolver.setKeywords(QStringLiteral("k"));
    set("own");
    for (const char* other :
         {"%Original_Title%", "%Original_Author%", "%Original_Subject%", "%Original_Keywords%", "%Original_Creator%"}) {
        const QString text = QString::fromLatin1(other);
        if (text == macro()) continue;
        EXPECT_EQ(resolve(text), text);
    }
}

TEST_P(NameResolverField, AMacroInTheValueIsNotReplacedAgain) {
    set("%Original_%Original_Title%Title%");
    EXPECT_EQ(resolve(macro()), QStringLiteral("%Original_%Original_Title%Title%"));
}

TEST(NameResolver, KeywordsAreJoinedWithBlanks) {
    NameResolver resolver;
    resolver.registerKeywords(QStringList{QStringLiteral("pdf"), QStringLiteral("merge"), QStringLiteral("tools")});
    EXPECT_EQ(resolver.keywords(), QStringLiteral("pdf merge tools"));
}

TEST(NameResolver, OneKeywordIsItselfToTheLetter) {
    NameResolver resolver;
    resolver.registerKeywords(QStringList{QStringLiteral(" one, two;  three ")});
    EXPECT_EQ(resolver.keywords(), QStringLiteral(" one, two;  three "));
    EXPECT_EQ(resolver.resolveKeywords(QStringLiteral("%Original_Keywords%")), QStringLiteral(" one, two;  three "));
}

TEST(NameResolver, KeywordsAreNeitherTrimmedNorMadeUnique) {
    NameResolver resolver;
    resolver.registerKeywords(QStringList{QStringLiteral("a "), QStringLiteral("a "), QString()});
    EXPECT_EQ(resolver.keywords(), QStringLiteral("a  a  "));
}

TEST(NameResolver, AnEmptyKeywordIsAValue) {
    NameResolver resolver;
    resolver.registerKeywords(QStringList{QStringLiteral("")});
    EXPECT_FALSE(resolver.keywords().isNull());
    EXPECT_TRUE(resolver.keywords().isEmpty());
}

TEST(NameResolver, NoListAndAnEmptyOneRecordNoKeywords) {
    NameResolver resolver;
    resolver.setKeywords(QStringLiteral("earlier"));
    resolver.registerKeywords(std::nullopt);
    EXPECT_TRUE(resolver.keywords().isNull());
    resolver.setKeywords(QStringLiteral("earlier"));
    resolver.registerKeywords(QStringList());
    EXPECT_TRUE(resolver.keywords().isNull());
}

TEST(NameResolver, TheCreatorIsAlwaysThisProgram) {
    NameResolver resolver;
    EXPECT_TRUE(resolver.creator().isNull());
    resolver.registerCreator(QStringLiteral("Writer"));
    EXPECT_EQ(resolver.creator(), QStringLiteral("Writer"));
    EXPECT_EQ(resolver.resolveCreator(QString()), QStringLiteral("Quillon"));
    EXPECT_EQ(resolver.resolveCreator(QStringLiteral("%Original_Creator%")), QStringLiteral("Quillon"));
}

TEST(NameResolver, IsReadOnOneThreadWhileAnotherWrites) {
    NameResolver resolver;
    std::thread writer([&resolver] {
        for (int i = 0; i < 1000; ++i) resolver.registerTitle(QStringLiteral("title %1").arg(i));
    });
    for (int i = 0; i < 1000; ++i) {
        const QString title = resolver.title();
        EXPECT_TRUE(title.isNull() || title.startsWith(QStringLiteral("title ")));
    }
    writer.join();
    EXPECT_EQ(resolver.title(), QStringLiteral("title 999"));
}

}  // namespace
}  // namespace quillon

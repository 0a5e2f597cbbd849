#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/ProtectedFile.h"
#include "tests/support/RawPdf.h"

#include <QJsonArray>

#include <filesystem>
#include <tuple>

namespace quillon::pdf {
namespace {

using test::JudgedPdf;
using test::PdfFixture;
using test::RawPdf;

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

/// Two pages with strings and streams in every place that protection knows of.
std::string everyPlace() {
    RawPdf pdf("%PDF-1.7\n%\xe2\xe3\xcf\xd3\n");
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Metadata 20 0 R/Extra 21 0 R/Words 22 0 R>>");
    pdf.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 12 0 R]>>");
    pdf.page(10, "A1",
             "/Parent 2 0 R/MediaBox[0 0 612 792]/Annots[<</Type/Annot/Subtype/Text/Rect[0 0 9 9]/Contents(a note)>>]");
    pdf.page(12, "A2");
    pdf.stream(20, "/Type/Metadata/Subtype/XML", "<metadata/>");
    pdf.stream(21, "/Note(in a dictionary)", std::string(70'000, 'x') + "the end");
    pdf.object(22, "[(a \\(b\\)) <0001FF> () [(deep)]]");
    pdf.object(30, "<</Title(Secret title)>>");
    return pdf.table("/Root 1 0 R/Info 30 0 R/ID[(0123456789abcdef)(0123456789abcdef)]").bytes();
}

struct Passwords {
    const char* user;
    const char* owner;
};

/// What is expected of a merged copy of `everyPlace`.
void expectEverything(const std::string& path) {
    EXPECT_EQ(test::pageMarks(path), (Strings{"A1", "A2"}));
    EXPECT_EQ(test::documentInfo(path, "Title"), "Secret title");
    const JudgedPdf pdf(path);
    EXPECT_FALSE(pdf.trailer().contains(QStringLiteral("/Encrypt")));
    EXPECT_EQ(pdf.annotations(0)[0].value(QStringLiteral("/Contents")), QStringLiteral("u:a note"));
    const QJsonValue extra = pdf.catalog().value(QStringLiteral("/Extra"));
    EXPECT_EQ(pdf.dictionary(extra).value(QStringLiteral("/Note")), QStringLiteral("u:in a dictionary"));
    EXPECT_TRUE(pdf.dictionary(pdf.catalog().value(QStringLiteral("/Metadata"))).contains(QStringLiteral("/Subtype")));
    const QJsonArray words = pdf.resolve(pdf.catalog().value(QStringLiteral("/Words"))).toArray();
    EXPECT_EQ(words, (QJsonArray{QStringLiteral("u:a (b)"), QStringLiteral("b:0001ff"), QStringLiteral("u:"),
                                 QJsonArray{QStringLiteral("u:deep")}}));
}

using Case = std::tuple<const char*, Passwords, const char*, bool>;

class ProtectedSource : public EngineTest {
protected:
    /// `bytes` protected by qpdf.
    std::string protect(const std::string& bytes, const QString& user, const QString& owner,
                        const QStringList& options) const {
        const std::string plain = dir.write("plain.pdf", bytes);
        const std::string path = dir.file("protected.pdf");
        test::protectFile(plain, path, user, owner, options);
        return path;
    }
    std::string protect(const std::string& bytes, const QString& user = text("user"),
                        const QString& owner = text("owner")) const {
        return protect(bytes, user, owner, {QStringLiteral("256")});
    }

    static Strings pagesAsPictures(const std::string& path) {
        Strings pictures;
        for (const char* page : {"1", "2"}) {
            const auto drawn =
                test::runProgram(QStringLiteral("pdftoppm"),
                                 {QStringLiteral("-r"), QStringLiteral("30"), QStringLiteral("-f"), text(page),
                                  QStringLiteral("-l"), text(page), QString::fromStdString(path)});
            pictures.push_back(drawn.output);
        }
        return pictures;
    }
};

class ProtectionMatrix : public ProtectedSource, public testing::WithParamInterface<Case> {};

const auto everyPassword =
    testing::Values(Passwords{"user", ""}, Passwords{"", "owner"}, Passwords{"user", "owner"}, Passwords{"", ""});
const auto withAndWithoutObjectStreams = testing::Values("disable", "generate");
// Keys of 40 bits do not know clear metadata.
INSTANTIATE_TEST_SUITE_P(Oldest, ProtectionMatrix,
                         testing::Combine(testing::Values("40"), everyPassword, withAndWithoutObjectStreams,
                                          testing::Values(false)));
INSTANTIATE_TEST_SUITE_P(Newer, ProtectionMatrix,
                         testing::Combine(testing::Values("128 --use-aes=n", "128 --use-aes=y", "256 --force-R5",
                                                          "256"),
                                          everyPassword, withAndWithoutObjectStreams, testing::Bool()));

TEST_P(ProtectionMatrix, RightPasswordsOpenAndWrongOnesDoNot) {
    const auto& [cipher, passwords, objectStreams, clearMetadata] = GetParam();
    const std::string_view key(cipher);
    QStringList options = text(cipher).split(QLatin1Char(' '));
    if (clearMetadata) options << QStringLiteral("--cleartext-metadata");
    options << QStringLiteral("--object-streams=") + text(objectStreams);
    const std::string path = protect(everyPlace(), text(passwords.user), text(passwords.owner), options);

    // Up to revision 4 the user's password stands in for a missing owner's; later, an empty one opens everything.
    const bool isModern = key.starts_with("256");
    const std::string user = passwords.user;
    const std::string owner = !isModern && *passwords.owner == '\0' ? user : passwords.owner;
    Strings pictures;
    for (const std::string password : {"user", "owner", "", "wrong"}) {
        const auto source = Source::open(path);
        ASSERT_TRUE(source);
        EXPECT_TRUE(source->isEncrypted());
        const Access expected = password == owner ? Access::Owner : password == user ? Access::User : Access::None;
        EXPECT_EQ(source->unlock(password), expected) << password;
        const bool readable = expected != Access::None || user.empty() || owner.empty();
        const WriteResult result = writeDocument(planOf({source}), dir.file("out.pdf"));
        EXPECT_EQ(result.written, readable) << password;
        if (!readable) continue;
        EXPECT_EQ(result.warnings, Strings{});
        EXPECT_EQ(test::qpdfProblems(dir.file("out.pdf")), "");
        expectEverything(dir.file("out.pdf"));
        if (pictures.empty()) pictures = pagesAsPictures(dir.file("out.pdf"));
        std::filesystem::remove(dir.file("out.pdf"));
    }
    static const Strings expected = pagesAsPictures(dir.file("plain.pdf"));
    EXPECT_EQ(pictures, expected);
}

TEST_F(ProtectedSource, ALockedFileTellsItsPagesIfItsTreeIsInClearText) {
    const auto lockedPages = [&](const char* objectStreams) {
        const auto source =
            Source::open(protect(PdfFixture("A", 3).bytes(), text("u"), text("o"),
                                 {QStringLiteral("256"), text("--object-streams=") + text(objectStreams)}));
        EXPECT_EQ(source->warnings(), Strings{});
        EXPECT_EQ(source->unlock("wrong"), Access::None);
        const std::size_t locked = source->pageCount();
        EXPECT_EQ(source->unlock("u"), Access::User);
        EXPECT_EQ(source->pageCount(), 3U);
        EXPECT_EQ(source->warnings(), Strings{});
        return locked;
    };
    EXPECT_EQ(lockedPages("disable"), 3U);
    EXPECT_EQ(lockedPages("generate"), 0U);
}

TEST_F(ProtectedSource, PagesOfALockedFileAreLeftOut) {
    const auto locked = Source::open(protect(PdfFixture("A", 2).bytes()));
    const auto open = this->open(PdfFixture("B", 1).bytes());
    DocumentPlan plan = planOf({open, locked});
    EXPECT_EQ(plan.pages.size(), 3U);
    const WriteResult result = writeDocument(plan, dir.file("out.pdf"));
    ASSERT_TRUE(result.written);
    EXPECT_EQ(result.pages, 1U);
    ASSERT_EQ(result.warnings.size(), 1U);
    EXPECT_NE(result.warnings[0].find("is protected"), std::string::npos);
    EXPECT_EQ(test::pageMarks(dir.file("out.pdf")), Strings{"B1"});
}

TEST_F(ProtectedSource, PasswordsBeyondAsciiOpen) {
    const auto opens = [&](const char* password, const char* key) {
        const auto path = protect(PdfFixture("A", 1).bytes(), text(password), text("owner"),
                                  {text(key), QStringLiteral("--password-mode=unicode")});
        return Source::open(path)->unlock(password) == Access::User;
    };
    for (const char* password : {"contraseña", "€uro"}) EXPECT_TRUE(opens(password, "128")) << password;
    // The last two are not normalised, and qpdf does not do that.
    for (const char* password : {"contraseña", "€uro", "пароль", "I\u00ADX", "\u2168"}) {
        EXPECT_TRUE(opens(password, "256")) << password;
    }
}

TEST_F(ProtectedSource, OfALongPasswordOnlyTheBeginningCounts) {
    const std::string longPassword(40, 'p');
    std::string path = protect(PdfFixture("A", 1).bytes(), QString::fromStdString(longPassword), text("o"),
                               {QStringLiteral("128"), QStringLiteral("--use-aes=y")});
    EXPECT_EQ(Source::open(path)->unlock(longPassword.substr(0, 32)), Access::User);
    EXPECT_EQ(Source::open(path)->unlock(longPassword.substr(0, 31)), Access::None);
    const std::string longest(127, 'p');
    path = protect(PdfFixture("A", 1).bytes(), QString::fromStdString(longest), text("o"));
    EXPECT_EQ(Source::open(path)->unlock(longest), Access::User);
    EXPECT_EQ(Source::open(path)->unlock(longest + "more"), Access::User);
    EXPECT_EQ(Source::open(path)->unlock(longest.substr(1)), Access::None);
}

TEST_F(ProtectedSource, LargeStreamsAreDecipheredPieceByPieceAndEqualOnesFound) {
    std::string noise(6'000'001, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<char>(i * i % 251);
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Large 20 0 R>>").object(2, "<</Type/Pages/Count 1/Kids[10 0 R]>>");
    pdf.page(10, "A1", "/Parent 2 0 R/MediaBox[0 0 612 792]/Large 20 0 R").stream(20, "", noise);
    const std::string bytes = pdf.table().bytes();
    for (const char* cipher : {"128 --use-aes=n", "128 --use-aes=y", "256"}) {
        const std::string path = protect(bytes, {}, text("o"), text(cipher).split(QLatin1Char(' ')));
        std::filesystem::copy_file(path, dir.file("twin.pdf"), std::filesystem::copy_options::overwrite_existing);
        const std::string out = write(planOf({Source::open(path), Source::open(dir.file("twin.pdf"))}));
        const JudgedPdf judged(out);
        const QJsonValue large = judged.catalog().value(QStringLiteral("/Large"));
        for (qsizetype page = 0; page < 2; ++page) {
            EXPECT_EQ(judged.dictionary(judged.pages()[page]).value(QStringLiteral("/Large")), large) << "one for both";
        }
        const auto shown =
            test::runProgram(QStringLiteral("qpdf"),
                             {QStringLiteral("--show-object=") + large.toString().section(QLatin1Char(' '), 0, 0),
                              QStringLiteral("--filtered-stream-data"), QString::fromStdString(out)});
        EXPECT_TRUE(shown.output == noise) << cipher;
    }
}

TEST_F(ProtectedSource, AStreamOfAProtectedAndOneOfAnOpenFileAreWrittenOnce) {
    const std::string bytes = everyPlace();
    const std::string path = protect(bytes, {}, text("o"), {QStringLiteral("256")});
    const auto single = std::filesystem::file_size(write(planOf({open(bytes)}), "single.pdf"));
    // qpdf compresses what it writes, so the open file has to come from it too.
    const auto plain = test::runProgram(QStringLiteral("qpdf"), {QString::fromStdString(dir.file("plain.pdf")),
                                                                 QString::fromStdString(dir.file("open.pdf"))});
    ASSERT_EQ(plain.exitCode, 0);
    const auto both = write(planOf({Source::open(dir.file("open.pdf")), Source::open(path)}), "both.pdf");
    EXPECT_LT(std::filesystem::file_size(both), single);
    const JudgedPdf judged(both);
    const auto contents = [&](qsizetype page) {
        return judged.dictionary(judged.pages()[page]).value(QStringLiteral("/Contents"));
    };
    EXPECT_EQ(contents(0), contents(2));
    EXPECT_EQ(contents(1), contents(3));
}

TEST_F(ProtectedSource, ADamagedProtectedFileIsScannedAndDeciphered) {
    for (const char* objectStreams : {"disable", "generate"}) {
        std::string bytes =
            contentOf(protect(everyPlace(), text("user"), text("owner"),
                              {QStringLiteral("256"), text("--object-streams=") + text(objectStreams)}));
        const std::size_t start = bytes.rfind("startxref");
        bytes.replace(start, 9, "startnone");
        const auto source = open(bytes, "damaged.pdf");
        ASSERT_TRUE(source);
        EXPECT_TRUE(source->isEncrypted());
        EXPECT_EQ(source->unlock("user"), Access::User);
        expectEverything(write(planOf({source})));
    }
}

TEST_F(ProtectedSource, TheStructureReadAnewKnowsTheKey) {
    const auto source = Source::open(protect(everyPlace()));
    ASSERT_EQ(source->unlock("user"), Access::User);
    SourceAccess(*source).release();
    expectEverything(write(planOf({source})));
    EXPECT_EQ(Source::open(dir.file("protected.pdf")), source);
    EXPECT_EQ(source->unlock("wrong"), Access::None);
    expectEverything(write(planOf({source})));
}

/// Files whose protection is out of the ordinary, made by hand: the data in them is not enciphered at all.
class OddProtection : public ProtectedSource {
protected:
    std::shared_ptr<Source> withDictionary(const std::string& encrypt) const {
        RawPdf pdf;
        pdf.catalogOf({10}).page(10, "A1").object(20, encrypt);
        return open(pdf.table("/Root 1 0 R/Encrypt 20 0 R").bytes(), "odd.pdf");
    }
    void expectLockedForEver(const std::string& encrypt) const {
        const auto source = withDictionary(encrypt);
        ASSERT_TRUE(source) << encrypt;
        EXPECT_TRUE(source->isEncrypted()) << encrypt;
        for (const char* password : {"", "user", "owner"}) EXPECT_EQ(source->unlock(password), Access::None) << encrypt;
        EXPECT_EQ(source->pageCount(), 1U);
        EXPECT_FALSE(writeDocument(planOf({source}), dir.file("out.pdf")).written);
    }
};

TEST_F(OddProtection, OtherHandlersStayLocked) {
    expectLockedForEver("<</Filter/Adobe.PubSec/SubFilter/adbe.pkcs7.s5/V 4/R 4/Recipients[(x)]>>");
    expectLockedForEver("<</Filter/FileOpen/V 1/R 2>>");
    expectLockedForEver("<<>>");
    expectLockedForEver("[1 2 3]");
    expectLockedForEver("(text)");
}

TEST_F(OddProtection, DamagedDictionariesStayLocked) {
    expectLockedForEver("<</Filter/Standard/V 2/R 3/Length 128/O()/U()/P 0>>");
    expectLockedForEver("<</Filter/Standard/V 2/R 3/Length 128>>");
    expectLockedForEver("<</Filter/Standard/V 5/R 6/O(short)/U(short)/OE()/UE()/P 0>>");
    expectLockedForEver("<</Filter/Standard/V 4/R 4/CF<</StdCF 20 0 R>>/StmF/StdCF/StrF/StdCF/O(o)/U(u)/P 0>>");
    expectLockedForEver("<</Filter 20 0 R/V 20 0 R>>");
}

TEST_F(OddProtection, ADictionaryThatIsNotThereProtectsNothing) {
    const auto source = withDictionary("null");
    EXPECT_FALSE(source->isEncrypted());
    EXPECT_EQ(source->unlock("any"), Access::Owner);
    EXPECT_EQ(test::pageMarks(write(planOf({source}))), Strings{"A1"});
}

TEST_F(OddProtection, AStreamLosesItsCryptFilterInAnOpenFileToo) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Extra 20 0 R>>").object(2, "<</Type/Pages/Count 1/Kids[10 0 R]>>");
    pdf.page(10, "A1").stream(20, "/Filter[/Crypt]/DecodeParms[<</Name/Identity>>]", "clear");
    const JudgedPdf judged(write(planOf({open(pdf.table().bytes())})));
    const QJsonValue extra = judged.catalog().value(QStringLiteral("/Extra"));
    EXPECT_FALSE(judged.dictionary(extra).contains(QStringLiteral("/Filter")));
    EXPECT_FALSE(judged.dictionary(extra).contains(QStringLiteral("/DecodeParms")));
    EXPECT_EQ(judged.rawStream(extra), "clear");
}

TEST_F(OddProtection, EncipheredDataThatIsCutOffOrMissingItsBeginningDoesNoHarm) {
    const std::string path = protect(everyPlace(), {}, text("o"), {QStringLiteral("256")});
    const std::string whole = contentOf(path);
    for (const char* length : {"/Length 48", "/Length 32", "/Length 64"}) {
        std::string bytes = whole;
        for (std::size_t at = bytes.find(length); at != std::string::npos; at = bytes.find(length, at + 1)) {
            bytes.replace(at, 10, "/Length 07");
        }
        const auto source = open(bytes, "cut.pdf");
        ASSERT_TRUE(source);
        EXPECT_TRUE(writeDocument(planOf({source}), dir.file("out.pdf")).written);
    }
}

}  // namespace
}  // namespace quillon::pdf

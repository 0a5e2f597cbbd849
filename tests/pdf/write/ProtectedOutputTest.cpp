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

using test::PdfFixture;
using test::RawPdf;

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

/// A page with a link, a title, a string in the dictionary of a stream, and two large streams.
std::string sampleBytes() {
    std::string noise(5'000'000, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<char>(i * i % 251);
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Extra 20 0 R/Large 21 0 R/Empty 22 0 R>>");
    pdf.object(2, "<</Type/Pages/Count 1/Kids[10 0 R]>>");
    pdf.page(10, "A1",
             "/Parent 2 0 R/MediaBox[0 0 612 792]/Annots[<</Type/Annot/Subtype/Text/Rect[0 0 9 9]/Contents(a note)>>]");
    pdf.stream(20, "/Note(in a dictionary)", "some data").stream(21, "", noise).stream(22, "", "");
    pdf.object(30, "<</Title(Secret title)>>");
    return pdf.table("/Root 1 0 R/Info 30 0 R").bytes();
}

class ProtectedOutput : public EngineTest {
protected:
    std::string writeProtected(const std::string& bytes, const Protection& protection) const {
        DocumentPlan plan = planOf({open(bytes)});
        plan.protection = protection;
        const WriteResult result = writeDocument(plan, dir.file("out.pdf"));
        EXPECT_TRUE(result.written);
        return dir.file("out.pdf");
    }
    static std::string shown(const std::string& path, const std::string& object, const QString& password) {
        return test::runProgram(QStringLiteral("qpdf"), {QStringLiteral("--password=") + password,
                                                         QStringLiteral("--show-object=") + text(object),
                                                         QStringLiteral("--filtered-stream-data"), text(path)})
            .output;
    }
};

TEST_F(ProtectedOutput, EverythingIsEncipheredAndReadBackByOthers) {
    const std::string path = writeProtected(sampleBytes(), {"user", "owner"});
    EXPECT_EQ(test::qpdfProblems(path, QStringLiteral("user")), "");
    EXPECT_EQ(test::pageMarks(path, QStringLiteral("user")), Strings{"A1"});
    const std::string bytes = contentOf(path);
    EXPECT_TRUE(bytes.starts_with("%PDF-2.0\n"));
    for (const char* clear : {"Secret title", "a note", "in a dictionary", "some data", "MediaBox"}) {
        EXPECT_EQ(bytes.find(clear), std::string::npos) << clear;
    }
    const auto json = test::qpdfJson(path, QStringLiteral("user"));
    const std::string description = json.toJson().toStdString();
    for (const char* kept : {"u:Secret title", "u:a note", "u:in a dictionary"}) {
        EXPECT_NE(description.find(kept), std::string::npos) << kept;
    }
}

TEST_F(ProtectedOutput, DataOfEverySizeComesBack) {
    const std::string original = sampleBytes();
    const std::string path = writeProtected(original, {"user", "owner"});
    const auto decrypted = test::runProgram(
        QStringLiteral("qpdf"), {QStringLiteral("--password=user"), QStringLiteral("--decrypt"),
                                 QStringLiteral("--stream-data=uncompress"), text(path), text(dir.file("clear.pdf"))});
    ASSERT_EQ(decrypted.exitCode, 0) << decrypted.errors;
    const std::string clear = contentOf(dir.file("clear.pdf"));
    const std::size_t begin = original.find("stream\n", original.find("\n21 0 obj")) + 7;
    EXPECT_NE(clear.find(original.substr(begin, 5'000'000)), std::string::npos);
    EXPECT_NE(clear.find("some data"), std::string::npos);
}

struct Protected {
    const char* user;
    const char* owner;
};
using Case = std::tuple<Protected, bool, bool>;
class ProtectionOfOutput : public ProtectedOutput, public testing::WithParamInterface<Case> {};

const std::string longest(127, 'x');
constexpr std::size_t longestForPoppler = 32;  // its programs cut off the rest
INSTANTIATE_TEST_SUITE_P(All, ProtectionOfOutput,
                         testing::Combine(testing::Values(Protected{"u", ""}, Protected{"", "o"}, Protected{"u", "o"},
                                                          Protected{"пароль", ""}, Protected{"contraseña", "пароль"},
                                                          Protected{longest.c_str(), "o"}),
                                          testing::Bool(), testing::Bool()));

TEST_P(ProtectionOfOutput, OpensWithExactlyTheRightPasswordsAndAllowsWhatItShould) {
    const auto& [passwords, copying, printing] = GetParam();
    const std::string path =
        writeProtected(PdfFixture("A", 1).bytes(), {passwords.user, passwords.owner, copying, printing});
    const std::string user = passwords.user;
    const std::string owner = *passwords.owner == '\0' ? user : passwords.owner;
    for (const std::string& password : {user, owner, std::string(), std::string("wrong"), user + "x", longest}) {
        const bool right = password == owner || password == user || (user == longest && password.starts_with(longest));
        EXPECT_EQ(test::opensInQpdf(path, text(password)), right) << password;
        // It does not look at the password where none is needed.
        EXPECT_EQ(test::opensInMutool(path, text(password)), right || user.empty()) << password;
        if (password.size() <= longestForPoppler) {
            EXPECT_EQ(test::opensInPoppler(path, text(password)), right) << password;
        }
    }
    const std::string encryption = test::encryptionOf(path, text(user));
    const auto allows = [&](const std::string& what) {
        return encryption.find(what + ": allowed") != std::string::npos;
    };
    EXPECT_EQ(allows("extract for any purpose"), copying) << encryption;
    EXPECT_EQ(allows("print low resolution"), printing);
    EXPECT_EQ(allows("print high resolution"), printing);
    for (const char* always : {"extract for accessibility", "modify document assembly", "modify forms",
                               "modify annotations", "modify other", "modify anything"}) {
        EXPECT_TRUE(allows(always)) << always;
    }
    EXPECT_NE(encryption.find("R = 6"), std::string::npos);
    EXPECT_NE(encryption.find("stream encryption method: AESv3"), std::string::npos);
}

TEST_P(ProtectionOfOutput, PopplerSeesTheSameRights) {
    const auto& [passwords, copying, printing] = GetParam();
    const std::string path =
        writeProtected(PdfFixture("A", 1).bytes(), {passwords.user, passwords.owner, copying, printing});
    if (std::string_view(passwords.user).size() > longestForPoppler) return;
    const auto info =
        test::runProgram(QStringLiteral("pdfinfo"), {QStringLiteral("-upw"), text(passwords.user), text(path)});
    ASSERT_EQ(info.exitCode, 0) << info.errors;
    const auto expected = [&](const char* what, bool allowed) {
        return std::string(what) + (allowed ? ":yes" : ":no");
    };
    EXPECT_NE(info.output.find(expected("print", printing)), std::string::npos) << info.output;
    EXPECT_NE(info.output.find(expected("copy", copying)), std::string::npos) << info.output;
}

TEST_F(ProtectedOutput, WhatWasWrittenIsReadBackByTheEngine) {
    const std::string path = writeProtected(sampleBytes(), {"contrasen\u0303a", "owner"});
    const auto source = Source::open(path);
    EXPECT_EQ(source->unlock("user"), Access::None);
    EXPECT_EQ(source->unlock("contraseña"), Access::User) << "normalised when it was written";
    EXPECT_EQ(test::pageMarks(write(planOf({source}), "again.pdf")), Strings{"A1"});
}

TEST_F(ProtectedOutput, AProtectedSourceIsProtectedAnew) {
    test::protectFile(dir.write("plain.pdf", sampleBytes()), dir.file("in.pdf"), QStringLiteral("old"),
                      QStringLiteral("o"), {QStringLiteral("128"), QStringLiteral("--use-aes=y")});
    const auto source = Source::open(dir.file("in.pdf"));
    ASSERT_EQ(source->unlock("old"), Access::User);
    DocumentPlan plan = planOf({source});
    plan.protection = Protection{"new", {}};
    ASSERT_TRUE(writeDocument(plan, dir.file("out.pdf")).written);
    EXPECT_EQ(test::pageMarks(dir.file("out.pdf"), QStringLiteral("new")), Strings{"A1"});
    EXPECT_EQ(test::qpdfProblems(dir.file("out.pdf"), QStringLiteral("new")), "");
    EXPECT_FALSE(test::opensInQpdf(dir.file("out.pdf"), QStringLiteral("old")));
}

TEST_F(ProtectedOutput, EqualStreamsAreStillWrittenOnce) {
    const auto size = [&](const std::vector<std::shared_ptr<Source>>& sources) {
        DocumentPlan plan = planOf(sources);
        plan.protection = Protection{"u", {}};
        const WriteResult result = writeDocument(plan, dir.file("out.pdf"));
        EXPECT_TRUE(result.written);
        return result.bytes;
    };
    const auto first = open(sampleBytes(), "first.pdf");
    const auto second = open(sampleBytes(), "second.pdf");
    EXPECT_LT(size({first, second}), size({first}) + 5'000);
}

TEST_F(ProtectedOutput, NoTwoRunsAreAlike) {
    const std::string bytes = PdfFixture("A", 1).bytes();
    const std::string first = contentOf(writeProtected(bytes, {"u", "o"}));
    EXPECT_NE(contentOf(writeProtected(bytes, {"u", "o"})), first);
}

}  // namespace
}  // namespace quillon::pdf

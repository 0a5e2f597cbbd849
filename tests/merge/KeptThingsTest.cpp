// Each thing that a merged document keeps, in each way to take a file, as other programs read it.

#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

#include <functional>
#include <ostream>

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;

/// The pages of the output, counted from 1, at which a copy of the two pages stands; 0 where one was not taken.
struct Taken {
    int first;
    int second;
};

/// A way to take the file X of two pages, beside a file P of two plain pages.
struct Way {
    std::string name;
    std::function<void(std::vector<std::shared_ptr<cacheData>>&, const QUrl& x, const QUrl& p)> list;
    std::vector<Taken> copies;
    int pages;
};

void PrintTo(const Way& way, std::ostream* out) {
    *out << way.name;
}

void entry(std::vector<std::shared_ptr<cacheData>>& list, const QUrl& url, std::int32_t method = MergeMethodWhole,
           const char* value = "") {
    auto added = std::make_shared<cacheData>(url);
    added->setMergeMethod(method);
    added->setValue(QString::fromLatin1(value));
    list.push_back(added);
}

const std::vector<Way>& ways() {
    static const std::vector<Way> all{
        {"First", [](auto& list, const QUrl& x, const QUrl& p) { entry(list, x), entry(list, p); }, {{1, 2}}, 4},
        {"Second", [](auto& list, const QUrl& x, const QUrl& p) { entry(list, p), entry(list, x); }, {{3, 4}}, 4},
        {"Twice", [](auto& list, const QUrl& x, const QUrl&) { entry(list, x), entry(list, x); }, {{1, 2}, {3, 4}}, 4},
        {"Part",
         [](auto& list, const QUrl& x, const QUrl& p) { entry(list, p), entry(list, x, MergeMethodPart, "1-2"); },
         {{3, 4}},
         4},
        {"PartInFront",
         [](auto& list, const QUrl& x, const QUrl& p) { entry(list, x, MergeMethodPart, "1-2,1-2"), entry(list, p); },
         {{1, 2}, {3, 4}},
         6},
        {"PartOfOnePage",
         [](auto& list, const QUrl& x, const QUrl& p) { entry(list, p), entry(list, x, MergeMethodPart, "2"); },
         {{0, 3}},
         3},
        {"Cross",
         [](auto& list, const QUrl& x, const QUrl& p) {
             entry(list, p, MergeMethodCross, "1"), entry(list, x, MergeMethodCross, "1");
         },
         {{2, 4}},
         4},
        {"Repeat",
         [](auto& list, const QUrl& x, const QUrl& p) {
             entry(list, p, MergeMethodCross, "1"), entry(list, x, MergeMethodRepeat);
         },
         {{2, 3}, {5, 6}},
         6}};
    return all;
}

class KeptThings : public MergeTest, public testing::WithParamInterface<Way> {
protected:
    /// Merges the file and says where the output is.
    const std::string& merge(const std::string& x) {
        const QUrl plain = write("P", PdfFixture("P", 2));
        GetParam().list(list_, urlOf(dir_.write("X.pdf", x)), plain);
        run();
        file_ = target();
        EXPECT_EQ(qpdfProblems(file_), "");
        EXPECT_EQ(pageCount(file_), GetParam().pages);
        return file_;
    }

    /// The lines that `of` says of each copy.
    [[nodiscard]] Lines expected(const std::function<Lines(Taken, const std::string& suffix)>& of) const {
        Lines lines;
        std::size_t number = 0;
        for (const Taken& copy : GetParam().copies) {
            const Lines own = of(copy, ++number == 1 ? "" : "-" + std::to_string(number));
            lines.insert(lines.end(), own.begin(), own.end());
        }
        return lines;
    }
    [[nodiscard]] static std::string at(int page) { return '@' + std::to_string(page); }
    [[nodiscard]] bool takesFirst() const { return GetParam().copies.front().first != 0; }

private:
    std::string file_;
};

TEST_P(KeptThings, Fields) {
    const JudgedPdf pdf(merge(formPdf("X")));
    EXPECT_EQ(fieldLines(pdf), expected([](Taken copy, const std::string& suffix) {
                  Lines lines;
                  if (copy.first != 0) {
                      lines.push_back("person" + suffix + ".first" + at(copy.first) + "=X");
                      lines.push_back("person" + suffix + ".both" + at(copy.first) + "=shared");
                  }
                  lines.push_back("person" + suffix + ".both" + at(copy.second) + "=shared");
                  lines.push_back("sum" + suffix + at(copy.second) + "=");
                  return lines;
              }));
    const QJsonObject form = pdf.dictionary(pdf.catalog().value(QStringLiteral("/AcroForm")));
    EXPECT_EQ(form.value(QStringLiteral("/CO")).toArray().size(), static_cast<int>(GetParam().copies.size()));
    EXPECT_TRUE(form.value(QStringLiteral("/NeedAppearances")).toBool());
    EXPECT_EQ(form.value(QStringLiteral("/DA")).toString(), QStringLiteral("u:/F 9 Tf 0 g"));
    EXPECT_TRUE(pdf.dictionary(form.value(QStringLiteral("/DR"))).contains(QStringLiteral("/Font")));
}

TEST_P(KeptThings, LooksOfSignaturesAndNotTheirValues) {
    const JudgedPdf pdf(merge(signedPdf("X")));
    EXPECT_EQ(fieldLines(pdf), expected([](Taken copy, const std::string& suffix) {
                  return copy.first == 0 ? Lines() : Lines{"seal" + suffix + at(copy.first) + "="};
              }));
    EXPECT_TRUE(pdf.having(QStringLiteral("/Type"), QStringLiteral("/Sig")).isEmpty());
    for (const Taken& copy : GetParam().copies) {
        if (copy.first == 0) continue;
        EXPECT_TRUE(pdf.annotations(copy.first - 1).first().contains(QStringLiteral("/AP")));
    }
}

TEST_P(KeptThings, Layers) {
    const JudgedPdf pdf(merge(layeredPdf("X")));
    EXPECT_EQ(layerLines(pdf), takesFirst() ? (Lines{"X-shown+", "X-hidden-"}) : Lines{"X-hidden-"});
}

TEST_P(KeptThings, LabelsOfPages) {
    const std::string file = merge(labelledPdf("X"));
    Lines labels;
    for (const std::string& line : labelLines(file)) {
        const std::size_t page = std::stoul(line);
        while (labels.size() + 1 < page) labels.push_back("goes on");
        labels.push_back(line.substr(line.find(' ') + 1));
    }
    for (const Taken& copy : GetParam().copies) {
        EXPECT_EQ(labels.at(static_cast<std::size_t>(copy.second) - 1), "D A-5");
        if (copy.first == 0) continue;
        EXPECT_EQ(labels.at(static_cast<std::size_t>(copy.first) - 1), "r 1");
    }
}

TEST_P(KeptThings, Attachments) {
    EXPECT_EQ(attachmentLines(merge(attachedPdf("X"))), Lines{"X.txt"});
}

TEST_P(KeptThings, Scripts) {
    EXPECT_EQ(scriptLines(JudgedPdf(merge(attachedPdf("X")))), Lines{"X"});
}

TEST_P(KeptThings, Tags) {
    EXPECT_EQ(tagLines(JudgedPdf(merge(taggedPdf("X")))), expected([](Taken copy, const std::string&) {
                  Lines lines;
                  if (copy.first != 0) lines.push_back("Document/Text" + at(copy.first));
                  lines.push_back("Document/Text" + at(copy.second));
                  lines.push_back("Document/Link" + at(copy.second));
                  return lines;
              }));
}

TEST_P(KeptThings, TagsAsAnotherProgramReadsThem) {
    const auto read = runProgram(QStringLiteral("pdfinfo"),
                                 {QStringLiteral("-struct-text"), QString::fromStdString(merge(taggedPdf("X")))});
    const auto count = [&](const std::string& mark) {
        std::size_t found = 0;
        for (std::size_t place = read.output.find(mark); place != std::string::npos;
             place = read.output.find(mark, place + 1)) {
            ++found;
        }
        return found;
    };
    EXPECT_EQ(count("\"X1\""), takesFirst() ? GetParam().copies.size() : 0);
    EXPECT_EQ(count("\"X2\""), GetParam().copies.size());
}

TEST_P(KeptThings, Articles) {
    EXPECT_EQ(articleLines(JudgedPdf(merge(articlePdf("X")))), expected([](Taken copy, const std::string&) {
                  const std::string first = copy.first == 0 ? "" : std::to_string(copy.first) + ',';
                  return Lines{"X@" + first + std::to_string(copy.second)};
              }));
}

TEST_P(KeptThings, Links) {
    Lines lines = linkLines(JudgedPdf(merge(linkedPdf("X"))));
    std::erase_if(lines, [](const std::string& line) { return line.empty(); });
    Lines wanted = expected([](Taken copy, const std::string&) {
        const std::string first = copy.first == 0 ? "" : std::to_string(copy.first);
        const std::string second = std::to_string(copy.second);
        if (copy.first == 0) return Lines{second + '>'};
        return Lines{first + '>' + second, first + '>' + second, first + '>' + second, second + '>' + first};
    });
    EXPECT_EQ(lines, wanted);
}

TEST_P(KeptThings, Comments) {
    EXPECT_EQ(commentLines(JudgedPdf(merge(commentedPdf("X")))), expected([](Taken copy, const std::string&) {
                  return copy.first == 0 ? Lines() : Lines{std::to_string(copy.first) + ": X reply"};
              }));
}

TEST_P(KeptThings, IntentsLanguageAndTransitions) {
    const JudgedPdf pdf(merge(presentedPdf("X")));
    const QJsonArray intents = pdf.resolve(pdf.catalog().value(QStringLiteral("/OutputIntents"))).toArray();
    ASSERT_EQ(intents.size(), 1);
    EXPECT_EQ(pdf.dictionary(intents[0]).value(QStringLiteral("/OutputConditionIdentifier")).toString(),
              QStringLiteral("u:X"));
    EXPECT_EQ(pdf.catalog().value(QStringLiteral("/Lang")).toString(), QStringLiteral("u:X"));
    for (const Taken& copy : GetParam().copies) {
        EXPECT_TRUE(pdf.dictionary(pdf.pages()[copy.second - 1]).contains(QStringLiteral("/Trans")));
    }
}

INSTANTIATE_TEST_SUITE_P(Taken, KeptThings, testing::ValuesIn(ways()), [](const auto& way) { return way.param.name; });

}  // namespace
}  // namespace quillon::test

#include "pdf/filter/Flate.h"
#include "pdf/read/ObjectReader.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/RawPdf.h"

#include <chrono>

namespace quillon::pdf {
namespace {

using test::RawPdf;

constexpr std::string_view page = "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Contents 4 0 R";

std::string pageText() {
    return std::string(page) + RawPdf::font() + ">>";
}

/// A file with one page whose content stream is `stream`, an object from its dictionary on.
std::string withContent(const std::string& stream, const std::string& length = "7") {
    return RawPdf().catalogOf({3}).object(3, pageText()).object(4, stream).object(5, length).table().bytes();
}

class ObjectReading : public EngineTest {
protected:
    /// Object 20 is null, and a warning names the object stream 9 that should hold it.
    void expectRefused(const std::string& bytes) const {
        const std::string name("a.pdf");
        Warnings warnings(name);
        ObjectReader reader(InputFile::open(dir.write("a.pdf", bytes)), warnings);
        EXPECT_TRUE(reader.parse({20, 0}).isNull());
        const std::string offset = std::to_string(bytes.find("\n9 0 obj") + 1);
        EXPECT_EQ(warnings.lines(),
                  Strings{"a.pdf, object 9, offset " + offset + ": the object stream cannot be read"});
    }
};

TEST_F(ObjectReading, ObjectsAreFoundInObjectStreams) {
    RawPdf pdf;
    pdf.packed(9, {{1, "<</Type/Catalog/Pages 2 0 R>>"}, {2, "<</Type/Pages/Count 1/Kids[3 0 R]>>"}, {3, pageText()}});
    pdf.stream(4, {}, RawPdf::content("one")).crossStream(10);
    EXPECT_EQ(marks(pdf.bytes()), Strings{"one"});
    EXPECT_EQ(open(pdf.bytes())->warnings(), Strings());
}

TEST_F(ObjectReading, ObjectsAreFoundInStreamsThatExtendEachOther) {
    RawPdf pdf;
    pdf.packed(8, {{1, "<</Type/Catalog/Pages 2 0 R>>"}, {2, "<</Type/Pages/Count 1/Kids[3 0 R]>>"}});
    pdf.packed(9, {{3, pageText()}}, "/Extends 8 0 R");
    pdf.stream(4, {}, RawPdf::content("one")).crossStream(10);
    EXPECT_EQ(marks(pdf.bytes()), Strings{"one"});
}

TEST_F(ObjectReading, AWrongIndexInAnObjectStreamIsPutRight) {
    RawPdf pdf;
    pdf.packed(9, {{2, "<</Type/Pages/Count 1/Kids[3 0 R]>>"}, {1, "<</Type/Catalog/Pages 2 0 R>>"}, {3, pageText()}});
    std::string bytes = pdf.stream(4, {}, RawPdf::content("one")).crossStream(10).bytes();
    // Objects 1 and 2 exchange their indexes in the rows of the cross-reference stream.
    const std::size_t rows = bytes.rfind("stream\n", bytes.rfind("endstream") - 1) + 7;
    std::swap(bytes[rows + 6], bytes[rows + 7 + 6]);
    EXPECT_EQ(marks(bytes), Strings{"one"});
}

/// A sound file, but for object 20, which is said to be in the object stream 9 of these entries and data.
std::string withObjectInStream(const std::string& entries, const std::string& data) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one").stream(9, entries, data);
    std::string rows;
    for (const int number : {1, 2, 3, 4, 9}) {
        const std::size_t at = pdf.bytes().find("\n" + std::to_string(number) + " 0 obj") + 1;
        rows += RawPdf::bigEndian(1, 1) + RawPdf::bigEndian(at, 4) + RawPdf::bigEndian(0, 2);
    }
    rows += RawPdf::bigEndian(2, 1) + RawPdf::bigEndian(9, 4) + RawPdf::bigEndian(0, 2);
    const std::size_t start = pdf.size();
    pdf.stream(30, "/Type/XRef/Root 1 0 R/Size 31/W[1 4 2]/Index[1 4 9 1 20 1]", rows);
    return pdf.raw("startxref\n" + std::to_string(start) + "\n%%EOF\n").bytes();
}

TEST_F(ObjectReading, AStreamThatHoldsItsOwnDescriptionIsRefused) {
    // Object 20 of the stream is the number of its objects.
    const std::string bytes = withObjectInStream("/Type/ObjStm/N 20 0 R/First 5", "20 0 1");
    EXPECT_EQ(marks(bytes), Strings{"one"});
    expectRefused(bytes);
}

TEST_F(ObjectReading, AnObjectStreamThatInflatesWithoutEndIsRefused) {
    std::string bomb;
    Deflater(6).deflate("20 0 <</A(" + std::string(300U << 20U, ' '), bomb);
    const std::string bytes = withObjectInStream("/Type/ObjStm/N 1/First 5/Filter/FlateDecode", bomb);
    EXPECT_EQ(marks(bytes), Strings{"one"});
    EXPECT_LT(bytes.size(), 1'000'000U);
    expectRefused(bytes);
}

TEST_F(ObjectReading, AWrongLengthIsPutRight) {
    const std::string content = RawPdf::content("one");
    for (const std::string& length : {std::string("3"), std::string("999999"), std::string("-5"), std::string("(x)"),
                                      std::string("99999999999999999999"), std::to_string(content.size() + 8)}) {
        EXPECT_EQ(marks(withContent("<</Length " + length + ">>stream\n" + content + "\nendstream")), Strings{"one"})
            << length;
    }
    EXPECT_EQ(marks(withContent("<<>>stream\n" + content + "\nendstream")), Strings{"one"});
}

TEST_F(ObjectReading, AnIndirectLengthIsFollowed) {
    const std::string content = RawPdf::content("one");
    const std::string stream = "<</Length 5 0 R>>stream\n" + content + "\nendstream";
    EXPECT_EQ(open(withContent(stream, std::to_string(content.size())))->warnings(), Strings());
    EXPECT_EQ(marks(withContent(stream, std::to_string(content.size()))), Strings{"one"});
    EXPECT_EQ(marks(withContent(stream, "3")), Strings{"one"});
    EXPECT_EQ(marks(withContent(stream, "null")), Strings{"one"});
    const auto warnings = [&](const std::string& length) {
        const auto source = open(withContent(stream, length));
        static_cast<void>(write(planOf({source})));
        return source->warnings().size();
    };
    // Where nothing is repaired it was read as the number that it is.
    const std::string length = std::to_string(content.size());
    for (const std::string& written : {length, " " + length, "% of it\n" + length + " ", "+" + length}) {
        EXPECT_EQ(warnings(written), 0U) << written;
    }
    for (const char* wrong : {"3", "null", "(3)", "-1"}) EXPECT_EQ(warnings(wrong), 1U) << wrong;
}

TEST_F(ObjectReading, OnlyNullAndWhatDoesNotExistIsNull) {
    const auto source = open(RawPdf().catalogOf({3}).page(3, "one").table().bytes());
    SourceAccess access(*source);
    ObjectReader& reader = access.document()->reader();
    for (const char* value : {"null", "99 0 R", "3 7 R"}) EXPECT_TRUE(reader.isNull(value)) << value;
    for (const char* value : {"3 0 R", "[null]", "/null", "(null)", "<6e>", "<<>>", "<</A null>>", "0", "false"}) {
        EXPECT_FALSE(reader.isNull(value)) << value;
    }
}

TEST_F(ObjectReading, LengthsThatReferToEachOtherAreSearched) {
    const std::string content = RawPdf::content("one");
    EXPECT_EQ(marks(withContent("<</Length 4 0 R>>stream\n" + content + "\nendstream")), Strings{"one"});
    EXPECT_EQ(marks(withContent("<</Length 5 0 R>>stream\n" + content + "\nendstream", "5 0 R")), Strings{"one"});
}

TEST_F(ObjectReading, AMissingEndOfStreamOrObjectIsBridged) {
    const std::string content = RawPdf::content("one");
    EXPECT_EQ(marks(withContent("<</Length 7>>stream\n" + content)), Strings{"one"});
    std::string bytes =
        withContent("<</Length " + std::to_string(content.size()) + ">>stream\n" + content + "\nendstream");
    for (std::size_t at = bytes.find("endobj"); at != std::string::npos; at = bytes.find("endobj"))
        bytes.replace(at, 6, "      ");
    EXPECT_EQ(marks(bytes), Strings{"one"});
}

TEST_F(ObjectReading, AnyEndOfLineBehindTheKeywordStreamIsTaken) {
    const std::string content = RawPdf::content("one");
    const std::string length = std::to_string(content.size());
    for (const std::string_view end : {"\n", "\r\n", "\r", " \n", " \r\n"}) {
        const std::string stream = "<</Length " + length + ">>stream" + std::string(end) + content + "\nendstream";
        EXPECT_EQ(marks(withContent(stream)), Strings{"one"});
        EXPECT_EQ(open(withContent(stream))->warnings(), Strings());
    }
}

TEST_F(ObjectReading, ReferencesThatLeadInCirclesReadAsNull) {
    const std::string bytes =
        RawPdf().catalogOf({3}).page(3, "one").object(5, "6 0 R").object(6, "5 0 R").object(7, "7 0 R").table().bytes();
    const auto file = InputFile::open(dir.write("a.pdf", bytes));
    const std::string name("a.pdf");
    Warnings warnings(name);
    ObjectReader reader(file, warnings);
    EXPECT_TRUE(reader.resolve(Object(Reference{5, 0})).isNull());
    EXPECT_TRUE(reader.resolve(Object(Reference{7, 0})).isNull());
}

TEST_F(ObjectReading, AnObjectLargerThanABlockIsRead) {
    std::string list = "[";
    for (int i = 0; i < 100'000; ++i) list += std::to_string(i) + ' ';
    const std::string bytes = RawPdf().catalogOf({3}).page(3, "one").object(5, list + "]").table().bytes();
    const auto file = InputFile::open(dir.write("a.pdf", bytes));
    const std::string name("a.pdf");
    Warnings warnings(name);
    ObjectReader reader(file, warnings);
    const Object object = reader.parse({5, 0});
    ASSERT_TRUE(object.array());
    EXPECT_EQ(object.array()->size(), 100'000U);
}

TEST_F(ObjectReading, AnObjectClosedByTheNextOneEndsBeforeItHoweverThatBegins) {
    // Longer than what is read at first.
    const std::string open = "<</A(" + std::string(2000, 'x') + ")";
    for (const std::string header :
         {"6 0 obj", "6 0obj", "6 0 \n obj", "6 0 objfoo", "endobj\n6 0 obj", "(obj) 6 0 obj", "/obj 6 0 obj"}) {
        std::string bytes =
            RawPdf().catalogOf({3}).page(3, "one").object(5, open).object(6, " /Next 1>>     ").table().bytes();
        const std::size_t begin = bytes.find("endobj", bytes.find(open));
        const std::size_t end = bytes.find("/Next");
        const std::size_t next = bytes.find("6 0 obj", begin) - header.find('6');
        bytes.replace(begin, end - begin, std::string(end - begin, ' '));
        bytes.replace(next, header.size(), header);
        const std::string name("a.pdf");
        Warnings warnings(name);
        ObjectReader reader(InputFile::open(dir.write("a.pdf", bytes)), warnings);
        const auto found = reader.findWhole({5, 0});
        ASSERT_TRUE(found) << header;
        EXPECT_EQ(found->value().find("/Next"), std::string_view::npos) << header;
    }
}

TEST_F(ObjectReading, AnObjectThatIsNotClosedEndsWhereTheNextBegins) {
    // Longer than what is read at first, and closed by what the next object holds.
    const std::string open = "<</A(" + std::string(2000, 'x') + ")/B(no end";
    const std::string closed = "<</C(endobj " + std::string(2000, 'y') + ")>>";
    const std::string bytes =
        RawPdf().catalogOf({3}).page(3, "one").object(5, open).object(6, "(next)>>").object(7, closed).table().bytes();
    const std::string name("a.pdf");
    Warnings warnings(name);
    ObjectReader reader(InputFile::open(dir.write("a.pdf", bytes)), warnings);
    const auto found = reader.findWhole({5, 0});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->text().find("(next)"), std::string_view::npos);
    const auto whole = reader.findWhole({7, 0});
    ASSERT_TRUE(whole);
    EXPECT_TRUE(whole->value().ends_with(closed)) << whole->value().size();
}

TEST_F(ObjectReading, WhereAnObjectThatIsNotClosedEndsDoesNotDependOnWhatWasReadBefore) {
    const std::string open = "<</A(" + std::string(2000, 'x') + ")/B(no end";
    const std::string large = "<</C(" + std::string(40'000, 'y') + ")>>";
    for (const std::string next : {"next)>>", "<</Next 1>>"}) {  // closes it, does not
        std::string bytes =
            RawPdf().catalogOf({3}).page(3, "one").object(5, open).object(6, next).object(7, large).table().bytes();
        bytes.replace(bytes.find("endobj", bytes.find("no end")), 6, "      ");
        for (const bool isFirst : {true, false}) {
            const std::string name("a.pdf");
            Warnings warnings(name);
            ObjectReader reader(InputFile::open(dir.write("a.pdf", bytes)), warnings);
            if (!isFirst) {
                EXPECT_TRUE(reader.findWhole({7, 0})->value().ends_with(large));
            }
            const auto found = reader.findWhole({5, 0});
            ASSERT_TRUE(found);
            EXPECT_LE(found->text().find(open), 1U);
            EXPECT_LT(found->text().size(), open.size() + 20) << next << isFirst;
        }
    }
}

TEST_F(ObjectReading, WarningsNameFileObjectAndOffset) {
    const std::string bytes = withContent("<</Length 3>>stream\n" + RawPdf::content("one") + "\nendstream");
    const auto source = open(bytes);
    const auto result = writeDocument(planOf({source}), dir.file("out.pdf"));
    const std::size_t data = bytes.find("stream\nBT") + 7;
    ASSERT_EQ(result.warnings.size(), 1U);
    EXPECT_TRUE(
        result.warnings[0].starts_with(dir.file("in.pdf") + ", object 4, offset " + std::to_string(data) + ": "))
        << result.warnings[0];
}

TEST_F(ObjectReading, WarningsAreNotWithoutEnd) {
    const std::string name("a.pdf");
    Warnings warnings(name);
    for (std::uint32_t i = 1; i < 10'000; ++i) warnings.add("damaged", i);
    EXPECT_EQ(warnings.lines().size(), Warnings::most + 1);
    EXPECT_EQ(warnings.lines().back(), "a.pdf: more damage, not listed");
}

}  // namespace
}  // namespace quillon::pdf

#include "platform/pdf/DocumentAttributes.h"
#include "platform/pdf/DocumentInformation.h"
#include "platform/pdf/PDFDocument.h"
#include "platform/pdf/WriteOptions.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/RawPdf.h"
#include "tests/support/TempDir.h"

#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace quillon {
namespace {

/// The texts of an XMP packet, each behind the names of the elements it is in, such as `title/Alt/li=A`.
QStringList textsOf(const QByteArray& packet) {
    QXmlStreamReader reader(packet);
    QStringList path;
    QStringList texts;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            path.append(reader.name().toString());
        } else if (token == QXmlStreamReader::EndElement) {
            path.removeLast();
        } else if (token == QXmlStreamReader::Characters && !reader.isWhitespace()) {
            texts.append(path.mid(3).join(QLatin1Char('/')) + QLatin1Char('=') + reader.text().toString());
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return texts;
}

QStringList textsOf(const DocumentInformation& information, const QByteArray& existing = {}) {
    return textsOf(QByteArray::fromStdString(information.metadata(existing)));
}

QByteArray packet(const QByteArray& descriptions) {
    return "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
           "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#' xmlns:dc='http://purl.org/dc/elements/1.1/' "
           "xmlns:pdf='http://ns.adobe.com/pdf/1.3/' xmlns:pdfaid='http://www.aiim.org/pdfa/ns/id/'>" +
           descriptions + "</rdf:RDF></x:xmpmeta><?xpacket end='w'?>";
}

TEST(DocumentInformation, EveryTextHasItsPlace) {
    DocumentInformation information;
    information.title = QStringLiteral("A <b> & \u4e2d");
    information.author = QStringLiteral("Ann");
    information.subject = QStringLiteral("S");
    information.keywords = QStringLiteral("one, two");
    information.creator = QStringLiteral("C");
    information.producer = QStringLiteral("P");
    information.creationDate = QStringLiteral("D:20200102030405+01'30'");
    information.modificationDate = QStringLiteral("D:2021Z");
    EXPECT_EQ(textsOf(information),
              (QStringList{QStringLiteral("title/Alt/li=A <b> & \u4e2d"), QStringLiteral("creator/Seq/li=Ann"),
                           QStringLiteral("description/Alt/li=S"), QStringLiteral("Keywords=one, two"),
                           QStringLiteral("CreatorTool=C"), QStringLiteral("Producer=P"),
                           QStringLiteral("CreateDate=2020-01-02T03:04:05+01:30"),
                           QStringLiteral("ModifyDate=2021-01-01T00:00:00Z")}));
}

TEST(DocumentInformation, OtherPropertiesAreKept) {
    DocumentInformation information;
    information.title = QStringLiteral("New");
    const QStringList texts = textsOf(
        information, packet("<rdf:Description rdf:about='uuid:1' pdf:Producer='Old'><pdfaid:part>2</pdfaid:part>"
                            "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>Old</rdf:li></rdf:Alt></dc:title>"
                            "<dc:subject><rdf:Bag><rdf:li>k</rdf:li></rdf:Bag></dc:subject></rdf:Description>"));
    EXPECT_EQ(texts, (QStringList{QStringLiteral("part=2"), QStringLiteral("subject/Bag/li=k"),
                                  QStringLiteral("title/Alt/li=New")}));
    const std::string whole = information.metadata(packet("<rdf:Description rdf:about='uuid:1' pdf:Producer='Old'/>"));
    EXPECT_EQ(whole.find("Old"), std::string::npos);
    EXPECT_NE(whole.rfind("about=\"uuid:1\""), whole.find("about=\"uuid:1\"")) << "both speak of the same thing";
}

TEST(DocumentInformation, KeywordsThatAreReplacedAreReplacedInTheirListToo) {
    DocumentInformation information;
    information.keywords = QStringLiteral("new");
    information.keywordsReplaced = true;
    const QStringList texts = textsOf(information, packet("<rdf:Description rdf:about=''><dc:subject><rdf:Bag><rdf:li>k"
                                                          "</rdf:li></rdf:Bag></dc:subject></rdf:Description>"));
    EXPECT_EQ(texts, QStringList{QStringLiteral("Keywords=new")});
}

TEST(DocumentInformation, MetadataThatCannotBeReadAreReplaced) {
    DocumentInformation information;
    information.title = QStringLiteral("T");
    const QByteArray description = "<rdf:Description rdf:about=''><pdfaid:part>2</pdfaid:part></rdf:Description>";
    for (const QByteArray& broken :
         {QByteArray("no XML"), packet(description).left(300), QByteArray("<a/>"),
          QByteArray("<!DOCTYPE a [<!ENTITY e 'x'>]>") + packet(description), QByteArray(1, '\0')}) {
        EXPECT_EQ(textsOf(information, broken), QStringList{QStringLiteral("title/Alt/li=T")}) << broken.toStdString();
    }
}

TEST(DocumentInformation, CharactersThatXmlCannotHoldAreLeftOutOrReplaced) {
    DocumentInformation information;
    information.title = QStringLiteral("a") + QChar(0) + QChar(7) + QStringLiteral("b") + QChar(0xD800) +
                        QStringLiteral("c") + QChar(0xFFFF);
    EXPECT_EQ(textsOf(information), QStringList{QStringLiteral("title/Alt/li=ab\ufffdc\ufffd")});
}

TEST(DocumentInformation, DatesThatAreNoneGiveNone) {
    EXPECT_EQ(isoDate(QStringLiteral("D:202013")), QString());
    EXPECT_EQ(isoDate(QStringLiteral("yesterday")), QString());
    EXPECT_EQ(isoDate(QString()), QString());
    EXPECT_EQ(isoDate(QStringLiteral("20200229120000Z")), QStringLiteral("2020-02-29T12:00:00Z"));
    EXPECT_EQ(isoDate(QStringLiteral("D:20200229120000-05")), QStringLiteral("2020-02-29T12:00:00-05:00"));
}

class WrittenInformation : public testing::Test {
protected:
    std::string write(const std::string& bytes, const QVariantMap& options = {}) const {
        const auto urlOf = [this](const char* name) {
            return QUrl::fromLocalFile(QString::fromStdString(dir.file(name)));
        };
        dir.write("in.pdf", bytes);
        EXPECT_TRUE(PDFDocument::initWithURL(urlOf("in.pdf"))->writeToURL(urlOf("out.pdf"), options));
        EXPECT_EQ(test::qpdfProblems(dir.file("out.pdf")), "");
        return dir.file("out.pdf");
    }
    static QStringList metadataOf(const std::string& file) {
        const test::JudgedPdf pdf(file);
        const auto metadata = pdf.catalog().value(QStringLiteral("/Metadata"));
        return metadata.isUndefined() ? QStringList() : textsOf(pdf.rawStream(metadata));
    }

    const QString producer = QStringLiteral("Producer=Quillon " QUILLON_VERSION);
    const test::TempDir dir;
};

TEST_F(WrittenInformation, WithoutAnythingToSayThereAreNoMetadata) {
    const std::string file = write(test::PdfFixture("A", 1).bytes());
    EXPECT_TRUE(metadataOf(file).isEmpty());
    EXPECT_EQ(test::documentInfo(file, "Producer"), "Quillon " QUILLON_VERSION);
}

TEST_F(WrittenInformation, MetadataSayWhatTheInformationSays) {
    const std::string file = write(test::PdfFixture("A", 1).info("Title", "T").info("Author", "Ann").bytes(),
                                   {{kCGPDFContextAuthor, QStringLiteral("Bob")},
                                    {kCGPDFContextSubject, QStringLiteral("\u4e2d")},
                                    {kCGPDFContextKeywords, QStringLiteral("a, b")},
                                    {kCGPDFContextCreator, QStringLiteral("")}});
    EXPECT_EQ(metadataOf(file),
              (QStringList{QStringLiteral("title/Alt/li=T"), QStringLiteral("creator/Seq/li=Bob"),
                           QStringLiteral("description/Alt/li=\u4e2d"), QStringLiteral("Keywords=a, b"), producer}));
    EXPECT_EQ(test::documentInfo(file, "Title"), "T");
    EXPECT_EQ(test::documentInfo(file, "Author"), "Bob");
    EXPECT_EQ(test::documentInfo(file, "Subject"), "\u4e2d");
    EXPECT_EQ(test::documentInfo(file, "Keywords"), "a, b");
}

TEST_F(WrittenInformation, MetadataOfTheFileAreKeptButForWhatTheInformationSays) {
    test::RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Metadata 9 0 R>>").object(2, "<</Type/Pages/Kids[3 0 R]/Count 1>>");
    pdf.page(3, "one");
    pdf.stream(9, "/Type/Metadata/Subtype/XML",
               packet("<rdf:Description rdf:about=''><pdfaid:part>2</pdfaid:part><pdf:Producer>Old</pdf:Producer>"
                      "</rdf:Description>")
                   .toStdString());
    EXPECT_EQ(metadataOf(write(pdf.table().bytes())), (QStringList{QStringLiteral("part=2"), producer}));
}

}  // namespace
}  // namespace quillon

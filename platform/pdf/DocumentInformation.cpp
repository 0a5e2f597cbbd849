#include "platform/pdf/DocumentInformation.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <utility>
#include <vector>

namespace quillon {

namespace {

const QString rdf = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
const QString dublinCore = QStringLiteral("http://purl.org/dc/elements/1.1/");
const QString adobePdf = QStringLiteral("http://ns.adobe.com/pdf/1.3/");
const QString xmp = QStringLiteral("http://ns.adobe.com/xap/1.0/");
const QString xmlNamespace = QStringLiteral("http://www.w3.org/XML/1998/namespace");

/// How a property holds its text (ISO 16684-1, 8.2): as it is, as the only text in the default language, or as the only
/// member of a list.
enum class Form { Plain, Language, List };

struct Property {
    QString nameSpace;
    QString name;
    QString value;  ///< null: the document says nothing of it
    Form form = Form::Plain;
    bool removes = true;  ///< without a value, it is taken out of what was there
};

/// XML has no way to write these at all.
QString xmlText(const QString& text) {
    QString clean;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            clean += c;
            clean += text[++i];
        } else if (c.isSurrogate() || c.unicode() >= 0xFFFE) {
            clean += QChar(QChar::ReplacementCharacter);
        } else if (c.unicode() >= 0x20 || c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r')) {
            clean += c;
        }
    }
    return clean;
}

void writeProperty(QXmlStreamWriter& writer, const Property& property) {
    if (property.form == Form::Plain) {
        writer.writeTextElement(property.nameSpace, property.name, xmlText(property.value));
        return;
    }
    writer.writeStartElement(property.nameSpace, property.name);
    writer.writeStartElement(rdf, property.form == Form::Language ? QStringLiteral("Alt") : QStringLiteral("Seq"));
    writer.writeStartElement(rdf, QStringLiteral("li"));
    if (property.form == Form::Language)
        writer.writeAttribute(xmlNamespace, QStringLiteral("lang"), QStringLiteral("x-default"));
    writer.writeCharacters(xmlText(property.value));
    writer.writeEndElement();
    writer.writeEndElement();
    writer.writeEndElement();
}

void writeDescription(QXmlStreamWriter& writer, const std::vector<Property>& properties, const QString& about) {
    writer.writeNamespace(dublinCore, QStringLiteral("dc"));
    writer.writeNamespace(adobePdf, QStringLiteral("pdf"));
    writer.writeNamespace(xmp, QStringLiteral("xmp"));
    writer.writeStartElement(rdf, QStringLiteral("Description"));
    writer.writeAttribute(rdf, QStringLiteral("about"), about);
    for (const Property& property : properties) {
        if (!property.value.isNull()) writeProperty(writer, property);
    }
    writer.writeEndElement();
}

QByteArray freshMetadata(const std::vector<Property>& properties) {
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.writeNamespace(QStringLiteral("adobe:ns:meta/"), QStringLiteral("x"));
    writer.writeStartElement(QStringLiteral("adobe:ns:meta/"), QStringLiteral("xmpmeta"));
    writer.writeNamespace(rdf, QStringLiteral("rdf"));
    writer.writeStartElement(rdf, QStringLiteral("RDF"));
    writeDescription(writer, properties, QStringLiteral(""));
    writer.writeEndElement();
    writer.writeEndElement();
    return bytes;
}

/// Copies metadata, with the given properties in the place of what was there.
class MetadataUpdater {
public:
    MetadataUpdater(const QByteArray& existing, const std::vector<Property>& properties)
        : reader_(existing), writer_(&bytes_), properties_(properties) {}

    /// Empty when the metadata cannot be read.
    QByteArray run() {
        while (!reader_.atEnd()) {
            switch (reader_.readNext()) {
                case QXmlStreamReader::StartElement:
                    startElement();
                    break;
                case QXmlStreamReader::EndElement:
                    if (path_.size() == rdfDepth_) writeDescription(writer_, properties_, about_);
                    if (path_.size() == rdfDepth_) rdfDepth_ = 0;
                    path_.pop_back();
                    writer_.writeEndElement();
                    break;
                case QXmlStreamReader::Characters:
                    if (!path_.empty()) writer_.writeCharacters(reader_.text().toString());
                    break;
                case QXmlStreamReader::DTD:
                case QXmlStreamReader::EntityReference:
                    return {};
                default:
                    break;
            }
        }
        return reader_.hasError() || !found_ || writer_.hasError() ? QByteArray() : bytes_;
    }

private:
    [[nodiscard]] bool isReplaced(QStringView nameSpace, QStringView name) const {
        return std::ranges::any_of(properties_, [&](const Property& property) {
            return property.nameSpace == nameSpace && property.name == name &&
                   (property.removes || !property.value.isNull());
        });
    }

    void startElement() {
        const bool isRdf = reader_.namespaceUri() == rdf;
        const bool inRdf = rdfDepth_ != 0 && path_.size() == rdfDepth_;
        const bool inDescription = rdfDepth_ != 0 && path_.size() == rdfDepth_ + 1;
        if (inDescription && isReplaced(reader_.namespaceUri(), reader_.name())) {
            reader_.skipCurrentElement();
            return;
        }
        for (const auto& declaration : reader_.namespaceDeclarations()) {
            if (declaration.prefix().isEmpty()) {
                writer_.writeDefaultNamespace(declaration.namespaceUri().toString());
            } else {
                writer_.writeNamespace(declaration.namespaceUri().toString(), declaration.prefix().toString());
            }
        }
        writer_.writeStartElement(reader_.namespaceUri().toString(), reader_.name().toString());
        path_.push_back(0);
        for (const QXmlStreamAttribute& attribute : reader_.attributes()) {
            if (inRdf && isReplaced(attribute.namespaceUri(), attribute.name())) continue;
            if (inRdf && attribute.namespaceUri() == rdf && attribute.name() == QLatin1String("about")) {
                about_ = attribute.value().toString();
            }
            writer_.writeAttribute(attribute);
        }
        if (isRdf && !found_ && reader_.name() == QLatin1String("RDF")) {
            found_ = true;
            rdfDepth_ = path_.size();
        }
    }

    QXmlStreamReader reader_;
    QByteArray bytes_;
    QXmlStreamWriter writer_;
    const std::vector<Property>& properties_;
    std::vector<char> path_;    // an element each
    std::size_t rdfDepth_ = 0;  // of the RDF element while in it
    bool found_ = false;
    QString about_ = QStringLiteral("");
};

}  // namespace

QString isoDate(const QString& pdfDate) {
    static const QRegularExpression pattern(
        QStringLiteral("^(?:D:)?(\\d{4})(?:(\\d\\d)(?:(\\d\\d)(?:(\\d\\d)(?:(\\d\\d)(\\d\\d)?)?)?)?)?"
                       "(?:(Z)|([+-])(\\d\\d)'?(?:(\\d\\d)'?)?)?"));
    const auto match = pattern.match(pdfDate);
    if (!match.hasMatch()) return {};
    const auto part = [&match](int index, const char* missing) {
        return match.captured(index).isEmpty() ? QString::fromLatin1(missing) : match.captured(index);
    };
    const QString day = part(1, "") + QLatin1Char('-') + part(2, "01") + QLatin1Char('-') + part(3, "01");
    const QString time = part(4, "00") + QLatin1Char(':') + part(5, "00") + QLatin1Char(':') + part(6, "00");
    QString text = day + QLatin1Char('T') + time;
    if (!QDateTime::fromString(text, Qt::ISODate).isValid()) return {};
    if (!match.captured(8).isEmpty()) {
        text += match.captured(8) + match.captured(9) + QLatin1Char(':') + part(10, "00");
    } else if (!match.captured(7).isEmpty()) {
        text += QLatin1Char('Z');
    }
    return text;
}

std::string DocumentInformation::metadata(const QByteArray& existing) const {
    std::vector<Property> properties{
        {dublinCore, QStringLiteral("title"), title, Form::Language},
        {dublinCore, QStringLiteral("creator"), author, Form::List},
        {dublinCore, QStringLiteral("description"), subject, Form::Language},
        {adobePdf, QStringLiteral("Keywords"), keywords},
        {xmp, QStringLiteral("CreatorTool"), creator},
        {adobePdf, QStringLiteral("Producer"), producer},
        {xmp, QStringLiteral("CreateDate"), isoDate(creationDate), Form::Plain, false},
        {xmp, QStringLiteral("ModifyDate"), isoDate(modificationDate), Form::Plain, false},
    };
    // Some programs write the keywords a second time, one by one.
    if (keywordsReplaced) properties.push_back({dublinCore, QStringLiteral("subject"), QString()});
    QByteArray body = MetadataUpdater(existing, properties).run();
    if (body.isEmpty()) body = freshMetadata(properties);
    return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n" + body.toStdString() +
           "\n<?xpacket end=\"r\"?>";
}

}  // namespace quillon

#include "tests/support/TracedText.h"

#include "tests/support/ExternalReader.h"

#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include <stdexcept>

namespace quillon::test {
namespace {

QTransform transformOf(const QString& text) {
    const auto parts = text.split(QLatin1Char(' '));
    if (parts.size() != 6) throw std::runtime_error("no transformation: " + text.toStdString());
    const auto at = [&parts](int i) { return parts[i].toDouble(); };
    return {at(0), at(1), at(2), at(3), at(4), at(5)};
}

void addGlyph(const QXmlStreamAttributes& attributes, TracedText& text) {
    const auto number = [&attributes](const char* name) { return attributes.value(QLatin1String(name)).toDouble(); };
    if (text.text.isEmpty()) text.start = {number("x"), number("y")};
    text.text += attributes.value(QLatin1String("unicode"));
    text.width += number("adv") * text.size;
}

}  // namespace

QPointF TracedText::originOn(const TracedText& ownText) const {
    return ownText.transform.inverted().map(transform.map(QPointF(0, 0)));
}

std::vector<TracedText> tracedTexts(const std::string& file, int page) {
    const auto result = runProgram(QStringLiteral("mutool"),
                                   {QStringLiteral("trace"), QString::fromStdString(file), QString::number(page)});
    if (result.exitCode != 0) throw std::runtime_error("mutool cannot trace " + file + ": " + result.errors);
    QXmlStreamReader reader(QByteArray::fromStdString(result.output));
    std::vector<TracedText> texts;
    TracedText outer;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        const auto attributes = reader.attributes();
        if (reader.name() == QLatin1String("fill_text")) {
            outer = TracedText();
            outer.color = attributes.value(QLatin1String("color")).toString();
            if (attributes.hasAttribute(QLatin1String("alpha"))) {
                outer.alpha = attributes.value(QLatin1String("alpha")).toDouble();
            }
            outer.transform = transformOf(attributes.value(QLatin1String("transform")).toString());
        } else if (reader.name() == QLatin1String("span")) {
            texts.push_back(outer);
            texts.back().font = attributes.value(QLatin1String("font")).toString();
            texts.back().size =
                attributes.value(QLatin1String("trm")).toString().section(QLatin1Char(' '), 0, 0).toDouble();
        } else if (reader.name() == QLatin1String("g") && !texts.empty()) {
            addGlyph(attributes, texts.back());
        }
    }
    return texts;
}

TracedText textThatBegins(const std::vector<TracedText>& texts, const QString& beginning) {
    for (const TracedText& text : texts) {
        if (text.text.startsWith(beginning)) return text;
    }
    ADD_FAILURE() << "no text begins with " << beginning.toStdString();
    return {};
}

}  // namespace quillon::test

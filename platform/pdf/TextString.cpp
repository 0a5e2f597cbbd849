#include "platform/pdf/TextString.h"

#include "pdf/object/DocEncoding.h"

#include <QStringDecoder>
#include <QStringEncoder>

namespace quillon {

namespace {

constexpr std::string_view utf16Mark = "\xFE\xFF";
constexpr std::string_view swappedUtf16Mark = "\xFF\xFE";
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

}  // namespace

std::string toTextString(const QString& text) {
    std::string bytes;
    bool fits = true;
    for (const QChar character : text) {
        const int byte = pdf::toDocEncoding(character.unicode());
        fits = fits && byte >= 0;
        bytes += static_cast<char>(byte);
    }
    // Text that begins with the characters of a mark would be taken for what the mark announces.
    for (const std::string_view mark : {utf16Mark, swappedUtf16Mark, utf8Mark}) fits = fits && !bytes.starts_with(mark);
    if (fits) return bytes;
    QStringEncoder encoder(QStringConverter::Utf16BE);
    const QByteArray encoded = encoder.encode(text);
    return std::string(utf16Mark) + encoded.toStdString();
}

QString fromTextString(std::string_view bytes) {
    const auto decode = [bytes](QStringConverter::Encoding encoding, std::size_t mark) {
        QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
        const QString text =
            decoder.decode(QByteArrayView(bytes.data() + mark, static_cast<qsizetype>(bytes.size() - mark)));
        return text;
    };
    if (bytes.starts_with(utf16Mark)) return decode(QStringConverter::Utf16BE, 2);
    if (bytes.starts_with(swappedUtf16Mark)) return decode(QStringConverter::Utf16LE, 2);
    if (bytes.starts_with(utf8Mark)) return decode(QStringConverter::Utf8, 3);
    QString text;
    for (const char byte : bytes) {
        if (const char16_t character = pdf::fromDocEncoding(static_cast<unsigned char>(byte)); character != 0)
            text += QChar(character);
    }
    return text;
}

}  // namespace quillon

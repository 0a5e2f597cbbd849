#include "platform/pdf/TextString.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <array>

namespace quillon {

namespace {

// Where PDFDocEncoding is not Latin-1 (ISO 32000-2, D.2); 0 where it has no character.
constexpr std::array<char16_t, 8> from18 = {0x02D8, 0x02C7, 0x02C6, 0x02D9, 0x02DD, 0x02DB, 0x02DA, 0x02DC};
constexpr std::array<char16_t, 33> from80 = {0x2022, 0x2020, 0x2021, 0x2026, 0x2014, 0x2013, 0x0192, 0x2044, 0x2039,
                                             0x203A, 0x2212, 0x2030, 0x201E, 0x201C, 0x201D, 0x2018, 0x2019, 0x201A,
                                             0x2122, 0xFB01, 0xFB02, 0x0141, 0x0152, 0x0160, 0x0178, 0x017D, 0x0131,
                                             0x0142, 0x0153, 0x0161, 0x017E, 0,      0x20AC};

constexpr std::string_view utf16Mark = "\xFE\xFF";
constexpr std::string_view swappedUtf16Mark = "\xFF\xFE";
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

char16_t decodeByte(unsigned char byte) {
    if (byte >= 0x18 && byte < 0x20) return from18[byte - 0x18U];
    if (byte >= 0x80 && byte <= 0xA0) return from80[byte - 0x80U];
    return byte;
}

/// The byte for a character; -1 where PDFDocEncoding has none.
int encodeCharacter(char16_t character) {
    if (const auto at = std::ranges::find(from18, character); at != from18.end()) {
        return 0x18 + static_cast<int>(at - from18.begin());
    }
    if (const auto at = std::ranges::find(from80, character); character != 0 && at != from80.end()) {
        return 0x80 + static_cast<int>(at - from80.begin());
    }
    const bool latin =
        (character >= 0x20 && character < 0x7F) || (character > 0xA0 && character <= 0xFF && character != 0xAD);
    const bool control = character == u'\t' || character == u'\n' || character == u'\r';
    return latin || control ? static_cast<int>(character) : -1;
}

}  // namespace

std::string toTextString(const QString& text) {
    std::string bytes;
    bool fits = true;
    for (const QChar character : text) {
        const int byte = encodeCharacter(character.unicode());
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
        if (const char16_t character = decodeByte(static_cast<unsigned char>(byte)); character != 0)
            text += QChar(character);
    }
    return text;
}

}  // namespace quillon

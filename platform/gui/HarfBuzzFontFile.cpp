#include "platform/gui/HarfBuzzFontFile.h"

#include <QImage>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <hb-ot.h>
#include <hb-subset.h>
#include <memory>

namespace quillon {

namespace {

struct Release {
    void operator()(hb_blob_t* blob) const noexcept { hb_blob_destroy(blob); }
    void operator()(hb_face_t* face) const noexcept { hb_face_destroy(face); }
    void operator()(hb_subset_input_t* input) const noexcept { hb_subset_input_destroy(input); }
};
template <class T>
using Held = std::unique_ptr<T, Release>;

bool hasTable(hb_face_t* face, hb_tag_t tag) {
    return hb_blob_get_length(Held<hb_blob_t>(hb_face_reference_table(face, tag)).get()) > 0;
}

std::string bytesOf(hb_blob_t* blob) {
    unsigned length = 0;
    const char* data = hb_blob_get_data(blob, &length);
    return data ? std::string(data, length) : std::string();
}

/// A 16-bit number of a table, 0 where it is too short.
unsigned wordAt(const std::string& table, std::size_t offset) {
    if (offset + 2 > table.size()) return 0;
    return static_cast<unsigned>(static_cast<unsigned char>(table[offset]) << 8U |
                                 static_cast<unsigned char>(table[offset + 1]));
}

double signedAt(const std::string& table, std::size_t offset) {
    const unsigned word = wordAt(table, offset);
    return word < 0x8000U ? word : static_cast<double>(word) - 0x10000;
}

/// Whether a CFF font names its glyphs by numbers of a character collection, so that these and not the indexes of the
/// glyphs stand in a PDF file: its Top DICT has the operator ROS.
bool isCidKeyed(const std::string& cff) {
    const auto byte = [&cff](std::size_t at) { return at < cff.size() ? static_cast<unsigned char>(cff[at]) : 0U; };
    const auto offset = [&byte](std::size_t at, unsigned size) {
        std::size_t value = 0;
        for (unsigned i = 0; i < size; ++i) value = value << 8U | byte(at + i);
        return value;
    };
    std::size_t at = byte(2);  // behind the header: the Name INDEX, then that of the Top DICTs
    const std::size_t names = byte(at) << 8U | byte(at + 1);
    if (names == 0) return false;
    const unsigned nameSize = byte(at + 2);
    at = at + 2 + (names + 1) * nameSize + offset(at + 3 + names * nameSize, nameSize);
    const unsigned size = byte(at + 2);
    std::size_t begin = at + 2 + 2 * size + offset(at + 3, size);
    // ROS comes first, behind its three operands.
    for (int operands = 0; begin < cff.size() && operands <= 3; ++operands) {
        const unsigned first = byte(begin);
        if (first <= 21) return first == 12 && byte(begin + 1) == 30;
        begin += first == 28 ? 3U : first == 29 ? 5U : first < 247 ? 1U : 2U;
    }
    return false;
}

}  // namespace

HarfBuzzFontFile::HarfBuzzFontFile(const QRawFont& font)
    : font_(font), face_(hb_face_create_for_tables(tableOf, this, nullptr)), hbFont_(nullptr) {
    const auto upem = static_cast<unsigned>(font_.unitsPerEm());
    if (upem > 0) hb_face_set_upem(face_, upem);
    hbFont_ = hb_font_create(face_);
    const bool trueType = hasTable(face_, HB_TAG('g', 'l', 'y', 'f'));
    const Held<hb_blob_t> cff(hb_face_reference_table(face_, HB_TAG('C', 'F', 'F', ' ')));
    postScript_ = !trueType && hb_blob_get_length(cff.get()) > 0;
    outlines_ = trueType || postScript_ || !hasTable(face_, HB_TAG('C', 'B', 'D', 'T'));
    const bool usable = trueType || (postScript_ && !isCidKeyed(bytesOf(cff.get())));
    embeddable_ = usable && mayBeEmbedded();
}

HarfBuzzFontFile::~HarfBuzzFontFile() {
    hb_font_destroy(hbFont_);
    hb_face_destroy(face_);
}

/// What HarfBuzz calls for a table.
hb_blob_t* HarfBuzzFontFile::tableOf(hb_face_t*, hb_tag_t tag, void* self) {
    auto* const file = static_cast<HarfBuzzFontFile*>(self);
    const auto [place, isNew] = file->tables_.try_emplace(tag);
    if (isNew) {
        std::array<char, 5> name{};
        hb_tag_to_string(tag, name.data());
        place->second = file->font_.fontTable(name.data());
    }
    return hb_blob_create(place->second.constData(), static_cast<unsigned>(place->second.size()),
                          HB_MEMORY_MODE_READONLY, nullptr, nullptr);
}

bool HarfBuzzFontFile::mayBeEmbedded() const {
    constexpr std::size_t typeOffset = 8;
    const unsigned type =
        wordAt(bytesOf(Held<hb_blob_t>(hb_face_reference_table(face_, HB_TAG('O', 'S', '/', '2'))).get()), typeOffset);
    const bool restricted = (type & 0x000FU) == 0x0002U;
    const bool noSubsetting = (type & 0x0100U) != 0;
    const bool bitmapsOnly = (type & 0x0200U) != 0;
    return !restricted && !noSubsetting && !bitmapsOnly;
}

std::string HarfBuzzFontFile::postScriptName() const {
    std::array<char, 64> name{};
    auto length = static_cast<unsigned>(name.size());
    hb_ot_name_get_utf8(face_, HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &length, name.data());
    std::string text(name.data());
    if (text.empty()) text = font_.familyName().toStdString();
    std::erase_if(text, [](char c) { return c <= ' ' || c >= '\x7f'; });
    return text.empty() ? "Font" : text;
}

double HarfBuzzFontFile::advance(std::uint32_t glyph) const {
    return hb_font_get_glyph_h_advance(hbFont_, glyph) * 1000.0 / hb_face_get_upem(face_);
}

double HarfBuzzFontFile::ascent() const {
    hb_font_extents_t extents{};
    hb_font_get_h_extents(hbFont_, &extents);
    return extents.ascender * 1000.0 / hb_face_get_upem(face_);
}

double HarfBuzzFontFile::descent() const {
    hb_font_extents_t extents{};
    hb_font_get_h_extents(hbFont_, &extents);
    return extents.descender * 1000.0 / hb_face_get_upem(face_);
}

pdf::Rectangle HarfBuzzFontFile::boundingBox() const {
    const std::string head = bytesOf(Held<hb_blob_t>(hb_face_reference_table(face_, HB_TAG('h', 'e', 'a', 'd'))).get());
    const auto scaled = [&](std::size_t offset) { return signedAt(head, offset) * 1000.0 / hb_face_get_upem(face_); };
    return {scaled(36), scaled(38), scaled(40), scaled(42)};
}

double HarfBuzzFontFile::drawnAdvance(std::uint32_t glyph) const {
    const auto advances = font_.advancesForGlyphIndexes({glyph});
    return advances.isEmpty() ? 0 : advances.front().x() * scale();
}

double HarfBuzzFontFile::drawnAscent() const {
    return font_.ascent() * scale();
}

double HarfBuzzFontFile::drawnDescent() const {
    return -font_.descent() * scale();
}

FontFile::Outline HarfBuzzFontFile::outline(std::uint32_t glyph) const {
    // Asked for the outline of a picture, Qt has none, and measures the font wrongly from then on.
    const QPainterPath path = outlines_ ? font_.pathForGlyph(glyph) : QPainterPath();
    const QRectF box = path.boundingRect();
    // Qt counts downwards.
    Outline result{{},
                   {box.left() * scale(), -box.bottom() * scale(), box.right() * scale(), -box.top() * scale()},
                   path.fillRule() == Qt::OddEvenFill};
    const auto point = [&](int at) {
        const QPainterPath::Element element = path.elementAt(at);
        return PathStep::Point{element.x * scale(), -element.y * scale()};
    };
    for (int i = 0; i < path.elementCount(); ++i) {
        switch (path.elementAt(i).type) {
            case QPainterPath::MoveToElement:
                result.steps.push_back({PathStep::Kind::Move, {point(i)}});
                break;
            case QPainterPath::LineToElement:
                result.steps.push_back({PathStep::Kind::Line, {point(i)}});
                break;
            case QPainterPath::CurveToElement:
                result.steps.push_back({PathStep::Kind::Curve, {point(i), point(i + 1), point(i + 2)}});
                i += 2;
                break;
            case QPainterPath::CurveToDataElement:
                break;
        }
    }
    return result;
}

/// The layout takes pictures for smaller than the font's file says; they must fit the room that it gave them.
pdf::Rectangle HarfBuzzFontFile::placeOf(std::uint32_t glyph, const pdf::Rectangle& stated) const {
    const QRectF box = font_.boundingRect(glyph);
    if (!box.isEmpty()) {
        return {box.left() * scale(), -box.bottom() * scale(), box.right() * scale(), -box.top() * scale()};
    }
    const double shrink = std::min(1.0, drawnAdvance(glyph) / std::max(stated.width(), 1.0));
    return {stated.left * shrink, stated.bottom * shrink, stated.right * shrink, stated.top * shrink};
}

std::optional<FontFile::Picture> HarfBuzzFontFile::picture(std::uint32_t glyph) const {
    const std::string png = bytesOf(Held<hb_blob_t>(hb_ot_color_glyph_reference_png(hbFont_, glyph)).get());
    hb_glyph_extents_t extents{};
    if (png.empty() || !hb_font_get_glyph_extents(hbFont_, glyph, &extents)) return std::nullopt;
    QImage image = QImage::fromData(QByteArray::fromStdString(png), "PNG");
    if (image.isNull()) return std::nullopt;
    image.convertTo(QImage::Format_ARGB32);
    const double unit = 1000.0 / hb_face_get_upem(face_);
    // The height is counted downwards.
    const pdf::Rectangle stated{extents.x_bearing * unit, (extents.y_bearing + extents.height) * unit,
                                (extents.x_bearing + extents.width) * unit, extents.y_bearing * unit};
    Picture result{placeOf(glyph, stated), image.width(), image.height(), {}, {}};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            for (const int value : {qRed(pixel), qGreen(pixel), qBlue(pixel)})
                result.colors += static_cast<char>(value);
            result.alphas += static_cast<char>(qAlpha(pixel));
        }
    }
    return result;
}

std::optional<std::string> HarfBuzzFontFile::subset(const std::set<std::uint32_t>& glyphs) const {
    const Held<hb_subset_input_t> input(hb_subset_input_create_or_fail());
    if (!input) return std::nullopt;
    for (const std::uint32_t glyph : glyphs) hb_set_add(hb_subset_input_glyph_set(input.get()), glyph);
    // Without an outline of the missing glyph, which is never shown.
    hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_RETAIN_GIDS | HB_SUBSET_FLAGS_NO_HINTING);
    // A variable font is drawn, and so embedded, as it is without variations.
    const unsigned axes = hb_ot_var_get_axis_count(face_);
    std::vector<hb_ot_var_axis_info_t> infos(axes);
    unsigned count = axes;
    hb_ot_var_get_axis_infos(face_, 0, &count, infos.data());
    for (const auto& axis : infos) hb_subset_input_pin_axis_to_default(input.get(), face_, axis.tag);
    hb_set_t* const dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
    // Readers find glyphs by their indexes and need none of these.
    for (const char* tag : {"cmap", "name", "post", "OS/2", "GSUB", "GPOS", "GDEF", "kern", "DSIG", "gasp", "BASE",
                            "STAT", "vhea", "vmtx", "VORG", "COLR", "CPAL", "MATH", "FFTM", "PfEd", "BDF "}) {
        hb_set_add(dropped, hb_tag_from_string(tag, 4));
    }
    const Held<hb_face_t> result(hb_subset_or_fail(face_, input.get()));
    if (!result) return std::nullopt;
    const Held<hb_blob_t> blob(postScript_ ? hb_face_reference_table(result.get(), HB_TAG('C', 'F', 'F', ' '))
                                           : hb_face_reference_blob(result.get()));
    std::string bytes = bytesOf(blob.get());
    if (bytes.empty()) return std::nullopt;
    return bytes;
}

}  // namespace quillon

#include "platform/image/ImageEncoder.h"

#include "platform/image/BilevelEncoder.h"
#include "platform/image/FlateEncoder.h"
#include "platform/image/PaletteIndex.h"
#include "platform/image/PdfText.h"
#include "platform/image/PngPredictor.h"
#include "platform/image/SamplePacker.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace quillon {

namespace {

// A palette of more colours takes as many bits as plain grey samples, which predictors make smaller.
constexpr std::size_t mostGraysOfPalette = 16;

bool areMultiplesOf(int step, const std::vector<QRgb>& grays) {
    return std::all_of(grays.begin(), grays.end(), [step](QRgb gray) { return qRed(gray) % step == 0; });
}

// The fewest bits whose values, spread evenly from black to white, include all the grays.
int bitsOfGrays(const std::vector<QRgb>& grays) {
    if (areMultiplesOf(255, grays)) return 1;
    if (areMultiplesOf(85, grays)) return 2;
    return areMultiplesOf(17, grays) ? 4 : 8;
}

int bitsOfIndices(std::size_t count) {
    if (count <= 2) return 1;
    if (count <= 4) return 2;
    return count <= 16 ? 4 : 8;
}

QRgb eightBitColor(QRgba64 pixel) {
    return qRgb(pixel.red() >> 8, pixel.green() >> 8, pixel.blue() >> 8);
}

std::string paletteText(const std::vector<QRgb>& colors, int components) {
    std::vector<char> bytes;
    for (const QRgb color : colors) {
        bytes.push_back(static_cast<char>(qRed(color)));
        if (components == 1) continue;
        bytes.push_back(static_cast<char>(qGreen(color)));
        bytes.push_back(static_cast<char>(qBlue(color)));
    }
    return pdfHexString(bytes);
}

}  // namespace

ImageEncoder::ImageEncoder(const RasterImage& image, IccProfile profile)
    : image_(image), facts_(PictureFacts::of(image)), profile_(std::move(profile)) {}

// A profile for RGB says nothing about grey samples, so with one even a grey picture stays RGB.
bool ImageEncoder::mayBeGray() const {
    return facts_.isGray && profile_.componentCount() != 3;
}

ImageEncoder::Form ImageEncoder::chooseForm() const {
    if (!facts_.isEightBit) return {mayBeGray() ? Source::Gray : Source::Rgb, 16};
    if (!facts_.colors) return {Source::Rgb, 8};
    const std::size_t count = facts_.colors->size();
    if (!mayBeGray()) return {Source::Palette, bitsOfIndices(count)};
    const int grayBits = bitsOfGrays(*facts_.colors);
    if (count > mostGraysOfPalette || grayBits <= bitsOfIndices(count)) return {Source::Gray, grayBits};
    return {Source::Palette, bitsOfIndices(count)};
}

std::uint32_t ImageEncoder::addTo(pdf::ObjectSink& sink) const {
    const Form form = chooseForm();
    std::string colorEntries = "/ColorSpace" + addColorSpace(form.source, sink);
    if (!facts_.isOpaque) colorEntries += "/SMask " + std::to_string(addSoftMask(sink)) + " 0 R";
    return addSamples(form, colorEntries, sink);
}

std::string ImageEncoder::addColorSpace(Source source, pdf::ObjectSink& sink) const {
    const int components = mayBeGray() ? 1 : 3;
    const std::string space = profile_.addColorSpace(components, sink);
    if (source != Source::Palette) return space;
    return "[/Indexed" + space + " " + std::to_string(facts_.colors->size() - 1) +
           paletteText(*facts_.colors, components) + "]";
}

std::uint32_t ImageEncoder::addSoftMask(pdf::ObjectSink& sink) const {
    const int softBits = facts_.isEightBit ? 8 : 16;
    return addSamples({Source::Alpha, facts_.hasHardAlpha ? 1 : softBits}, "/ColorSpace/DeviceGray", sink);
}

std::uint32_t ImageEncoder::addSamples(Form form, const std::string& colorEntries, pdf::ObjectSink& sink) const {
    const std::string width = std::to_string(image_.width());
    const std::string bits = std::to_string(form.bits);
    const std::string entries = "/Type/XObject/Subtype/Image/Width " + width + "/Height " +
                                std::to_string(image_.height()) + "/BitsPerComponent " + bits + colorEntries;
    if (form.bits == 1 && form.source != Source::Palette) {
        BilevelEncoder encoder(image_.width(), image_.height());
        packRows(form, [&](std::span<const unsigned char> row) { encoder.write(row); });
        return encoder.addTo(sink, entries);
    }

    FlateEncoder flate;
    // Indices, and samples that share a byte, are not near each other in value as those of scans are.
    if (form.bits < 8 || form.source == Source::Palette) {
        packRows(form, [&](std::span<const unsigned char> row) { flate.write(row); });
        return sink.addStream(entries + "/Filter/FlateDecode", flate.finish());
    }
    const int components = form.source == Source::Rgb ? 3 : 1;
    const auto pixelLength = static_cast<std::size_t>(components * form.bits / 8);
    PngPredictor predictor(pixelLength * static_cast<std::size_t>(image_.width()), pixelLength);
    packRows(form, [&](std::span<const unsigned char> row) { flate.write(predictor.filter(row)); });
    return sink.addStream(entries + "/Filter/FlateDecode/DecodeParms<</Predictor 15/Colors " +
                              std::to_string(components) + "/BitsPerComponent " + bits + "/Columns " + width + ">>",
                          flate.finish());
}

template <typename Write>
void ImageEncoder::packRows(Form form, Write write) const {
    SamplePacker packer(form.bits);
    PaletteIndex palette(facts_.colors ? std::span<const QRgb>(*facts_.colors) : std::span<const QRgb>());
    image_.forEachRow([&](std::span<const QRgba64> row) {
        for (const QRgba64 pixel : row) {
            switch (form.source) {
                case Source::Gray:
                    packer.addSample(pixel.red());
                    break;
                case Source::Alpha:
                    packer.addSample(pixel.alpha());
                    break;
                case Source::Palette:
                    packer.addValue(palette.indexOf(eightBitColor(pixel)));
                    break;
                case Source::Rgb:
                    packer.addSample(pixel.red());
                    packer.addSample(pixel.green());
                    packer.addSample(pixel.blue());
                    break;
            }
        }
        write(packer.endRow());
    });
}

}  // namespace quillon

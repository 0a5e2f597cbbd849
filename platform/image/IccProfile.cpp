#include "platform/image/IccProfile.h"

#include "platform/image/ByteView.h"
#include "platform/image/FlateEncoder.h"

#include <string_view>
#include <utility>

namespace quillon {

namespace {

constexpr std::size_t headerLength = 128;

constexpr std::uint32_t signature(std::string_view text) {
    std::uint32_t value = 0;
    for (const char letter : text) value = value << 8 | static_cast<unsigned char>(letter);
    return value;
}

bool isAllowedClass(std::uint32_t deviceClass) {
    return deviceClass == signature("scnr") || deviceClass == signature("mntr") || deviceClass == signature("prtr") ||
           deviceClass == signature("spac");
}

int componentsOf(std::uint32_t colourSpace) {
    switch (colourSpace) {
        case signature("GRAY"):
            return 1;
        case signature("RGB "):
            return 3;
        case signature("CMYK"):
            return 4;
        default:
            return 0;
    }
}

}  // namespace

IccProfile::IccProfile(std::vector<char> bytes) : bytes_(std::move(bytes)) {
    const ByteView header(bytes_);
    const std::size_t declaredLength = header.u32(0);
    if (!header.has(0, headerLength) || declaredLength < headerLength || declaredLength > bytes_.size()) return;
    if (header.u32(36) != signature("acsp") || !isAllowedClass(header.u32(12))) return;
    componentCount_ = componentsOf(header.u32(16));
    bytes_.resize(declaredLength);  // some writers pad the chunk or tag
}

std::string IccProfile::addColorSpace(int components, pdf::ObjectSink& sink) const {
    if (components != componentCount_) return deviceSpace(components);

    FlateEncoder encoder;
    encoder.write(std::span(reinterpret_cast<const unsigned char*>(bytes_.data()), bytes_.size()));
    const std::string entries =
        "/N " + std::to_string(components) + "/Alternate" + deviceSpace(components) + "/Filter/FlateDecode";
    const std::uint32_t number = sink.addStream(entries, encoder.finish());
    return "[/ICCBased " + std::to_string(number) + " 0 R]";
}

std::string IccProfile::deviceSpace(int components) {
    switch (components) {
        case 1:
            return "/DeviceGray";
        case 4:
            return "/DeviceCMYK";
        default:
            return "/DeviceRGB";
    }
}

}  // namespace quillon

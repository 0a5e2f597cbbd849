// The module's only way in.

#include "platform/gui/GuiServices.h"
#include "platform/gui/QtRasterDecoder.h"

namespace {

using namespace quillon;

class QtGuiServices final : public GuiServices {
public:
    [[nodiscard]] std::unique_ptr<RasterDecoder> makeDecoder(QIODevice& device,
                                                             const QByteArray& format) const override {
        return std::make_unique<QtRasterDecoder>(device, format);
    }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const GuiServices* quillonGuiServices() {
    static const QtGuiServices services;
    return &services;
}

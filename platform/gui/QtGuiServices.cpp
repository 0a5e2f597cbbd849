// The module's only way in.

#include "platform/gui/GuiServices.h"
#include "platform/gui/LineLayouter.h"
#include "platform/gui/QtRasterDecoder.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>

namespace {

using namespace quillon;

class QtGuiServices final : public GuiServices {
public:
    [[nodiscard]] std::unique_ptr<RasterDecoder> makeDecoder(QIODevice& device,
                                                             const QByteArray& format) const override {
        return std::make_unique<QtRasterDecoder>(device, format);
    }
    [[nodiscard]] std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv) const override {
        return std::make_unique<QGuiApplication>(argc, argv);
    }
    [[nodiscard]] bool hasFontFamily(const QString& name) const override { return QFontDatabase::hasFamily(name); }
    [[nodiscard]] QString usualSansSerif() const override {
        QFont any;
        any.setStyleHint(QFont::SansSerif);
        return QFontInfo(any).family();
    }
    [[nodiscard]] LineLayout layOut(const QString& text, const QString& family) const override {
        return layOutLine(text, family);
    }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const GuiServices* quillonGuiServices() {
    static const QtGuiServices services;
    return &services;
}

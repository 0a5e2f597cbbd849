#pragma once

#include "platform/image/RasterDecoder.h"
#include "platform/text/LineLayout.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QIODevice>
#include <QString>

#include <memory>

namespace quillon {

/// What of the platform's services needs Qt Gui.
///
/// It lies in a module that is loaded when it is first asked for: to load Qt Gui, with the forty libraries that it
/// needs, takes longer than to join a dozen scans, and most merges have no use for it. The rest of the platform
/// therefore links Qt Core alone, and the module knows of the program nothing but interfaces.
class GuiServices {
public:
    /// Null, after a warning, when the module cannot be loaded. May be called from any thread.
    [[nodiscard]] static const GuiServices* instance();

    /// A decoder for the picture in `device`, which must outlive it. `format` is Qt's name of the file's kind, or an
    /// empty array to tell it by the content.
    [[nodiscard]] virtual std::unique_ptr<RasterDecoder> makeDecoder(QIODevice& device,
                                                                     const QByteArray& format) const = 0;

    /// An application in which there is text. Without one, what follows may not be called.
    [[nodiscard]] virtual std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv) const = 0;
    [[nodiscard]] virtual bool hasFontFamily(const QString& name) const = 0;
    /// The family that the text system takes where any sans serif will do.
    [[nodiscard]] virtual QString usualSansSerif() const = 0;
    /// As LineLayout::of.
    [[nodiscard]] virtual LineLayout layOut(const QString& text, const QString& family) const = 0;

protected:
    GuiServices() = default;
    ~GuiServices() = default;
};

}  // namespace quillon

#include "platform/text/LineLayout.h"

#include "platform/gui/GuiServices.h"

namespace quillon {

LineLayout LineLayout::of(const QString& text, const QString& family) {
    const GuiServices* const services = GuiServices::instance();
    return services ? services->layOut(text, family) : LineLayout();
}

}  // namespace quillon

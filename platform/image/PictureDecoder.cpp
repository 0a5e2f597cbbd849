#include "platform/image/PictureDecoder.h"

#include "platform/gui/GuiServices.h"

namespace quillon {

PictureDecoder::PictureDecoder(const std::shared_ptr<pdf::InputFile>& file, const QByteArray& format) : device_(file) {
    if (const GuiServices* services = GuiServices::instance()) decoder_ = services->makeDecoder(device_, format);
}

}  // namespace quillon

#include "platform/image/PictureDecoder.h"

namespace quillon {

PictureDecoder::PictureDecoder(const std::shared_ptr<pdf::InputFile>& file, const QByteArray& format)
    : services_(GuiServices::instance()), device_(file) {
    if (services_) decoder_ = services_->makeDecoder(device_, format);
}

}  // namespace quillon

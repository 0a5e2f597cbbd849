#include "platform/image/InputFileDevice.h"

#include <utility>

namespace quillon {

InputFileDevice::InputFileDevice(std::shared_ptr<pdf::InputFile> file) : file_(std::move(file)) {
    open(ReadOnly);
}

qint64 InputFileDevice::size() const {
    return static_cast<qint64>(file_->size());
}

bool InputFileDevice::seek(qint64 position) {
    if (!QIODevice::seek(position)) return false;
    offset_ = position;
    return true;
}

qint64 InputFileDevice::readData(char* data, qint64 maximumLength) {
    const std::span<char> into(data, static_cast<std::size_t>(maximumLength));
    const auto count = static_cast<qint64>(file_->readAt(static_cast<std::uint64_t>(offset_), into));
    offset_ += count;
    return count == 0 && maximumLength > 0 ? -1 : count;
}

qint64 InputFileDevice::writeData(const char*, qint64) {
    return -1;
}

}  // namespace quillon

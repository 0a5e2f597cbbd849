#pragma once

#include "pdf/io/InputFile.h"

#include <QIODevice>

#include <memory>

namespace quillon {

/// An InputFile for Qt's decoders, read-only and open from the start.
class InputFileDevice final : public QIODevice {
public:
    explicit InputFileDevice(std::shared_ptr<pdf::InputFile> file);

    [[nodiscard]] qint64 size() const override;
    [[nodiscard]] bool isSequential() const override { return false; }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char* data, qint64 maximumLength) override;
    qint64 writeData(const char* data, qint64 length) override;

private:
    std::shared_ptr<pdf::InputFile> file_;
    qint64 offset_ = 0;
};

}  // namespace quillon

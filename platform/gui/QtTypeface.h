#pragma once

#include "platform/text/Typeface.h"

#include <QRawFont>

namespace quillon {

/// One of Qt's fonts.
class QtTypeface final : public Typeface {
public:
    explicit QtTypeface(const QRawFont& font);

    [[nodiscard]] const QByteArray& key() const override { return key_; }
    [[nodiscard]] std::unique_ptr<const FontFile> open() const override;

private:
    QRawFont font_;
    QByteArray key_;
};

}  // namespace quillon

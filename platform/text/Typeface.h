#pragma once

#include "platform/text/FontFile.h"

#include <QByteArray>

#include <memory>

namespace quillon {

/// A font in which the text system shows a piece of a line.
class Typeface {
public:
    Typeface() = default;
    Typeface(const Typeface&) = delete;
    Typeface& operator=(const Typeface&) = delete;
    virtual ~Typeface() = default;

    /// The same for the same font only, however often the text system hands it out.
    [[nodiscard]] virtual const QByteArray& key() const = 0;
    [[nodiscard]] virtual std::unique_ptr<const FontFile> open() const = 0;
};

}  // namespace quillon

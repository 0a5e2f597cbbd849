#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>

#include <optional>

namespace quillon {

/// An installed font family at a size. Like all of the text system, to be used only while there is a QGuiApplication.
class Font {
public:
    /// 12 points, also where a size that is not above 0 is asked for.
    static constexpr double defaultSize = 12;

    /// The default font.
    Font();

    /// The font of a family, such as "DejaVu Sans", at a size in points. Nothing when no such family is installed, but
    /// "Microsoft Sans Serif" is always there: without it, the installed sans serif that is nearest to it.
    [[nodiscard]] static std::optional<Font> fontWithName(const QString& name, double size);
    /// The same as an object for attributesWithObjectsAndKeys: a Font, or invalid.
    [[nodiscard]] static QVariant objectWithName(const QString& name, double size);

    [[nodiscard]] const QString& family() const noexcept { return family_; }
    /// Points.
    [[nodiscard]] double size() const noexcept { return size_; }

    friend bool operator==(const Font&, const Font&) = default;

private:
    Font(QString family, double size);

    QString family_;
    double size_;
};

}  // namespace quillon

Q_DECLARE_METATYPE(quillon::Font)

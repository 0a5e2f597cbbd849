#pragma once

#include <QPointF>
#include <QString>
#include <QTransform>

#include <string>
#include <vector>

namespace quillon::test {

/// Glyphs that a page shows in one go, as mutool sees them.
struct TracedText {
    QString text;
    QString font;
    double size = 0;  ///< points
    QString color;    ///< components with blanks between them
    double alpha = 1;
    QTransform transform;  ///< from the text's space to that of the drawn page
    QPointF start;         ///< of the first glyph, in the text's space
    double width = 0;      ///< sum of the advances, in the text's space

    /// Where the origin of the text's space lies in the user space of the page, which a text of the page's own content
    /// without a transformation tells.
    [[nodiscard]] QPointF originOn(const TracedText& ownText) const;
};

/// The texts of a page, counted from 1, in the order in which they are drawn.
[[nodiscard]] std::vector<TracedText> tracedTexts(const std::string& file, int page = 1);

/// The one of the texts that begins so; fails the test when there is none.
[[nodiscard]] TracedText textThatBegins(const std::vector<TracedText>& texts, const QString& beginning);

}  // namespace quillon::test

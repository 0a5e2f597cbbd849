#pragma once

#include <QFont>
#include <QPalette>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QEvent;
class QLineEdit;
class QObject;
class QWidget;

namespace quillon {

/// Draws one line of text in a cell of a table, elided in the middle where it is too long, so that the ends, which tell
/// file names apart, stay visible. All lengths are device-independent pixels, y growing downward. Main thread only.
class TextFieldCell {
public:
    /// What is left free on either side of the text.
    static constexpr double margin = 3;

    TextFieldCell() = default;
    TextFieldCell(const TextFieldCell&) = delete;
    TextFieldCell& operator=(const TextFieldCell&) = delete;
    virtual ~TextFieldCell() = default;

    [[nodiscard]] const QString& stringValue() const noexcept { return stringValue_; }
    void setStringValue(const QString& value) { stringValue_ = value; }
    void setFont(const QFont& font) { font_ = font; }
    /// The colour of the text.
    void setTextColor(const QColor& color) { textColor_ = color; }

    /// What the cell needs to show all of its text.
    [[nodiscard]] virtual QSizeF cellSize() const;
    [[nodiscard]] virtual QRectF imageRectForBounds(const QRectF& bounds) const;
    /// Where the text is edited.
    [[nodiscard]] virtual QRectF titleRectForBounds(const QRectF& bounds) const;

    /// Puts the editor over the cell, in `inView`, with its text; `delegate` is told of the editor's events, and
    /// `event` is what began the editing. Either may be absent.
    virtual void editWithFrame(const QRectF& frame, QWidget& inView, QLineEdit& editor, QObject* delegate,
                               QEvent* event);
    /// The same with `length` characters from `start` selected.
    virtual void selectWithFrame(const QRectF& frame, QWidget& inView, QLineEdit& editor, QObject* delegate, int start,
                                 int length);

    /// Draws into the current GraphicsContext.
    virtual void drawWithFrame(const QRectF& frame, QWidget& inView);

private:
    QString stringValue_;
    QFont font_;
    QColor textColor_;
};

}  // namespace quillon

#include "platform/ui/SymbolIcon.h"

#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include <utility>

namespace quillon {
namespace {

class SymbolIconEngine final : public QIconEngine {
public:
    explicit SymbolIconEngine(QByteArray drawing) : drawing_(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const QPalette palette = QApplication::palette();
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        const QColor line = palette.color(group, role);
        const QColor accent =
            mode == QIcon::Normal || mode == QIcon::Active ? palette.color(QPalette::Highlight) : line;
        QByteArray drawing = drawing_;
        drawing.replace("#0000ff", accent.name().toLatin1());
        drawing.replace("#000000", line.name().toLatin1());
        QSvgRenderer(drawing).render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SymbolIconEngine(drawing_); }

private:
    QByteArray drawing_;
};

}  // namespace

QIcon symbolIcon(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QIcon(new SymbolIconEngine(file.readAll()));
}

}  // namespace quillon

#include "platform/gui/LineLayouter.h"

#include "platform/gui/QtTypeface.h"

#include <QFont>
#include <QGlyphRun>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <limits>
#include <utility>

namespace quillon {

namespace {

// Fonts take whole pixels only and place glyphs in 64ths of one, so a line is laid out large and scaled. Hinting would
// fit it to those pixels.
constexpr int pixelsPerEm = 100;

QString singleLine(const QString& text) {
    QString line = text;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        const bool paired = c.isHighSurrogate() && i + 1 < line.size() && line[i + 1].isLowSurrogate();
        if (paired) {
            ++i;
        } else if (c.isSurrogate()) {
            line[i] = QChar::ReplacementCharacter;
        } else if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
                   c == QChar::ParagraphSeparator) {
            line[i] = QLatin1Char(' ');
        }
    }
    return line;
}

/// Takes the glyphs of a line apart into clusters.
///
/// A layout tells which glyphs show a range of the text, so ranges are halved until they are clusters. A range whose
/// glyphs are those of its characters one by one, which is all of most lines, needs no halving.
class ClusterFinder {
public:
    ClusterFinder(const QTextLayout& layout, LineLayout& result)
        : layout_(layout), text_(layout.text()), boundaries_(QTextBoundaryFinder::Grapheme, text_), result_(result) {}

    void run() {
        find(0, text_.size());
        const auto left = [](const LineLayout::Cluster& cluster) { return cluster.glyphs.front().x; };
        if (!std::ranges::is_sorted(result_.clusters, {}, left)) std::ranges::stable_sort(result_.clusters, {}, left);
    }

private:
    void find(qsizetype from, qsizetype length) {
        if (length == 0) return;
        const QList<QGlyphRun> runs = layout_.glyphRuns(static_cast<int>(from), static_cast<int>(length));
        if (addPlain(runs, from, length)) return;
        qsizetype middle = from + length / 2;
        boundaries_.setPosition(middle);
        if (!boundaries_.isAtBoundary()) middle = boundaries_.toNextBoundary();
        if (middle < 0 || middle >= from + length) {
            boundaries_.setPosition(from + length / 2);
            middle = boundaries_.toPreviousBoundary();
        }
        if (middle <= from) {
            addCluster(runs, from, length);
        } else {
            find(from, middle - from);
            find(middle, from + length - middle);
        }
    }

    bool addPlain(const QList<QGlyphRun>& runs, qsizetype from, qsizetype length) {
        if (runs.size() != 1 || runs[0].isRightToLeft()) return false;
        const QString text = text_.mid(from, length);
        const QList<quint32> glyphs = runs[0].glyphIndexes();
        if (glyphs != runs[0].rawFont().glyphIndexesForString(text)) return false;
        const std::size_t font = fontOf(runs[0]);
        const QList<QPointF> positions = runs[0].positions();
        qsizetype at = 0;
        for (qsizetype i = 0; i < glyphs.size() && at < length; ++i) {
            const qsizetype units = text[at].isHighSurrogate() ? 2 : 1;
            result_.clusters.push_back({font, text.mid(at, units), {placed(glyphs[i], positions[i])}});
            at += units;
        }
        return true;
    }

    void addCluster(const QList<QGlyphRun>& runs, qsizetype from, qsizetype length) {
        const QString text = text_.mid(from, length);
        for (const QGlyphRun& run : runs) {
            const bool continues = run.flags().testFlag(QGlyphRun::SplitLigature) && !result_.clusters.empty();
            LineLayout::Cluster cluster{fontOf(run), text, {}};
            for (qsizetype i = 0; i < run.glyphIndexes().size(); ++i) {
                cluster.glyphs.push_back(placed(run.glyphIndexes()[i], run.positions()[i]));
            }
            if (cluster.glyphs.empty()) continue;
            // A ligature is given again for each part of its text.
            if (continues && sameGlyphs(result_.clusters.back(), cluster)) {
                result_.clusters.back().text += text;
            } else {
                result_.clusters.push_back(std::move(cluster));
            }
        }
    }

    static bool sameGlyphs(const LineLayout::Cluster& a, const LineLayout::Cluster& b) {
        const auto same = [](const LineLayout::Glyph& one, const LineLayout::Glyph& other) {
            return one.index == other.index && one.x == other.x && one.y == other.y;
        };
        return a.font == b.font && std::ranges::equal(a.glyphs, b.glyphs, same);
    }

    [[nodiscard]] LineLayout::Glyph placed(quint32 index, const QPointF& position) const {
        const QTextLine line = layout_.lineAt(0);
        return {index, (position.x() - line.x()) / pixelsPerEm, (line.ascent() - position.y()) / pixelsPerEm};
    }

    std::size_t fontOf(const QGlyphRun& run) {
        const QRawFont font = run.rawFont();
        const auto known = std::ranges::find(fonts_, font);
        const auto index = static_cast<std::size_t>(known - fonts_.begin());
        if (known == fonts_.end()) {
            fonts_.push_back(font);
            result_.fonts.push_back(std::make_shared<QtTypeface>(font));
        }
        return index;
    }

    const QTextLayout& layout_;
    const QString text_;
    QTextBoundaryFinder boundaries_;
    std::vector<QRawFont> fonts_;  // those of the result
    LineLayout& result_;
};

}  // namespace

LineLayout layOutLine(const QString& text, const QString& family) {
    LineLayout result;
    QFont font(family);
    font.setPixelSize(pixelsPerEm);
    font.setHintingPreference(QFont::PreferNoHinting);
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    QTextLayout layout(singleLine(text), font);
    layout.setTextOption(option);
    layout.setCacheEnabled(true);  // otherwise the glyphs are forgotten here and found a second time below
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid()) line.setNumColumns(std::numeric_limits<int>::max());
    layout.endLayout();
    if (!line.isValid()) return result;
    result.width = line.horizontalAdvance() / pixelsPerEm;
    result.ascent = line.ascent() / pixelsPerEm;
    result.descent = line.descent() / pixelsPerEm;
    ClusterFinder(layout, result).run();
    return result;
}

}  // namespace quillon

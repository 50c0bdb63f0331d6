#pragma once

#include <QFont>
#include <QPointF>
#include <QString>
#include <QTextLayout>

#include <optional>

class QPainter;

namespace wakeloft {

/// Text broken into lines of a given width. Breaks between words, within a word only where that word alone is
/// too wide, so nothing is ever clipped; avoids a last line of one short word.
class TextBlock {
  public:
    struct Format {
        QFont font;
        Qt::LayoutDirection direction = Qt::LeftToRight;
        bool isCentered = false;
        bool hasFixedDigits = false; ///< all digits equally wide in any font: a countdown does not tremble

        bool operator==(const Format&) const = default;
    };

    TextBlock(const QString& text, const Format& format, qreal width);

    [[nodiscard]] qreal height() const { return height_; }
    /// From the top to the baseline of the first line.
    [[nodiscard]] qreal ascent() const;
    /// Draws with the painter's pen.
    void draw(QPainter& painter, QPointF topLeft) const;

    /// The width of `text` on one line.
    static qreal singleLineWidth(const QString& text, const QFont& font);

  private:
    void breakLines(qreal width);
    void avoidWidow(qreal width);

    QTextLayout layout_;
    qreal height_ = 0;
    qreal indent_ = 0;
};

/// Keeps a text laid out until it differs: measured and drawn several times as a panel opens.
class KeptTextBlock {
  public:
    const TextBlock& of(const QString& text, const TextBlock::Format& format, qreal width);

  private:
    QString text_;
    TextBlock::Format format_;
    qreal width_ = 0;
    std::optional<TextBlock> block_;
};

} // namespace wakeloft

#pragma once

#include "status/Symbol.h"
#include "status/TemplateImage.h"

#include <QColor>
#include <QImage>
#include <QWidget>

class QPainter;

namespace wakeloft {

/// `image` in `color` for a screen of `devicePixelRatio`, transparent around; null where it is empty.
QImage drawnImage(const TemplateImage& image, const QColor& color, qreal devicePixelRatio);

/// Paints `image` in `color` with its corner at `topLeft`, or rather at the nearest device pixel.
void paintImage(QPainter& painter, const TemplateImage& image, QPointF topLeft, const QColor& color);

/// Shows a glyph or a symbol in the colour of the text around it, at its own size and in the middle. Says
/// nothing to a screen reader.
class GlyphImage : public QWidget {
  public:
    explicit GlyphImage(TemplateImage image, QWidget* parent = nullptr);

    void setImage(TemplateImage image);
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    TemplateImage image_;
};

} // namespace wakeloft

#include "WindowIcon.h"

#include "QtGlyphCanvas.h"
#include "status/AppIcon.h"

#include <QIconEngine>
#include <QPainter>

#include <algorithm>

namespace wakeloft {

namespace {

class AppIconEngine : public QIconEngine {
  public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        const double side = std::min(rect.width(), rect.height());
        for (const AppIconLayer& layer : appIconLayers()) {
            QImage picture(rect.size(), QImage::Format_ARGB32_Premultiplied);
            picture.fill(Qt::transparent);
            QLinearGradient gradient(0, layer.top, 0, layer.bottom);
            gradient.setColorAt(0, QColor::fromRgb(layer.topColor));
            gradient.setColorAt(1, QColor::fromRgb(layer.bottomColor));
            {
                QtGlyphCanvas canvas(picture, gradient, side / appIconSide);
                layer.draw(canvas);
            }
            painter->drawImage(rect.topLeft(), picture);
        }
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect({}, size), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        return {{16, 16}, {24, 24}, {32, 32}, {48, 48}, {64, 64}, {128, 128}};
    }

    [[nodiscard]] QIconEngine* clone() const override { return new AppIconEngine(*this); }
};

} // namespace

QIcon windowIcon() {
    return QIcon(new AppIconEngine); // which owns the engine
}

} // namespace wakeloft

#pragma once

#include <QProxyStyle>

class QStyleOptionMenuItem;

namespace wakeloft {

/// Qt's Fusion, with menus that look like the panel, and without motion where the user wants less of it.
class Style : public QProxyStyle {
  public:
    Style();

    void setReducesMotion(bool reducesMotion) { reducesMotion_ = reducesMotion; }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

  private:
    bool reducesMotion_ = false;
};

} // namespace wakeloft

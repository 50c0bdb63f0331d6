#pragma once

#include <QProxyStyle>

namespace wakeloft {

/// Qt's Fusion, which moves nothing where the user wants less motion.
class Style : public QProxyStyle {
  public:
    Style();

    void setReducesMotion(bool reducesMotion) { reducesMotion_ = reducesMotion; }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;

  private:
    bool reducesMotion_ = false;
};

} // namespace wakeloft

#include "Style.h"

namespace wakeloft {

namespace {

constexpr int motionMilliseconds = 140;

} // namespace

Style::Style() : QProxyStyle(QStringLiteral("fusion")) {}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returned) const {
    if (hint == SH_Widget_Animation_Duration)
        return reducesMotion_ ? 0 : motionMilliseconds;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

} // namespace wakeloft

#include "Theme.h"

#include "Style.h"

#include <QApplication>

namespace wakeloft {

namespace {

struct Colors {
    QRgb background, raised, text, secondaryText, accent, textOnAccent, buttonFill, link, warning, failure,
        switchOff, border, divider, star;
};

// Every text keeps 4.5:1 against what it stands on, and what else tells something 3:1.
constexpr Colors light{0xfffbfbfc, 0xffffffff, 0xff1a1b1e, 0xff5c6068, 0xff2a66d9, 0xffffffff, 0xffedeef0,
                       0xff2160cf, 0xffb05a00, 0xffc02626, 0xff8d9199, 0xffcbcdd1, 0xffe3e4e7, 0xffb97b00};
constexpr Colors dark{0xff27282c, 0xff303136, 0xfff1f2f4, 0xffadb1b9, 0xff5a92f8, 0xff0b1220, 0xff3a3b41,
                      0xff8ab4ff, 0xfff2b84b, 0xffff8f86, 0xff7b7f86, 0xff47494f, 0xff3d3f45, 0xffffcc40};

} // namespace

QPalette themePalette(bool isDark) {
    const Colors& colors = isDark ? dark : light;
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, QRgb color) {
        palette.setColor(role, QColor::fromRgb(color));
    };
    set(role::background, colors.background);
    set(role::text, colors.text);
    set(role::secondaryText, colors.secondaryText);
    set(role::accent, colors.accent);
    set(role::textOnAccent, colors.textOnAccent);
    set(role::buttonFill, colors.buttonFill);
    set(role::link, colors.link);
    set(role::warning, colors.warning);
    set(role::failure, colors.failure);
    set(role::switchOff, colors.switchOff);
    set(role::border, colors.border);
    set(role::divider, colors.divider);
    set(role::star, colors.star);
    // What Fusion's own widgets, such as menus and tool tips, use besides.
    set(QPalette::Base, colors.raised);
    set(QPalette::Text, colors.text);
    set(QPalette::ButtonText, colors.text);
    set(QPalette::ToolTipBase, colors.raised);
    set(QPalette::ToolTipText, colors.text);
    for (const auto disabled : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, disabled, QColor::fromRgb(colors.secondaryText));
    return palette;
}

QColor mixed(const QColor& a, const QColor& b, qreal shareOfB) {
    const auto mix = [&](int x, int y) { return qRound(x + (y - x) * shareOfB); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

void applyTheme(const Appearance& appearance) {
    auto* style = dynamic_cast<Style*>(QApplication::style());
    if (style == nullptr)
        QApplication::setStyle(style = new Style);
    style->setReducesMotion(appearance.reducesMotion);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns its style
    QApplication::setPalette(themePalette(appearance.isDark));
}

QFont scaledFont(qreal scale, QFont::Weight weight) {
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * scale);
    else
        font.setPixelSize(qRound(font.pixelSize() * scale));
    font.setWeight(weight);
    return font;
}

} // namespace wakeloft

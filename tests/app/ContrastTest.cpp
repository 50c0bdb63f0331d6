#include "ActionButton.h"
#include "FramedMenu.h"
#include "NoticeRow.h"
#include "SettingsButton.h"
#include "StarRow.h"
#include "SwitchRow.h"
#include "Theme.h"
#include "TrayGlyph.h"

#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

using namespace wakeloft;

namespace {

constexpr double ofText = 4.5;
constexpr double ofParts = 3;

double luminance(const QColor& color) {
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

/// What is drawn on the panel's background, so large that strokes are more than their soft edges.
QImage drawn(QWidget& widget, const QRect& part = {}) {
    constexpr int scale = 4;
    const QRect place = part.isNull() ? widget.rect() : part;
    QImage image(place.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(widget.palette().color(role::background));
    widget.render(&image, {}, place, QWidget::DrawChildren);
    return image;
}

/// By how much; what only a few pixels do counts for nothing.
double standsOut(const QImage& image, const QImage& ground) {
    constexpr int few = 20;
    std::vector<double> contrasts(few + 1, 1);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != ground.pixel(x, y))
                contrasts.push_back(contrast(image.pixel(x, y), ground.pixel(x, y)));
    std::ranges::nth_element(contrasts, contrasts.begin() + few, std::greater());
    return contrasts[few];
}

/// Of what is drawn in part of a widget, from the colour that fills most of it.
double inkOf(QWidget& widget, const QRect& part = {}) {
    const QImage image = drawn(widget, part);
    std::map<QRgb, int> count;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++count[image.pixel(x, y)];
    QImage ground = image;
    ground.fill(std::ranges::max_element(count, {}, [](const auto& each) { return each.second; })->first);
    return standsOut(image, ground);
}

class ContrastTest : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override { applyTheme({.isDark = GetParam()}); }
    void TearDown() override { applyTheme({}); }

    /// Shown, as it is, under the pointer, with the focus that came by the keyboard, and pressed.
    static void expectReadable(QAbstractButton& button, const char* what, const QRect& text = {}) {
        button.resize(240, std::max(24, button.heightForWidth(240)));
        button.show();
        button.window()->show();
        button.window()->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(button.window()));
        button.clearFocus();
        for (const bool isHovered : {false, true}) {
            button.setAttribute(Qt::WA_UnderMouse, isHovered);
            EXPECT_GE(inkOf(button, text), ofText) << what << ", under the pointer: " << isHovered;
            if (!button.isEnabled())
                continue;
            const QImage unfocused = drawn(button);
            button.setFocus(Qt::TabFocusReason);
            EXPECT_GE(standsOut(drawn(button), unfocused), ofParts) << what << "'s focus " << isHovered;
            button.clearFocus();
        }
        button.setDown(button.isEnabled());
        EXPECT_GE(inkOf(button, text), ofText) << what << ", pressed";
        button.setDown(false);
    }
};

TEST_P(ContrastTest, buttonsAndLinksAreReadableAndShowTheirFocus) {
    QWidget window;
    for (const auto kind : {ActionButton::Kind::main, ActionButton::Kind::beside, ActionButton::Kind::small,
                            ActionButton::Kind::link}) {
        ActionButton button(kind, [](const PanelAction&) {}, &window);
        button.setContent({"Turn On", "", {}});
        expectReadable(button, "a button");
    }
    SettingsButton settings(&window);
    SettingsMenuContent content;
    content.title = "Settings";
    content.symbol = "gearshape";
    settings.setContent(content);
    expectReadable(settings, "the settings button");
}

TEST_P(ContrastTest, switchesAndStarsAreReadableAlsoWhereTheyAreDisabled) {
    for (const bool isOn : {false, true})
        for (const bool isEnabled : {true, false}) {
            QWidget window;
            SwitchRow row([](const PanelAction&) {}, &window);
            row.setContent({.title = "Deepwake",
                            .footnote = "Your computer stays awake with the lid closed.",
                            .isOn = isOn,
                            .isEnabled = isEnabled,
                            .action = {}});
            expectReadable(row, "a switch", {0, 0, 100, 24});
            expectReadable(row, "a switch's footnote", {0, 24, 240, 20});
            if (isEnabled) {
                EXPECT_GE(inkOf(row, {isOn ? 216 : 212, 5, 8, 18}), ofParts) << "the knob on its track";
                EXPECT_GE(inkOf(row, {190, 2, 16, 24}), ofParts) << "the track";
            }
            StarRow star([](AwakeDuration) {}, &window);
            star.setContent({{1800}, "30 min", "", isOn ? "star.fill" : "star", isOn, isEnabled});
            expectReadable(star, "a length", {26, 0, 200, 24});
            EXPECT_GE(inkOf(star, {5, 0, 18, 24}), ofParts) << "its star";
        }
}

TEST_P(ContrastTest, noticesMenusAndTheTrayIconAreReadable) {
    using Symbol = PanelNotice::Symbol;
    for (const auto symbol : {Symbol::information, Symbol::warning, Symbol::failure, Symbol::heat}) {
        NoticeRow row([](const PanelAction&) {}, nullptr);
        row.setContent({symbol, "It failed.", std::nullopt});
        row.resize(240, row.heightForWidth(240));
        EXPECT_GE(inkOf(row, {20, 0, 200, row.height()}), ofText) << static_cast<int>(symbol);
        EXPECT_GE(inkOf(row, {0, 0, 18, row.height()}), ofParts) << static_cast<int>(symbol);
    }
    FramedMenu menu(nullptr);
    menu.setMinimumFrameWidth(260);
    QAction* action = menu.addAction("Quit Wakeloft\tCtrl+Q");
    QAction* disabled = menu.addAction("Sleep");
    disabled->setEnabled(false);
    menu.resize(menu.sizeHint());
    for (const char* state : {"at rest", "with one chosen"}) {
        const QRect line = menu.actionGeometry(action).adjusted(6, 4, -6, -4);
        EXPECT_GE(inkOf(menu, {line.topLeft(), QSize(100, line.height())}), ofText) << state;
        EXPECT_GE(inkOf(menu, line.adjusted(174, 0, 0, 0)), ofText) << "the shortcut " << state;
        EXPECT_GE(inkOf(menu, menu.actionGeometry(disabled).adjusted(6, 4, -6, -4)), ofText) << state;
        menu.setActiveAction(action);
    }
    EXPECT_GE(contrast(QColor::fromRgb(trayGlyphColor), GetParam() ? Qt::black : Qt::white), 4);
}

INSTANTIATE_TEST_SUITE_P(Schemes, ContrastTest, testing::Bool(),
                         [](const auto& scheme) { return std::string(scheme.param ? "Dark" : "Light"); });

} // namespace

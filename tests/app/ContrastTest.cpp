#include "ActionButton.h"
#include "FramedMenu.h"
#include "NoticeRow.h"
#include "SettingsButton.h"
#include "StarRow.h"
#include "SwitchRow.h"
#include "TextLabel.h"
#include "Theme.h"
#include "TrayGlyph.h"

#include <QPainter>
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
class Drawn {
  public:
    explicit Drawn(QWidget& widget, const QRect& part = {}) {
        constexpr int scale = 4;
        const QRect place = part.isNull() ? widget.rect() : part;
        image_ = QImage(place.size() * scale, QImage::Format_RGB32);
        image_.setDevicePixelRatio(scale);
        image_.fill(widget.palette().color(role::background));
        widget.render(&image_, {}, place, QWidget::DrawChildren);
        for (int y = 0; y < image_.height(); ++y)
            for (int x = 0; x < image_.width(); ++x)
                ++count_[image_.pixel(x, y)];
    }

    /// Of the colour that fills most to the one that stands out most from it.
    [[nodiscard]] double ink() const {
        const QRgb ground =
            std::ranges::max_element(count_, {}, [](const auto& each) { return each.second; })->first;
        double best = 1;
        for (const auto& [color, pixels] : count_)
            if (pixels >= fewestPixels)
                best = std::max(best, contrast(QColor(color), QColor(ground)));
        return best;
    }

    /// Of what is drawn only here to what was there before it.
    [[nodiscard]] double standsOutFrom(const Drawn& before) const {
        std::map<std::pair<QRgb, QRgb>, int> changes;
        for (int y = 0; y < image_.height(); ++y)
            for (int x = 0; x < image_.width(); ++x)
                if (image_.pixel(x, y) != before.image_.pixel(x, y))
                    ++changes[{image_.pixel(x, y), before.image_.pixel(x, y)}];
        if (changes.empty())
            return 1;
        const auto& [colors, pixels] =
            *std::ranges::max_element(changes, {}, [](const auto& each) { return each.second; });
        return pixels < fewestPixels ? 1 : contrast(QColor(colors.first), QColor(colors.second));
    }

  private:
    static constexpr int fewestPixels = 20;

    QImage image_;
    std::map<QRgb, int> count_;
};

class ContrastTest : public testing::TestWithParam<bool> {
  protected:
    void SetUp() override { applyTheme({.isDark = GetParam()}); }
    void TearDown() override { applyTheme({}); }

    /// Shown, as it is, under the pointer and pressed; then with the focus that came by the keyboard.
    static void expectReadable(QAbstractButton& button, const char* what, const QRect& text = {}) {
        button.resize(240, std::max(24, button.heightForWidth(240)));
        button.show();
        button.window()->show();
        button.window()->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(button.window()));
        button.clearFocus();
        const auto draws = [&](const char* state) {
            EXPECT_GE(Drawn(button, text).ink(), ofText) << what << ' ' << state;
        };
        if (!button.isEnabled()) {
            draws("disabled");
            return;
        }
        for (const bool isHovered : {false, true}) {
            button.setAttribute(Qt::WA_UnderMouse, isHovered);
            draws(isHovered ? "under the pointer" : "at rest");
            const Drawn unfocused(button);
            button.setFocus(Qt::TabFocusReason);
            ASSERT_TRUE(button.hasFocus()) << what;
            EXPECT_GE(Drawn(button).standsOutFrom(unfocused), ofParts) << what << "'s focus " << isHovered;
            button.clearFocus();
        }
        button.setDown(true);
        draws("pressed");
    }
};

TEST_P(ContrastTest, buttonsAndLinksAreReadableAndShowTheirFocus) {
    for (const auto kind : {ActionButton::Kind::main, ActionButton::Kind::beside, ActionButton::Kind::small,
                            ActionButton::Kind::link}) {
        QWidget window;
        ActionButton button(kind, [](const PanelAction&) {}, &window);
        button.setContent({"Turn On", "", {}});
        expectReadable(button, "a button");
    }
    QWidget window;
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
            PanelSwitch content;
            content.title = "Deepwake";
            content.footnote = "Your computer stays awake with the lid closed.";
            content.isOn = isOn;
            content.isEnabled = isEnabled;
            row.setContent(content);
            const QRect title(0, 0, 100, 24);
            expectReadable(row, "a switch", title);
            expectReadable(row, "a switch's footnote", {0, 24, 240, 20});
            if (isEnabled) {
                row.setDown(false);
                const QRect knobSide = isOn ? QRect(216, 5, 8, 18) : QRect(212, 5, 8, 18);
                EXPECT_GE(Drawn(row, knobSide).ink(), ofParts) << "the knob on its track";
                EXPECT_GE(Drawn(row, {190, 2, 16, 24}).ink(), ofParts) << "the track";
            }

            StarRow star([](AwakeDuration) {}, &window);
            PresetRow preset;
            preset.label = "30 min";
            preset.symbol = isOn ? "star.fill" : "star";
            preset.isStarred = isOn;
            preset.isEnabled = isEnabled;
            star.setContent(preset);
            expectReadable(star, "a length", {26, 0, 200, 24});
            star.setDown(false);
            EXPECT_GE(Drawn(star, {5, 0, 18, 24}).ink(), ofParts) << "its star";
        }
}

TEST_P(ContrastTest, noticesAndMenusAreReadable) {
    using Symbol = PanelNotice::Symbol;
    for (const auto symbol : {Symbol::information, Symbol::warning, Symbol::failure, Symbol::heat}) {
        NoticeRow row([](const PanelAction&) {}, nullptr);
        row.setContent({symbol, "It failed.", std::nullopt});
        row.resize(240, row.heightForWidth(240));
        EXPECT_GE(Drawn(row, {20, 0, 200, row.height()}).ink(), ofText) << static_cast<int>(symbol);
        EXPECT_GE(Drawn(row, {0, 0, 18, row.height()}).ink(), ofParts) << static_cast<int>(symbol);
    }
    FramedMenu menu(nullptr);
    menu.setMinimumFrameWidth(260);
    QAction* action = menu.addAction("Quit Wakeloft\tCtrl+Q");
    menu.addAction("Sleep")->setEnabled(false);
    menu.resize(menu.sizeHint());
    const auto expectLines = [&](const char* state) {
        for (const QAction* line : menu.actions()) {
            const QRect place = menu.actionGeometry(const_cast<QAction*>(line)).adjusted(6, 4, -6, -4);
            EXPECT_GE(Drawn(menu, {place.topLeft(), QSize(100, place.height())}).ink(), ofText) << state;
        }
        const QRect first = menu.actionGeometry(action).adjusted(180, 4, -6, -4);
        EXPECT_GE(Drawn(menu, first).ink(), ofText) << "the shortcut " << state;
    };
    expectLines("at rest");
    menu.setActiveAction(action);
    expectLines("with one chosen");
}

TEST_P(ContrastTest, theTrayIconShowsOnLightAndDarkBars) {
    EXPECT_GE(contrast(QColor::fromRgb(trayGlyphColor), GetParam() ? Qt::black : Qt::white), 4);
}

INSTANTIATE_TEST_SUITE_P(Schemes, ContrastTest, testing::Bool(),
                         [](const auto& scheme) { return std::string(scheme.param ? "Dark" : "Light"); });

} // namespace

#include "PanelView.h"
#include "ActionButton.h"
#include "PanelPlacement.h"
#include "Theme.h"
#include "twins/SessionTwins.h"
#include "twins/WordingTwins.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

using namespace wakeloft;

namespace {

struct Utc final : TimeZone {
    [[nodiscard]] Seconds secondsFromUtcAt(Date) const override { return 0; }
};

/// A panel over content that the test changes, and what it asked for.
struct PanelViewTest : testing::Test {
    PanelContent content;
    std::string asked;
    std::optional<Seconds> untilTick;
    ManualLocalizer localizer;
    ManualFormatter formatter;
    ManualClocks clocks;
    Utc utc;
    InMemoryPresetDurationStore presetStore;
    PresetDurationsController presets{presetStore};
    SettingsMenu settings{localizer, {}, {}};
    SettingsPopup settingsPopup{presets, localizer, formatter, {}};
    AboutPopup about{localizer, {}, clocks, utc};
    PanelView view{{.content =
                        [this] {
                            asked += "content ";
                            return content;
                        },
                    .untilStatusLineTicks = [this] { return untilTick; },
                    .perform = [](const PanelAction&) {},
                    .opened = [this] { asked += "opened "; },
                    .settings = {settings, settingsPopup, about}}};

    void press() { view.openAt({600, 5}); }
    std::string takeAsked() { return std::exchange(asked, ""); }
    std::string askedDuring(int milliseconds) {
        asked.clear();
        QTest::qWait(milliseconds);
        return asked;
    }
};

TEST_F(PanelViewTest, asksOnlyWhileItIsSeenAndRefreshesBeforeItDraws) {
    constexpr int longerThanAPress = 250;
    view.refresh();
    EXPECT_EQ(asked, "");
    EXPECT_TRUE(view.findChildren<QWidget*>().empty()); // and is not even built
    press();
    EXPECT_EQ(takeAsked(), "opened content ");
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(view.isVisible());
    view.refresh();
    press(); // the one that closed it, for all that hosts tell
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(asked, "");
    QTest::qWait(longerThanAPress);
    press();
    EXPECT_TRUE(view.isVisible());
    press();
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(takeAsked(), "opened content ");

    view.openAsWindow();
    EXPECT_EQ(takeAsked(), "opened content ");
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_TRUE(view.isVisible()); // a window stays until it is closed
    view.close();
    EXPECT_FALSE(view.isVisible());
}

TEST_F(PanelViewTest, ticksOnlyWhileSeenAndCountingAndOncePerSecond) {
    untilTick = 1;
    press();
    const auto ticks = askedDuring(2300);
    EXPECT_TRUE(ticks == "content content " || ticks == "content ") << ticks;
    untilTick.reset();
    view.refresh();
    EXPECT_EQ(askedDuring(1200), "");
    untilTick = 1;
    view.refresh();
    view.hide();
    EXPECT_EQ(askedDuring(1200), "");
}

TEST_F(PanelViewTest, noTextIsCutHoweverLong) {
    const std::string compound = "Energieverwaltungsdienstkommunikationsschnittstellenbeschreibung";
    const PanelButton wordy{compound, "", {}};
    content.explanation = compound + " " + compound;
    content.mainButton = wordy;
    content.sessionButtons = {{"1 Std., 30 Min.", "", {}}, wordy, {"24 Std.", "", {}}};
    content.deepwake.title = "Deepwake";
    content.notices = {{PanelNotice::Symbol::warning, compound, wordy}};
    for (const bool isRightToLeft : {false, true}) {
        content.isRightToLeft = isRightToLeft;
        view.openAsWindow();
        view.refresh();
        const QRect inside = view.rect().adjusted(12, 14, -12, -8);
        QRegion taken;
        std::vector<int> heights;
        for (const QWidget* child : view.findChildren<QWidget*>()) {
            const bool isButton = dynamic_cast<const ActionButton*>(child) != nullptr;
            if (!child->isVisible() || (!isButton && qobject_cast<const QLabel*>(child) == nullptr))
                continue;
            const QRect place(child->mapTo(&view, QPoint()), child->size());
            EXPECT_TRUE(inside.contains(place)) << child->accessibleName().toStdString();
            EXPECT_GE(child->height(), child->heightForWidth(child->width()));
            if (isButton) {
                EXPECT_FALSE(taken.intersects(place)) << child->accessibleName().toStdString();
                taken += place;
                heights.push_back(child->height());
            }
        }
        ASSERT_EQ(heights.size(), 5U);
        EXPECT_GT(std::ranges::max(heights), 36); // a title wrapped
    }
}

TEST(PanelPlacementTest, standsBesideTheBarAndInsideTheScreen) {
    const QSize panel(260, 200);
    const QRect whole(0, 0, 1280, 800);
    EXPECT_EQ(panelPosition(panel, {600, 14}, {whole, {0, 28, 1280, 772}}), QPoint(470, 34));
    EXPECT_EQ(panelPosition(panel, {600, 785}, {whole, {0, 0, 1280, 770}}), QPoint(470, 564));
    EXPECT_EQ(panelPosition(panel, {15, 790}, {whole, {40, 0, 1240, 800}}), QPoint(46, 592));
    // No bar keeps its space: horizontal bars win in the corners, an item sits in the bar's middle.
    EXPECT_EQ(panelPosition(panel, {1275, 14}, {whole, whole}), QPoint(1012, 34));
    // A second screen keeps its own coordinates.
    EXPECT_EQ(panelPosition(panel, {2500, 14}, {{1280, 0, 1280, 800}, {1280, 28, 1280, 772}}),
              QPoint(2292, 34));
    EXPECT_EQ(panelPosition({260, 900}, {600, 785}, {whole, {0, 0, 1280, 770}}).y(), 0);
    EXPECT_EQ(logicalPoint({2400, 28}, {0, 0, 1280, 800}, 2), QPoint(1200, 14));

    // A pointer at an edge corrects hosts that tell a relative place.
    EXPECT_EQ(trustedAnchor({0, 27}, QPoint(1208, 14), whole), QPoint(1208, 14));
    EXPECT_EQ(trustedAnchor({1200, 14}, QPoint(600, 400), whole), QPoint(1200, 14)); // activated by keyboard
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    applyTheme({});
    return RUN_ALL_TESTS();
}

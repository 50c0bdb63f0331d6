#include "DesktopAppearance.h"
#include "Motion.h"
#include "SdEventMainRunLoop.h"
#include "SwitchRow.h"
#include "Theme.h"
#include "support/AppearancePortal.h"

#include <QAbstractEventDispatcher>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace wakeloft;

namespace {

TEST(DesktopAppearanceTest, followsWhatThePortalTellsNowAndLater) {
    const auto loop = SdEventMainRunLoop::create().value();
    const PrivateBus buses;
    const auto bus = buses.connect(loop->event());
    Appearance told;
    const auto followed =
        DesktopAppearance::follow(bus.get(), [&](const Appearance& appearance) { told = appearance; });
    ASSERT_TRUE(followed);
    const auto becomes = [&](Appearance expected, int timeoutMs = 3000) {
        return runUntil(loop->event(), [&] { return told == expected; }, timeoutMs);
    };
    EXPECT_FALSE(becomes({.isDark = true}, 100));
    AppearancePortal portal(buses.connect(loop->event()), true); // comes late, and knows not every setting
    EXPECT_TRUE(becomes({.isDark = true}));
    portal.animate(false);
    EXPECT_TRUE(becomes({.isDark = true, .reducesMotion = true}));
    portal.preferDark(false);
    EXPECT_TRUE(becomes({.reducesMotion = true}));
}

/// Whether the program does more in the time that any motion takes than its loop needs.
bool isBusy() {
    QEventLoop loop;
    QTimer::singleShot(400, &loop, &QEventLoop::quit);
    int wakeups = 0;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                     [&] { ++wakeups; });
    loop.exec();
    return wakeups > 6;
}

TEST(MotionTest, aSwitchMovesWhereMotionIsWantedAndThenRests) {
    SwitchRow row([](const PanelAction&) {}, nullptr);
    row.resize(200, 30);
    const auto turn = [&](bool isOn) {
        row.setContent({.title = "Deepwake", .footnote = "", .isOn = isOn, .action = {}});
        EXPECT_EQ(row.isChecked(), isOn); // a screen reader need not wait
    };
    turn(false);
    row.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&row));
    static_cast<void>(isBusy());
    EXPECT_FALSE(isBusy());
    const QImage off = row.grab().toImage();
    turn(true);
    EXPECT_EQ(row.grab().toImage(), off);
    EXPECT_TRUE(isBusy());
    const QImage on = row.grab().toImage();
    EXPECT_NE(on, off);
    EXPECT_FALSE(isBusy());

    applyTheme({.reducesMotion = true}); // while it is shown
    turn(false);
    EXPECT_EQ(row.grab().toImage(), off);
    EXPECT_FALSE(isBusy());
    applyTheme({});
    row.hide();
    turn(true); // without moving: nobody sees it
    row.show();
    EXPECT_EQ(row.grab().toImage(), on);
}

} // namespace

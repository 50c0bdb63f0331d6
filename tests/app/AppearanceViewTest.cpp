#include "DesktopAppearance.h"
#include "Motion.h"
#include "SdEventMainRunLoop.h"
#include "SwitchRow.h"
#include "Theme.h"
#include "support/AppearancePortal.h"

#include <QAbstractEventDispatcher>
#include <QPainter>
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

class MotionTest : public testing::Test {
  protected:
    void TearDown() override { applyTheme({}); }

    /// Whether the program does more in the time that any motion takes than its loop needs.
    static bool isBusy() {
        QEventLoop loop;
        QTimer::singleShot(400, &loop, &QEventLoop::quit);
        int wakeups = 0;
        QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                         [&] { ++wakeups; });
        loop.exec();
        return wakeups > 6;
    }
    static QImage look(QWidget& widget) { return widget.grab().toImage(); }
};

TEST_F(MotionTest, aSwitchMovesWhereMotionIsWantedAndThenRests) {
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
    const QImage off = look(row);
    turn(true);
    EXPECT_EQ(look(row), off);
    EXPECT_TRUE(isBusy());
    const QImage on = look(row);
    EXPECT_NE(on, off);
    EXPECT_FALSE(isBusy());

    applyTheme({.reducesMotion = true}); // while it is shown
    turn(false);
    EXPECT_EQ(look(row), off);
    EXPECT_FALSE(isBusy());
    applyTheme({});
    row.hide();
    turn(true); // without moving: nobody sees it
    row.show();
    EXPECT_EQ(look(row), on);
}

TEST_F(MotionTest, aWindowAppearsGraduallyOnlyWhereMotionIsWanted) {
    struct Window : QWidget {
        void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::red); }
    };
    for (const bool reducesMotion : {false, true}) {
        applyTheme({.reducesMotion = reducesMotion});
        Window window;
        window.setAttribute(Qt::WA_TranslucentBackground);
        fadeIn(window);
        window.show();
        EXPECT_EQ(look(window).pixelColor(0, 0).alpha() < 255, !reducesMotion);
        static_cast<void>(isBusy());
        EXPECT_EQ(look(window).pixelColor(0, 0), QColor(Qt::red));
        EXPECT_TRUE(window.children().empty());
        EXPECT_FALSE(isBusy());
    }
}

} // namespace

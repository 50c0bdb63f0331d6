#include "DesktopAppearance.h"
#include "FramedMenu.h"
#include "Motion.h"
#include "SdEventMainRunLoop.h"
#include "SwitchRow.h"
#include "Theme.h"
#include "support/AppearancePortal.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
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
    const auto becomes = [&](Appearance expected) {
        return runUntil(loop->event(), [&] { return told == expected; }, 3000);
    };
    AppearancePortal portal(buses.connect(loop->event()), true); // comes late, and knows not every setting
    EXPECT_TRUE(becomes({.isDark = true}));
    portal.animate(false);
    EXPECT_TRUE(becomes({.isDark = true, .reducesMotion = true}));
    portal.preferDark(false);
    EXPECT_TRUE(becomes({.reducesMotion = true}));
    portal.animate(true);
    EXPECT_TRUE(becomes({}));
}

class MotionTest : public testing::Test {
  protected:
    void TearDown() override { applyTheme({}); }

    static int wakeupsDuring(int milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        int wakeups = 0;
        QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                         [&] { ++wakeups; });
        loop.exec();
        return wakeups;
    }
    static QImage look(QWidget& widget) { return widget.grab().toImage(); }

    static constexpr int motionMs = 400; // longer than any takes
    static constexpr int fewWakeups = 6; // the loop's own
};

TEST_F(MotionTest, aSwitchMovesWhereMotionIsWantedAndThenRests) {
    SwitchRow row([](const PanelAction&) {}, nullptr);
    row.resize(200, 30);
    PanelSwitch content;
    content.title = "Deepwake";
    row.setContent(content);
    row.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&row));
    static_cast<void>(wakeupsDuring(motionMs));
    const int atRest = wakeupsDuring(motionMs);
    EXPECT_LE(atRest, fewWakeups);
    const QImage off = look(row);

    content.isOn = true;
    row.setContent(content);
    EXPECT_TRUE(row.isChecked()); // a screen reader need not wait
    EXPECT_EQ(look(row), off);
    EXPECT_GT(wakeupsDuring(motionMs), atRest);
    const QImage on = look(row);
    EXPECT_NE(on, off);
    EXPECT_LE(wakeupsDuring(motionMs), fewWakeups);

    applyTheme({.reducesMotion = true}); // while it is shown
    content.isOn = false;
    row.setContent(content);
    EXPECT_EQ(look(row), off);
    EXPECT_LE(wakeupsDuring(motionMs), fewWakeups);
    applyTheme({});
    content.isOn = true;
    row.setContent(content);
    EXPECT_EQ(look(row), off);
    row.hide(); // it need not end what nobody sees
    content.isOn = false;
    row.setContent(content);
    content.isOn = true;
    row.setContent(content);
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
        window.resize(1000, 1000);
        window.show();
        EXPECT_EQ(look(window).pixelColor(990, 990).alpha() < 255, !reducesMotion);
        static_cast<void>(wakeupsDuring(motionMs));
        EXPECT_EQ(look(window).pixelColor(990, 990), QColor(Qt::red));
        EXPECT_TRUE(window.children().empty());
        EXPECT_LE(wakeupsDuring(motionMs), fewWakeups);
    }
}

TEST(FramedMenuTest, marksWhatIsCheckedAtTheStartOfTheLine) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        FramedMenu menu(nullptr);
        menu.setLayoutDirection(direction);
        menu.setMinimumFrameWidth(260);
        QAction* action = menu.addAction("Deepwake\tCtrl+D");
        action->setCheckable(true);
        menu.ensurePolished();
        menu.resize(menu.sizeHint());
        const QImage before = menu.grab().toImage();
        action->setChecked(true);
        const QImage after = menu.grab().toImage();
        int atStart = 0;
        int elsewhere = 0;
        for (int x = 0; x < after.width(); ++x)
            for (int y = 0; y < after.height(); ++y)
                if (after.pixel(x, y) != before.pixel(x, y)) {
                    const int distance = direction == Qt::LeftToRight ? x : after.width() - 1 - x;
                    ++(distance < 30 ? atStart : elsewhere);
                }
        EXPECT_GT(atStart, 10) << direction;
        EXPECT_EQ(elsewhere, 0) << direction;
    }
}

} // namespace

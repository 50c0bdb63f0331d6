#include "PanelView.h"
#include "ActionButton.h"
#include "NoticeRow.h"
#include "PanelHeader.h"
#include "PanelPlacement.h"
#include "StarRow.h"
#include "TextBlock.h"
#include "Theme.h"
#include "twins/SessionTwins.h"
#include "twins/WordingTwins.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QMenu>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace wakeloft;

namespace {

PanelButton button(std::string title, PanelAction::Kind kind, Seconds seconds = 0) {
    return {std::move(title), "", {kind, seconds}};
}

PanelContent offContent() {
    PanelContent content;
    content.title = "Wakeloft";
    content.spokenStatus = "Wakeloft is off";
    content.statusLine = "Off";
    content.explanation = "Your computer can sleep as usual.";
    content.mainButton = button("Turn On", PanelAction::Kind::toggle);
    content.sessionCaption = "Stay awake for";
    content.sessionButtons = {button("30 min", PanelAction::Kind::startSession, 1800),
                              button("1 hr", PanelAction::Kind::startSession, 3600)};
    content.sessionButtons[0].spokenLabel = "Stay awake for 30 minutes";
    content.deepwake = {.title = "Deepwake",
                        .footnote = "Your computer stays awake with the lid closed.",
                        .action = {PanelAction::Kind::deepwakeOn, 0}};
    return content;
}

struct FixedTimeZone final : TimeZone {
    [[nodiscard]] Seconds secondsFromUtcAt(Date) const override { return 0; }
};

/// A panel over content that the test changes, and what it asked for.
class PanelViewTest : public testing::Test {
  protected:
    PanelContent content = offContent();
    int contentAsked = 0;
    int opened = 0;
    std::vector<PanelAction> performed;
    ManualLocalizer localizer;
    ManualFormatter formatter;
    ManualClocks clocks;
    InMemoryPresetDurationStore presetStore;
    PresetDurationsController presets{presetStore};
    FixedTimeZone timeZone;
    std::optional<Seconds> untilTick;
    int quits = 0;
    SettingsMenu settings{localizer, {}, {[] {}, [] {}, [](const std::string&) {}, [this] { ++quits; }}};
    SettingsPopup settingsPopup{presets, localizer, formatter, {"de"}};
    AboutPopup about{localizer, AboutInfo{"1.4", "212"}, clocks, timeZone};
    PanelView view{{.content =
                        [this] {
                            ++contentAsked;
                            return content;
                        },
                    .untilStatusLineTicks = [this] { return untilTick; },
                    .perform = [this](const PanelAction& action) { performed.push_back(action); },
                    .opened = [this] { ++opened; },
                    .settings = {settings, settingsPopup, about}}};

    std::vector<ActionButton*> visibleButtons() {
        std::vector<ActionButton*> found;
        for (QWidget* child : view.findChildren<QWidget*>())
            if (auto* candidate = dynamic_cast<ActionButton*>(child);
                candidate != nullptr && child->isVisible())
                found.push_back(candidate);
        return found;
    }

    ActionButton* visibleButton(const QString& spoken) {
        for (ActionButton* candidate : visibleButtons())
            if (QAccessible::queryAccessibleInterface(candidate)->text(QAccessible::Name) == spoken)
                return candidate;
        return nullptr;
    }
};

TEST_F(PanelViewTest, buildsAndAsksNothingBeforeItIsOpened) {
    view.refresh();
    EXPECT_EQ(contentAsked, 0);
    EXPECT_TRUE(view.children().empty() || view.findChildren<QWidget*>().empty());

    view.openAt({600, 5});
    EXPECT_EQ(opened, 1);
    EXPECT_GT(contentAsked, 0);
    view.hide();
    contentAsked = 0;
    view.refresh();
    EXPECT_EQ(contentAsked, 0);
}

TEST_F(PanelViewTest, handsEachActionOnWithItsSpokenNameAndByKeyboardAlone) {
    content.notices = {{PanelNotice::Symbol::warning, "It failed.",
                        button("Don’t Try Again & Quit", PanelAction::Kind::turnOff)}};
    view.openAt({600, 5});

    ASSERT_NE(visibleButton("Stay awake for 30 minutes"), nullptr);
    ASSERT_NE(visibleButton("Don’t Try Again & Quit"), nullptr);
    QTest::keyClick(view.focusWidget(), Qt::Key_Return); // the main button has the focus at first
    for (int i = 0; i < 4; ++i) {
        QTest::keyClick(view.focusWidget(), Qt::Key_Tab);
        QTest::keyClick(view.focusWidget(), Qt::Key_Space);
    }
    EXPECT_EQ(performed, (std::vector<PanelAction>{{PanelAction::Kind::toggle, 0},
                                                   {PanelAction::Kind::startSession, 1800},
                                                   {PanelAction::Kind::startSession, 3600},
                                                   {PanelAction::Kind::deepwakeOn, 0},
                                                   {PanelAction::Kind::turnOff, 0}}));

    const auto headers = view.findChildren<QLabel*>();
    EXPECT_TRUE(std::ranges::any_of(headers, [](QLabel* label) {
        const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(label);
        return spoken->role() == QAccessible::StaticText &&
               spoken->text(QAccessible::Name) == "Wakeloft is off" && spoken->childCount() == 0;
    }));
}

TEST_F(PanelViewTest, theSwitchShowsWhatItWasGivenAndOnlyThat) {
    view.openAt({600, 5});
    auto* row = view.findChild<QCheckBox*>();
    ASSERT_NE(row, nullptr);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(row);
    EXPECT_EQ(spoken->role(), QAccessible::CheckBox);
    EXPECT_EQ(spoken->text(QAccessible::Name), "Deepwake");
    const QPoint onSwitch(row->width() - 5, 8);
    QTest::mouseClick(row, Qt::LeftButton, {}, onSwitch);
    EXPECT_EQ(performed, (std::vector<PanelAction>{{PanelAction::Kind::deepwakeOn, 0}}));
    EXPECT_FALSE(spoken->state().checked); // not confirmed yet
    content.deepwake.isOn = true;
    view.refresh();
    EXPECT_TRUE(spoken->state().checked);
    content.deepwake.isEnabled = false;
    view.refresh();
    EXPECT_TRUE(spoken->state().disabled);
    QTest::mouseClick(row, Qt::LeftButton, {}, onSwitch);
    EXPECT_EQ(performed.size(), 1U);
}

TEST_F(PanelViewTest, theSettingsMenuOpensThePopoversOneAtATime) {
    view.openAsWindow();
    const auto buttons = view.findChildren<QPushButton*>();
    const auto button = std::ranges::find(buttons, QString("Settings"), &QWidget::accessibleName);
    ASSERT_NE(button, buttons.end());
    QTest::mouseClick(*button, Qt::LeftButton);
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_GE(menu->width(), 260);
    EXPECT_EQ(menu->actions().size(), 6);
    menu->actions().last()->trigger();
    QApplication::activePopupWidget()->close();
    QTest::qWait(20); // on this platform a closing menu takes the activation along, which ends popovers
    EXPECT_EQ(quits, 1);

    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    (*button)->clearFocus();
    (*button)->setFocus(Qt::TabFocusReason);
    settings.perform(SettingsAction::choosePresets);
    QTest::qWait(20);
    QWidget* popover = QApplication::activePopupWidget();
    ASSERT_NE(popover, nullptr);
    const auto* focused = dynamic_cast<const StarRow*>(popover->focusWidget());
    ASSERT_NE(focused, nullptr);
    EXPECT_TRUE(focused->hasFocusRing()); // as the button had it
    const auto stars = popover->findChildren<QCheckBox*>();
    ASSERT_EQ(stars.size(), 6);
    EXPECT_FALSE(stars[3]->isEnabled()); // three are starred
    QTest::keyClick(popover->focusWidget(), Qt::Key_Space);
    EXPECT_EQ(presets.pinned().size(), 2U);
    EXPECT_TRUE(stars[3]->isEnabled());
    EXPECT_TRUE(view.isVisible());

    settings.perform(SettingsAction::showAbout);
    QTest::qWait(20);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(QApplication::activePopupWidget()->findChildren<QCheckBox*>().empty());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_TRUE(dynamic_cast<const SettingsButton*>(*button)->hasFocusRing());
    EXPECT_EQ(settings.content().popup, std::nullopt);
    EXPECT_TRUE(view.isVisible());
    QTest::keyClick(view.focusWidget(), Qt::Key_Q, Qt::ControlModifier);
    QTest::qWait(20);
    EXPECT_EQ(quits, 2);
}

TEST_F(PanelViewTest, focusMovesToTheMainButtonWhenItsRowGoes) {
    view.openAt({600, 5});
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    visibleButton("1 hr")->setFocus(Qt::TabFocusReason);
    content.sessionButtons.clear();
    content.notices = {{PanelNotice::Symbol::information, "", button("Help", PanelAction::Kind::none)}};
    view.refresh();
    EXPECT_EQ(view.focusWidget(), visibleButton("Turn On"));
    EXPECT_TRUE(visibleButton("Turn On")->hasFocusRing());
    EXPECT_EQ(visibleButton("Help")->height(), 24); // a short link stays on one line

    // Buttons that appear later still come in reading order.
    content = offContent();
    content.sessionButtons.push_back(button("2 hr", PanelAction::Kind::startSession, 7200));
    view.refresh();
    QTest::keyClick(view.focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(view.focusWidget(), visibleButton("Stay awake for 30 minutes"));
    for (int i = 0; i < 5; ++i) // by the main button, the settings and both switches
        QTest::keyClick(view.focusWidget(), Qt::Key_Backtab);
    EXPECT_EQ(view.focusWidget(), visibleButton("2 hr"));
}

TEST_F(PanelViewTest, noTextIsCutHoweverLong) {
    const std::string compound = "Energieverwaltungsdienstkommunikationsschnittstellenbeschreibung";
    for (const bool isRightToLeft : {false, true}) {
        content.isRightToLeft = isRightToLeft;
        content.explanation = compound;
        content.explanation.append(" ").append(compound);
        content.mainButton.title = compound;
        content.sessionButtons = {button("1 Std., 30 Min.", PanelAction::Kind::startSession, 1),
                                  button(compound, PanelAction::Kind::startSession, 2),
                                  button("24 Std.", PanelAction::Kind::startSession, 3)};
        content.notices = {
            {PanelNotice::Symbol::warning, compound, button(compound, PanelAction::Kind::turnOff)}};
        view.openAt({600, 5});
        const QRect inside = view.rect().adjusted(12, 14, -12, -8);
        for (const QWidget* child : view.findChildren<QWidget*>()) {
            if (!child->isVisible() ||
                (!dynamic_cast<const QLabel*>(child) && !dynamic_cast<const ActionButton*>(child)))
                continue;
            const QRect place(child->mapTo(&view, QPoint()), child->size());
            EXPECT_TRUE(inside.contains(place)) << child->accessibleName().toStdString();
            EXPECT_GE(child->height(), child->heightForWidth(child->width()));
        }
        const std::vector<ActionButton*> buttons = visibleButtons();
        for (size_t i = 0; i < buttons.size(); ++i)
            for (size_t j = i + 1; j < buttons.size(); ++j) {
                const QRect a(buttons[i]->mapTo(&view, QPoint()), buttons[i]->size());
                EXPECT_FALSE(a.intersects({buttons[j]->mapTo(&view, QPoint()), buttons[j]->size()}));
            }
        EXPECT_GT(visibleButton(QString::fromStdString(compound))->height(), 36); // it wrapped
        view.hide();
        QTest::qWait(250);
    }
}

TEST_F(PanelViewTest, ticksOnlyWhileSeenAndCountingAndOncePerSecond) {
    untilTick = 1;
    view.openAt({600, 5});
    contentAsked = 0;
    QTest::qWait(2300);
    EXPECT_GE(contentAsked, 1);
    EXPECT_LE(contentAsked, 2);

    untilTick.reset();
    view.refresh();
    contentAsked = 0;
    QTest::qWait(1200);
    EXPECT_EQ(contentAsked, 0);

    untilTick = 1;
    view.refresh();
    view.hide();
    contentAsked = 0;
    QTest::qWait(1200);
    EXPECT_EQ(contentAsked, 0);
}

TEST_F(PanelViewTest, theSamePressDoesNotOpenItAgain) {
    view.openAt({600, 5});
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(view.isVisible());
    view.openAt({600, 5});
    EXPECT_FALSE(view.isVisible());
    QTest::qWait(250);
    view.openAt({600, 5});
    EXPECT_TRUE(view.isVisible());
    view.openAt({600, 5});
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(opened, 2);
}

TEST_F(PanelViewTest, anOrdinaryWindowStaysUntilItIsClosed) {
    view.openAsWindow();
    EXPECT_FALSE(view.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(view.windowTitle(), "Wakeloft");
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_TRUE(view.isVisible());
    view.close();
    EXPECT_FALSE(view.isVisible());
    view.openAsWindow();
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(opened, 2);
}

TEST(TrustedAnchorTest, aPointerAtAnEdgeCorrectsHostsThatTellARelativePlace) {
    const QRect screen(0, 0, 1280, 800);
    EXPECT_EQ(trustedAnchor({0, 27}, QPoint(1208, 14), screen), QPoint(1208, 14));
    EXPECT_EQ(trustedAnchor({1200, 14}, QPoint(1208, 20), screen), QPoint(1200, 14)); // close enough
    EXPECT_EQ(trustedAnchor({1200, 14}, QPoint(600, 400), screen), QPoint(1200, 14)); // activated by keyboard
    EXPECT_EQ(trustedAnchor({9, 14}, std::nullopt, screen), QPoint(9, 14));
}

TEST(PanelPositionTest, standsBesideTheBarAndInsideTheScreen) {
    const QSize panel(260, 200);
    const QRect whole(0, 0, 1280, 800);
    EXPECT_EQ(panelPosition(panel, {600, 14}, {whole, {0, 28, 1280, 772}}), QPoint(470, 34));
    EXPECT_EQ(panelPosition(panel, {600, 785}, {whole, {0, 0, 1280, 770}}), QPoint(470, 564));
    EXPECT_EQ(panelPosition(panel, {1270, 400}, {whole, {0, 0, 1240, 800}}), QPoint(974, 300));
    EXPECT_EQ(panelPosition(panel, {15, 790}, {whole, {40, 0, 1240, 800}}), QPoint(46, 592));
    // No bar keeps its space: horizontal bars win in the corners, an item sits in the bar's middle.
    EXPECT_EQ(panelPosition(panel, {1275, 14}, {whole, whole}), QPoint(1012, 34));
    // A second screen keeps its own coordinates.
    EXPECT_EQ(panelPosition(panel, {2500, 14}, {{1280, 0, 1280, 800}, {1280, 28, 1280, 772}}),
              QPoint(2292, 34));
    EXPECT_EQ(panelPosition({260, 900}, {600, 785}, {whole, {0, 0, 1280, 770}}).y(), 0);
    EXPECT_EQ(logicalPoint({2400, 28}, {0, 0, 1280, 800}, 2), QPoint(1200, 14));
}

TEST(TextBlockTest, longNamesBreakAtTheirJoints) {
    const QFont font = QApplication::font();
    const auto linesOf = [&](const QString& text) {
        const qreal width = TextBlock::singleLineWidth(QString(18, 'a'), font);
        return qRound(TextBlock(text, {font}, width).height() / TextBlock("a", {font}, width).height());
    };
    const QString part(10, 'a');
    EXPECT_EQ(linesOf(part + "." + part + "/" + part + "_" + part), 4); // a line each
    EXPECT_EQ(linesOf(QString(43, 'a')), 3);                            // torn where they are full
}

TEST(TextBlockTest, digitsKeepTheirPlaceInAProportionalFont) {
    const QFont font = QApplication::font();
    const auto widthOf = [&](const QString& text) {
        QImage image(200, 40, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        TextBlock(text, {font, Qt::LeftToRight, false, true}, 200).draw(painter, {0, 0});
        painter.end();
        for (int x = image.width() - 1; x >= 0; --x) // where the bar at the end stands
            for (int y = 0; y < image.height(); ++y)
                if (image.pixelColor(x, y).alpha() > 128)
                    return x;
        return -1;
    };
    EXPECT_GT(widthOf("00:00|"), 10);
    EXPECT_NEAR(widthOf("11:11|"), widthOf("00:00|"), 1);
    EXPECT_NEAR(widthOf("١١:١١|"), widthOf("٠٠:٠٠|"), 1);
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

#include "status/AwakeExplanation.h"
#include "status/AwakeSessionControls.h"
#include "status/CountdownText.h"
#include "status/MenuBarIcon.h"
#include "status/QuitConfirmation.h"
#include "status/SpokenStatus.h"

#include <gtest/gtest.h>

#include <limits>

namespace wakeloft {
namespace {

constexpr Seconds infinity = std::numeric_limits<Seconds>::infinity();
constexpr Seconds notANumber = std::numeric_limits<Seconds>::quiet_NaN();
constexpr std::optional<Date> deadline = Date{1'763'700'000};

/// Words what it was asked, so that tests see the choice and not a locale.
struct PlainFormatter final : DurationFormatter {
    [[nodiscard]] std::string units(HoursAndMinutes, Width, const Locale&) const override { return ""; }
    [[nodiscard]] std::string time(std::int64_t seconds, TimePattern pattern, const Locale&) const override {
        return (pattern == TimePattern::hourMinuteSecond ? "hms " : "ms ") + std::to_string(seconds);
    }
};

TEST(Status, TimerAndLidAreToldApartWhileItIsOnAndNothingElseWhileItIsOff) {
    using Text = AwakeExplanation;
    using Controls = AwakeSessionControls;
    using Label = MenuBarIcon::SpokenLabel;
    struct Case {
        bool isOn;
        std::optional<Date> until;
        bool isLidClosed;
        Text::Case text;
        Controls::Case controls;
        Label label;
    };
    for (const auto& [isOn, until, isLidClosed, text, controls, label] :
         {Case{false, deadline, true, Text::sleepsNormally, Controls::presets, Label::off},
          Case{true, {}, false, Text::awakeIndefinitely, Controls::presets, Label::on},
          Case{true, deadline, false, Text::awakeUntilSessionEnds, Controls::cancelTimer,
               Label::onWithTimerRunning},
          Case{true,
               {},
               true,
               Text::awakeWithLidClosedIndefinitely,
               Controls::presets,
               Label::onWithLidClosed},
          Case{true, deadline, true, Text::awakeWithLidClosedUntilSessionEnds, Controls::cancelTimer,
               Label::onWithLidClosedAndTimerRunning}}) {
        EXPECT_EQ(Text::describing(isOn, until, isLidClosed), text);
        EXPECT_EQ(Controls::shown(isOn, until), controls);
        EXPECT_EQ(MenuBarIcon::current(isOn, until, isLidClosed).spokenLabel(), label);
    }
}

TEST(Status, NeverShowsMoreThanIsLeft) {
    const auto countdown = [](Seconds remaining) {
        return CountdownText::formatted(remaining, {}, PlainFormatter());
    };
    EXPECT_EQ(countdown(3599.9), "ms 3599");
    EXPECT_EQ(countdown(3600), "hms 3600");
    EXPECT_TRUE(countdown(infinity).starts_with("hms 1000000"));
    EXPECT_EQ(SpokenStatus::describing(false, 90), SpokenStatus{SpokenStatus::Off{}});
    EXPECT_EQ(SpokenStatus::describing(true, {}), SpokenStatus{SpokenStatus::On{}});
    EXPECT_EQ(SpokenStatus::describing(true, 119), SpokenStatus{SpokenStatus::TimeLeft{{60}}});
    using Asked = QuitConfirmation;
    EXPECT_EQ(Asked::asked(false, false, 90), Asked{Asked::QuitNow{}});
    EXPECT_EQ(Asked::asked(false, true, 59), Asked{Asked::Deepwake{}});
    EXPECT_EQ(Asked::asked(true, true, 60), Asked{Asked::Deepwake{60}});
    EXPECT_EQ(Asked::asked(true, false, 7199), Asked{Asked::AwakeMode{7140}});
    EXPECT_EQ(Asked::asked(true, false, infinity), Asked{Asked::AwakeMode{}});
    for (const Seconds none : {notANumber, -7200.0, 0.5}) {
        EXPECT_EQ(countdown(none), "ms 0") << none;
        EXPECT_EQ(SpokenStatus::describing(true, none), SpokenStatus{SpokenStatus::LessThanAMinuteLeft{}});
        EXPECT_EQ(Asked::asked(true, false, none), Asked{Asked::AwakeMode{}}) << none;
    }
}

} // namespace
} // namespace wakeloft

#include "session/AwakeFailure.h"
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
    [[nodiscard]] std::string units(HoursAndMinutes duration, Width, const Locale&) const override {
        return std::to_string(duration.hours) + "h" + std::to_string(duration.minutes) + "m";
    }
    [[nodiscard]] std::string time(std::int64_t seconds, TimePattern pattern, const Locale&) const override {
        return (pattern == TimePattern::hourMinuteSecond ? "hms " : "ms ") + std::to_string(seconds);
    }
};

TEST(Status, ASessionThatIsNotOnTellsNothingElse) {
    EXPECT_EQ(AwakeExplanation::describing(false, deadline, true), AwakeExplanation::sleepsNormally);
    EXPECT_EQ(AwakeSessionControls::shown(false, deadline), AwakeSessionControls::presets);
    EXPECT_EQ(MenuBarIcon::current(false, deadline, true), MenuBarIcon{});
    EXPECT_EQ(MenuBarIcon{}.spokenLabel(), MenuBarIcon::SpokenLabel::off);
    EXPECT_EQ(SpokenStatus::describing(false, 90), SpokenStatus{SpokenStatus::Off{}});
    EXPECT_EQ(QuitConfirmation::asked(false, false, 90), QuitConfirmation{QuitConfirmation::QuitNow{}});
}

TEST(Status, TimerAndLidAreToldApart) {
    EXPECT_EQ(AwakeExplanation::describing(true, deadline, false), AwakeExplanation::awakeUntilSessionEnds);
    EXPECT_EQ(AwakeExplanation::describing(true, {}, true), AwakeExplanation::awakeWithLidClosedIndefinitely);
    EXPECT_EQ(AwakeExplanation::describing(true, deadline, true),
              AwakeExplanation::awakeWithLidClosedUntilSessionEnds);
    EXPECT_EQ(AwakeSessionControls::shown(true, deadline), AwakeSessionControls::cancelTimer);
    EXPECT_EQ(AwakeSessionControls::shown(true, {}), AwakeSessionControls::presets);
    using Label = MenuBarIcon::SpokenLabel;
    EXPECT_EQ(MenuBarIcon::current(true, {}, false).spokenLabel(), Label::on);
    EXPECT_EQ(MenuBarIcon::current(true, deadline, false).spokenLabel(), Label::onWithTimerRunning);
    EXPECT_EQ(MenuBarIcon::current(true, {}, true).spokenLabel(), Label::onWithLidClosed);
    EXPECT_EQ(MenuBarIcon::current(true, deadline, true).spokenLabel(),
              Label::onWithLidClosedAndTimerRunning);
}

TEST(CountdownText, NeverShowsMoreThanIsLeft) {
    const auto text = [](Seconds remaining) {
        return CountdownText::formatted(remaining, {}, PlainFormatter());
    };
    EXPECT_EQ(text(3599.9), "ms 3599");
    EXPECT_EQ(text(3600), "hms 3600");
    EXPECT_EQ(text(0.5), "ms 0");
    EXPECT_EQ(text(-1), "ms 0");
    EXPECT_EQ(text(notANumber), "ms 0");
    EXPECT_TRUE(text(infinity).starts_with("hms 1000000"));
}

TEST(SpokenStatus, RoundsDownToWholeMinutes) {
    EXPECT_EQ(SpokenStatus::describing(true, 119), SpokenStatus{SpokenStatus::TimeLeft{{60}}});
    EXPECT_EQ(SpokenStatus::describing(true, 59.9), SpokenStatus{SpokenStatus::LessThanAMinuteLeft{}});
    EXPECT_EQ(SpokenStatus::describing(true, notANumber), SpokenStatus{SpokenStatus::LessThanAMinuteLeft{}});
    EXPECT_EQ(SpokenStatus::describing(true, {}), SpokenStatus{SpokenStatus::On{}});
}

TEST(QuitConfirmation, TellsUnderAMinuteAsNoTime) {
    using Asked = QuitConfirmation;
    EXPECT_EQ(Asked::asked(false, true, 59), Asked{Asked::Deepwake{}});
    EXPECT_EQ(Asked::asked(true, false, 7199), Asked{Asked::AwakeMode{7140}});
    EXPECT_EQ(Asked::asked(true, true, 60), Asked{Asked::Deepwake{60}});
    for (const Seconds odd : {infinity, notANumber, -7200.0})
        EXPECT_EQ(Asked::asked(true, false, odd), Asked{Asked::AwakeMode{}}) << odd;
}

TEST(AwakeFailure, KeepsTheSystemsOwnWords) {
    const AwakeFailure refused(SleepBlockerError::assertionFailed(-536870212));
    EXPECT_NE(refused, AwakeFailure(SleepBlockerError::assertionFailed(-1)));
    EXPECT_EQ(refused, AwakeFailure(SleepBlockerError::assertionFailed(-536870212)));
    const AwakeFailure reported(PlatformError{"org.example.Failed", 5, "It did not work."});
    EXPECT_EQ(std::get<AwakeFailure::Reported>(reported.value).message, "It did not work.");
}

} // namespace
} // namespace wakeloft

#include "session/AwakeDuration.h"
#include "session/AwakeIntentStore.h"
#include "session/DeadlineScheduler.h"

#include <gtest/gtest.h>

#include <limits>

namespace wakeloft {
namespace {

constexpr Seconds infinity = std::numeric_limits<Seconds>::infinity();
constexpr Seconds notANumber = std::numeric_limits<Seconds>::quiet_NaN();
constexpr Date now{1'763'700'000};

TEST(AwakeIntent, ADeadlineIsNothingWhereItCannotBeKept) {
    EXPECT_EQ(AwakeIntent::deadlineAfter(1800, now), now + 1800);
    EXPECT_EQ(AwakeIntent::deadlineAfter(Date::distantFuture() - now, now), Date::distantFuture());
    for (const Seconds seconds : {infinity, -infinity, notANumber, Date::distantFuture() - now + 1})
        EXPECT_EQ(AwakeIntent::deadlineAfter(seconds, now), std::nullopt) << seconds;
    for (const Date due : {now, Date{0}, now + 0.01, Date{notANumber}})
        EXPECT_EQ(timerInterval(due, now), 0.05) << due.secondsSince1970; // overdue, and never a spin
}

TEST(AwakeDuration, MinutesRoundHalfToEven) {
    const std::pair<Seconds, HoursAndMinutes> roundings[] = {
        {90, {0, 2}}, {150, {0, 2}}, {150.1, {0, 3}}, {3599, {1, 0}}, {-90, {0, 0}}, {notANumber, {0, 0}}};
    for (const auto& [seconds, rounded] : roundings)
        EXPECT_EQ(HoursAndMinutes::rounding(seconds), rounded) << seconds;
}

TEST(StoredRequest, IsReadBackAndRubbishIsNeverASession) {
    InMemoryUserDefaults defaults;
    UserDefaultsAwakeIntentStore store{defaults};
    const auto requested = UserDefaultsAwakeIntentStore::requestedKey;
    const auto deadline = UserDefaultsAwakeIntentStore::deadlineKey;
    const auto off = StoredAwakeIntent::intent(AwakeIntent::off());
    const auto indefinite = StoredAwakeIntent::intent(AwakeIntent::indefinite());
    EXPECT_EQ(store.load(), off);

    const auto timed = AwakeIntent::until(now + 0.25);
    store.save(timed);
    EXPECT_EQ(store.load(), StoredAwakeIntent::intent(timed));
    for (const auto& rubbish : {DefaultsValue{true}, DefaultsValue{"1763700000"}, DefaultsValue{notANumber},
                                DefaultsValue{Date::distantFuture().secondsSince1970 + 1}}) {
        defaults.set(deadline, rubbish);
        EXPECT_EQ(store.load(), StoredAwakeIntent::unreadableDeadline()) << rubbish.value.index();
    }
    store.save(AwakeIntent::off());
    EXPECT_EQ(store.load(), off); // whatever the deadline
    store.save(AwakeIntent::indefinite());
    EXPECT_EQ(store.load(), indefinite);

    for (const auto& yes : {DefaultsValue{"YES"}, DefaultsValue{2.0}}) {
        defaults.set(requested, yes);
        EXPECT_EQ(store.load(), indefinite);
    }
    for (const auto& no : {DefaultsValue{"NO"}, DefaultsValue{"rubbish"}, DefaultsValue{notANumber}}) {
        defaults.set(requested, no);
        EXPECT_EQ(store.load(), off);
    }
}

} // namespace
} // namespace wakeloft

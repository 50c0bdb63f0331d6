#include "session/AwakeDuration.h"
#include "session/AwakeIntentStore.h"
#include "session/DeadlineScheduler.h"

#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>

namespace wakeloft {
namespace {

constexpr Seconds infinity = std::numeric_limits<Seconds>::infinity();
constexpr Seconds notANumber = std::numeric_limits<Seconds>::quiet_NaN();
constexpr Date now{1'763'700'000};

TEST(AwakeIntent, DeadlineIsNothingWhereItCannotBeKept) {
    EXPECT_EQ(AwakeIntent::deadlineAfter(1800, now), (Date{now.secondsSince1970 + 1800}));
    EXPECT_EQ(AwakeIntent::deadlineAfter(0, now), now);
    EXPECT_EQ(AwakeIntent::deadlineAfter(Date::distantFuture() - now, now), Date::distantFuture());
    for (const Seconds seconds : {infinity, -infinity, notANumber, 1e300, Date::distantFuture() - now + 1})
        EXPECT_EQ(AwakeIntent::deadlineAfter(seconds, now), std::nullopt) << seconds;
}

TEST(AwakeDuration, EqualLengthsAreTheSameItem) {
    EXPECT_EQ((AwakeDuration{3600}.id()), (AwakeDuration{3600}.id()));
    EXPECT_EQ((std::unordered_set<AwakeDuration>{{3600}, {3600}, {1800}}.size()), 2U);
}

TEST(AwakeDuration, MinutesRoundHalfToEven) {
    using Rounded = HoursAndMinutes;
    EXPECT_EQ(Rounded::rounding(5400), (Rounded{1, 30}));
    EXPECT_EQ(Rounded::rounding(90), (Rounded{0, 2}));
    EXPECT_EQ(Rounded::rounding(150), (Rounded{0, 2}));
    EXPECT_EQ(Rounded::rounding(150.1), (Rounded{0, 3}));
    EXPECT_EQ(Rounded::rounding(30), (Rounded{0, 0}));
    EXPECT_EQ(Rounded::rounding(3599), (Rounded{1, 0}));
    EXPECT_EQ(Rounded::rounding(notANumber), (Rounded{0, 0}));
    EXPECT_EQ(Rounded::rounding(-90), (Rounded{0, 0}));
    EXPECT_GT(Rounded::rounding(infinity).hours, 1'000'000);
}

TEST(TimerInterval, IsNeverShorterThanItsFloor) {
    EXPECT_EQ(timerInterval(now + 10, now), 10);
    for (const Date due : {now, Date{0}, now + 0.01, Date{notANumber}, Date{-infinity}})
        EXPECT_EQ(timerInterval(due, now), 0.05) << due.secondsSince1970;
}

struct StoredRequest : testing::Test {
    InMemoryUserDefaults defaults;
    UserDefaultsAwakeIntentStore store{defaults};
    static constexpr auto requested = UserDefaultsAwakeIntentStore::requestedKey;
    static constexpr auto deadline = UserDefaultsAwakeIntentStore::deadlineKey;
    const StoredAwakeIntent off = StoredAwakeIntent::intent(AwakeIntent::off());
    const StoredAwakeIntent indefinite = StoredAwakeIntent::intent(AwakeIntent::indefinite());

    StoredAwakeIntent loadedWith(DefaultsValue until) {
        defaults.set(deadline, std::move(until));
        return store.load();
    }
};

TEST_F(StoredRequest, NothingRequestedReadsAsOffWhateverTheDeadline) {
    EXPECT_EQ(store.load(), off);
    EXPECT_EQ(loadedWith({1e9}), off);
    EXPECT_EQ(loadedWith({std::string("rubbish")}), off);
}

TEST_F(StoredRequest, DeadlinesReadOrAreUnreadable) {
    defaults.set(requested, {true});
    EXPECT_EQ(store.load(), indefinite);
    EXPECT_EQ(loadedWith({1e9}),
              StoredAwakeIntent::intent(AwakeIntent::until(Date{1e9}))); // long past, all the same
    EXPECT_EQ(loadedWith({-5.5}), StoredAwakeIntent::intent(AwakeIntent::until(Date{-5.5})));
    const auto unreadable = StoredAwakeIntent::unreadableDeadline();
    for (const DefaultsValue& rubbish :
         {DefaultsValue{true}, DefaultsValue{std::string("1763700000")}, DefaultsValue{Date{1e9}},
          DefaultsValue{DefaultsValue::List{{1e9}}}, DefaultsValue{infinity}, DefaultsValue{-infinity},
          DefaultsValue{notANumber}, DefaultsValue{Date::distantFuture().secondsSince1970 + 1}})
        EXPECT_EQ(loadedWith(rubbish), unreadable) << rubbish.value.index();
}

TEST_F(StoredRequest, AGarbledFlagReadsAsItsBooleanConversion) {
    for (const char* yes : {"YES", "true", "1", "  +007", "t", "y"}) {
        defaults.set(requested, {std::string(yes)});
        EXPECT_EQ(store.load(), indefinite) << yes;
    }
    for (const char* no : {"", "NO", "false", "0", "-", " 000", "rubbish"}) {
        defaults.set(requested, {std::string(no)});
        EXPECT_EQ(store.load(), off) << no;
    }
    defaults.set(requested, {2.0});
    EXPECT_EQ(store.load(), indefinite);
    for (const DefaultsValue& no :
         {DefaultsValue{0.0}, DefaultsValue{Date{1e9}}, DefaultsValue{notANumber}}) {
        defaults.set(requested, no);
        EXPECT_EQ(store.load(), off);
    }
}

TEST_F(StoredRequest, SavesAreReadBack) {
    store.save(AwakeIntent::until(now));
    EXPECT_EQ(store.load(), StoredAwakeIntent::intent(AwakeIntent::until(now)));
    store.save(AwakeIntent::off());
    EXPECT_EQ(store.load(), off);
    EXPECT_EQ(defaults.value(deadline), DefaultsValue{now.secondsSince1970}); // left as it was
    store.save(AwakeIntent::indefinite());
    EXPECT_EQ(store.load(), indefinite);
    EXPECT_EQ(defaults.value(deadline), std::nullopt);
}

TEST(InMemoryAwakeIntentStore, CountsAnUnreadableDeadlineAsRequested) {
    InMemoryAwakeIntentStore store(StoredAwakeIntent::unreadableDeadline());
    EXPECT_TRUE(store.isAwakeRequested());
    EXPECT_EQ(store.awakeUntil(), std::nullopt);
    store.save(AwakeIntent::off());
    EXPECT_FALSE(store.isAwakeRequested());
    EXPECT_EQ(InMemoryAwakeIntentStore(true, now).awakeUntil(), now);
    EXPECT_EQ(InMemoryAwakeIntentStore(false, now).awakeUntil(), std::nullopt);
}

} // namespace
} // namespace wakeloft

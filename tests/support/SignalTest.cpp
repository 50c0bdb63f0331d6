#include "support/Lifetime.h"
#include "support/Observable.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace wakeloft {
namespace {

TEST(Observable, SignalsOnlyRealChangesAfterTheyAreMade) {
    Signal changed;
    Observable<std::string> field(changed, "a");
    std::string seen;
    const auto subscription = changed.subscribe([&] { seen += field.get(); });
    field.set("a");
    field.set("b");
    field.set("b");
    field.set("c");
    EXPECT_EQ(seen, "bc");
}

TEST(Signal, BatchTellsOnceWhenTheOutermostEnds) {
    Signal changed;
    int told = 0;
    const auto subscription = changed.subscribe([&] { ++told; });
    {
        const Signal::Batch outer(changed);
        {
            const Signal::Batch inner(changed);
            changed.emit();
        }
        changed.emit();
        EXPECT_EQ(told, 0);
    }
    EXPECT_EQ(told, 1);
    {
        const Signal::Batch nothingHappens(changed);
    }
    EXPECT_EQ(told, 1);
}

TEST(Signal, ObserversMaySubscribeAndUnsubscribeWhileItRuns) {
    Signal signal;
    std::string told;
    Subscription third;
    Subscription late;
    Subscription first;
    first = signal.subscribe([&] {
        told += '1';
        third.end(); // not told any more, though its turn was to come
        late = signal.subscribe([&] { told += 'L'; });
        first.end(); // its own end, while it runs
    });
    const auto second = signal.subscribe([&] { told += '2'; });
    third = signal.subscribe([&] { told += '3'; });
    signal.emit();
    EXPECT_EQ(told, "12");
    signal.emit();
    EXPECT_EQ(told, "122L");
}

TEST(Signal, ANestedEmissionRunsWhole) {
    Signal signal;
    std::string told;
    bool again = true;
    const auto first = signal.subscribe([&] {
        told += 'a';
        if (std::exchange(again, false))
            signal.emit();
    });
    const auto second = signal.subscribe([&] { told += 'b'; });
    signal.emit();
    EXPECT_EQ(told, "aabb");
}

TEST(Signal, MayEndWhileItRunsAndBeforeItsSubscriptions) {
    auto signal = std::make_unique<Signal>();
    bool second = false;
    auto one = signal->subscribe([&] { signal.reset(); });
    auto two = signal->subscribe([&] { second = true; });
    signal->emit();
    EXPECT_FALSE(second);
    one.end();
    two = Subscription();
}

TEST(Signal, SubscriptionEndsWithItsOwner) {
    Signal signal;
    int told = 0;
    {
        auto subscription = signal.subscribe([&] { ++told; });
        const auto moved = std::move(subscription);
        signal.emit();
    }
    signal.emit();
    EXPECT_EQ(told, 1);
}

TEST(Lifetime, AGuardedCallbackOutlivesItsOwnerHarmlessly) {
    int calls = 0;
    std::function<void(int)> callback;
    {
        const Lifetime lifetime;
        callback = lifetime.guard([&](int by) { calls += by; });
        callback(2);
    }
    callback(2);
    EXPECT_EQ(calls, 2);
}

} // namespace
} // namespace wakeloft

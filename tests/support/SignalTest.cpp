#include "support/Observable.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace wakeloft {
namespace {

TEST(Signal, TellsRealChangesOnceAfterTheyAreMade) {
    Signal changed;
    Observable<std::string> field(changed, "a");
    std::string seen;
    std::optional<Subscription> owner;
    {
        auto subscription = changed.subscribe([&] { seen += field.get(); });
        owner.emplace(std::move(subscription));
    }
    field.set("a");
    {
        const Signal::Batch batch(changed);
        field.set("b");
        field.set("c");
    }
    field.set("d");
    owner.reset();
    field.set("e"); // the subscription has ended with its owner
    EXPECT_EQ(seen, "cd");
}

TEST(Signal, ObserversMaySubscribeUnsubscribeAndEmitWhileItRuns) {
    Signal signal;
    std::string told;
    Subscription first;
    Subscription third;
    Subscription late;
    first = signal.subscribe([&] {
        told += '1';
        third.end(); // not told any more, though its turn was to come
        late = signal.subscribe([&] { told += 'L'; });
        first.end();   // its own end, while it runs
        signal.emit(); // runs whole, inside
        told += '.';
    });
    const auto second = signal.subscribe([&] { told += '2'; });
    third = signal.subscribe([&] { told += '3'; });
    signal.emit();
    EXPECT_EQ(told, "12L.2");
    signal.emit();
    EXPECT_EQ(told, "12L.22L");
}

} // namespace
} // namespace wakeloft

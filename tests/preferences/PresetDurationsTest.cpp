#include "preferences/PresetDurationsController.h"

#include <gtest/gtest.h>

#include <limits>

namespace wakeloft {
namespace {

using List = DefaultsValue::List;

const std::vector<AwakeDuration> defaultChoice = {{1800}, {3600}, {7200}};
constexpr const char* key = "com.wakeloft.presetDurations";

TEST(PresetDurations, OnlyAValidStoredChoiceIsTaken) {
    const auto read = [](const DefaultsValue& stored) {
        InMemoryUserDefaults defaults;
        defaults.set(key, stored);
        UserDefaultsPresetDurationStore store(defaults);
        const auto pinned = PresetDurationsController(store).pinned();
        EXPECT_EQ(defaults.value(key), stored); // never written back
        return pinned;
    };
    EXPECT_EQ(read({List{{7200.0}, {1800.0}}}), (std::vector<AwakeDuration>{{1800}, {7200}}));
    EXPECT_EQ(read({List{}}), std::vector<AwakeDuration>());
    for (const DefaultsValue& wrong : {DefaultsValue{List{{1800.0}, {1800.0}}},
                                       {List{{1800.0}, {3600.0}, {7200.0}, {14400.0}}},
                                       {List{{900.0}}},
                                       {List{{14400.0}, {std::string("7200")}}},
                                       {List{{1800.5}}},
                                       {14400.0}})
        EXPECT_EQ(read(wrong), defaultChoice);
    EXPECT_EQ(PresetDurations::validated({std::numeric_limits<Seconds>::quiet_NaN(), 1800}), std::nullopt);
}

TEST(PresetDurations, AChoiceIsStoredSortedAndToldOnceAndAFourthStarIsRefused) {
    InMemoryUserDefaults defaults;
    UserDefaultsPresetDurationStore store(defaults);
    PresetDurationsController controller(store);
    int changes = 0;
    const auto observer = controller.changed().subscribe([&] { ++changes; });
    controller.pin({{1800}, {3600}, {7200}, {14400}});
    EXPECT_EQ(defaults.value(key), std::nullopt);
    EXPECT_EQ(controller.pinned(), defaultChoice);
    controller.pin({{7200}, {1800}});
    controller.pin({{1800}, {7200}});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(store.pinnedSeconds(), (std::vector<Seconds>{1800, 7200}));
    controller.pin({});
    EXPECT_EQ(PresetDurationsController(store).pinned(), std::vector<AwakeDuration>());
}

} // namespace
} // namespace wakeloft

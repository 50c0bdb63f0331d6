#include "preferences/PresetDurationsController.h"

#include <gtest/gtest.h>

#include <cmath>

namespace wakeloft {
namespace {

using List = DefaultsValue::List;

const std::vector<AwakeDuration> defaultChoice = {{1800}, {3600}, {7200}};

TEST(PresetDurations, OnlyAValidStoredChoiceIsTaken) {
    const auto read = [](const DefaultsValue& stored) {
        InMemoryUserDefaults defaults;
        defaults.set("com.wakeloft.presetDurations", stored);
        UserDefaultsPresetDurationStore store(defaults);
        const auto pinned = PresetDurationsController(store).pinned();
        EXPECT_EQ(defaults.value("com.wakeloft.presetDurations"), stored); // never written back
        return pinned;
    };
    EXPECT_EQ(read({List{{7200.0}, {1800.0}}}), (std::vector<AwakeDuration>{{1800}, {7200}}));
    EXPECT_EQ(read({List{}}), std::vector<AwakeDuration>());
    for (const List& wrong :
         {List{{1800.0}, {1800.0}}, List{{1800.0}, {3600.0}, {7200.0}, {14400.0}}, List{{900.0}},
          List{{14400.0}, {std::string("7200")}}, List{{14400.0}, {true}}, List{{14400.0}, {1800.5}}})
        EXPECT_EQ(read({wrong}), defaultChoice);
    EXPECT_EQ(read({14400.0}), defaultChoice);
    EXPECT_EQ(PresetDurations::validated({std::nan(""), 1800}), std::nullopt);

    InMemoryUserDefaults none;
    UserDefaultsPresetDurationStore store(none);
    EXPECT_EQ(PresetDurationsController(store).pinned(), defaultChoice);
    EXPECT_EQ(none.value("com.wakeloft.presetDurations"), std::nullopt);
}

TEST(PresetDurations, AFourthStarIsRefused) {
    PresetDurations choice(defaultChoice);
    EXPECT_FALSE(choice.canToggle({14400}));
    choice.toggle({14400});
    EXPECT_EQ(choice.pinned(), defaultChoice);
    EXPECT_TRUE(choice.canToggle({3600}));
    choice.toggle({3600});
    EXPECT_FALSE(choice.isChosen({3600}));
    choice.toggle({28800});
    EXPECT_EQ(choice.pinned(), (std::vector<AwakeDuration>{{1800}, {7200}, {28800}}));
    choice.toggle({1800});
    EXPECT_FALSE(choice.canToggle({900})); // a star is left, but not for this one
    choice.toggle({900});
    EXPECT_EQ(choice, PresetDurations({{28800}, {7200}}));
    EXPECT_EQ(PresetDurations(std::vector<AwakeDuration>{{1}}).pinned(), defaultChoice);
}

TEST(PresetDurations, AChoiceIsStoredSortedAndToldOnce) {
    InMemoryUserDefaults defaults;
    UserDefaultsPresetDurationStore store(defaults);
    PresetDurationsController controller(store);
    int changes = 0;
    const auto observer = controller.changed().subscribe([&] { ++changes; });
    controller.pin({{1800}, {3600}, {7200}, {14400}});
    EXPECT_EQ(store.pinnedSeconds(), std::nullopt);
    EXPECT_EQ(controller.pinned(), defaultChoice);
    controller.pin({{7200}, {1800}});
    controller.pin({{1800}, {7200}});
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(store.pinnedSeconds(), (std::vector<Seconds>{1800, 7200}));
    EXPECT_EQ(PresetDurationsController(store).pinned(), controller.pinned());
    controller.pin({});
    EXPECT_EQ(PresetDurationsController(store).pinned(), std::vector<AwakeDuration>());
    store.setPinnedSeconds(std::nullopt);
    EXPECT_EQ(defaults.value("com.wakeloft.presetDurations"), std::nullopt);
}

} // namespace
} // namespace wakeloft

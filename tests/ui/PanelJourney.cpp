#include "ui/PanelJourney.h"

#include <unistd.h>

#include <algorithm>

namespace wakeloft {

namespace {

constexpr int patienceMs = 10'000;
/// So quickly after closing the panel nobody means to open it again.
constexpr int handsPauseMicroseconds = 250'000;

} // namespace

void PanelJourney::SetUp() {
    ASSERT_TRUE(screen::hasTray()) << "there is no desktop of the rig; see rig/private-desktop";
    ASSERT_TRUE(comesTrue([] { return !screen::trayIcons(); }, patienceMs)) << "a tray icon of another test";
}

void PanelJourney::TearDown() {
    screen::movePointer(2, 600); // no tooltip of the tray into the next test
    if (HasFailure())
        std::printf("Wakeloft said: %s\n", app.output().c_str());
}

void PanelJourney::startApp(const std::vector<std::string>& environment) {
    app.start(environment);
    ASSERT_TRUE(app.isReady()) << app.output();
    constexpr int settlingMicroseconds = 100'000;
    const auto isSettled = [this] { // the tray moves when its icons change
        const auto before = screen::trayIcons();
        usleep(settlingMicroseconds);
        const auto now = screen::trayIcons();
        if (!before || !now || before->x != now->x)
            return false;
        icon_ = *now;
        return true;
    };
    ASSERT_TRUE(comesTrue(isSettled, patienceMs)) << "no icon in the tray: " << app.output();
    ASSERT_TRUE(comesTrue([this] { return tree.follow(app.process().pid()); })) << "no accessible program";
}

bool PanelJourney::isPanelOpen() {
    return tree.find("Wakeloft", "filler").has_value(); // the window's title, in any language
}

void PanelJourney::openPanel() {
    usleep(handsPauseMicroseconds);
    screen::click(icon_);
    ASSERT_TRUE(comesTrue([this] { return isPanelOpen(); })) << app.output();
}

void PanelJourney::chooseSetting(const std::string& name) {
    click("Settings");
    click(name);
}

void PanelJourney::startDeepwake() {
    app.putSettings("\"com.wakeloft.acknowledgedHeatWarning\": true");
    startApp();
    openPanel();
    click("Deepwake");
    ASSERT_TRUE(laptop.waitForLocks(1)) << app.output();
    ASSERT_TRUE(is("Deepwake", AccessibleTree::checked));
}

bool PanelJourney::shows(const std::string& name) {
    return comesTrue([&] { return tree.find(name).has_value(); });
}

std::string PanelJourney::textThatBegins(const std::string& beginning) {
    std::string text;
    comesTrue([&] {
        for (const auto& element : tree.elements())
            if (element.name.starts_with(beginning))
                text = element.name;
        return !text.empty();
    });
    return text;
}

bool PanelJourney::isGone(const std::string& name) {
    return comesTrue([&] { return !tree.find(name); });
}

bool PanelJourney::is(const std::string& name, AccessibleTree::State state, bool isSet) {
    return comesTrue([&] {
        const auto element = tree.find(name);
        return element && tree.is(*element, state) == isSet;
    });
}

void PanelJourney::click(const std::string& name) {
    ASSERT_TRUE(shows(name)) << name;
    const auto element = tree.find(name);
    ASSERT_TRUE(element) << name;
    screen::click(tree.area(*element));
}

void PanelJourney::press(const std::string& name) {
    ASSERT_TRUE(shows(name)) << name;
    const auto element = tree.find(name);
    ASSERT_TRUE(element && tree.press(*element)) << name;
}

bool PanelJourney::sessionsAre(int count) {
    return comesTrue([&] {
        const auto inhibitors = loginManager.wakeloftInhibitors();
        return std::ranges::count(inhibitors, "idle", &ListedInhibitor::what) == count;
    });
}

} // namespace wakeloft

#include "ui/AccessibleTree.h"

#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr const char* root = "/org/a11y/atspi/accessible/root";

BusPointer openAccessibilityBus(sd_event* event) {
    const auto session = openSessionBus(event);
    const auto answer = askBus(session->get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
    const char* address = "";
    if (answer)
        sd_bus_message_read(answer.reply.get(), "s", &address);
    return connectToBus(address, event);
}

} // namespace

AccessibleTree::AccessibleTree(sd_event* event) : bus_(openAccessibilityBus(event)) {
    const auto answer = askBus(bus_.get(), registry, "/org/a11y/atspi/registry", registry, "RegisterEvent",
                               "s", "object:state-changed");
    EXPECT_TRUE(answer) << answer.error;
    events_ = std::move(matchBusSignal(bus_.get(),
                                       "type='signal',interface='org.a11y.atspi.Event.Object',"
                                       "member='StateChanged',arg0='showing'",
                                       [this](sd_bus_message* change) { noteShowing(change); })
                            .value());
}

bool AccessibleTree::follow(pid_t process) {
    shown_.clear();
    popups_.clear();
    program_ = registry;
    for (const auto& each : children(root)) {
        const auto answer = askBus(bus_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                   "GetConnectionUnixProcessID", "s", each.bus.c_str());
        std::uint32_t owner = 0;
        if (answer)
            sd_bus_message_read(answer.reply.get(), "u", &owner);
        program_ = each.bus;
        if (owner == static_cast<std::uint32_t>(process))
            return true;
    }
    return false;
}

std::optional<AccessibleTree::Element>
AccessibleTree::find(const std::function<bool(const Element&)>& isWanted) {
    std::optional<Element> found;
    std::ranges::any_of(windows(), [&](const std::string& window) {
        found = findFrom(window, isWanted);
        return found.has_value();
    });
    return found;
}

bool AccessibleTree::is(const Element& element, State state) const {
    const auto reply = ask(element.path, accessible, "GetState");
    std::array<std::uint32_t, 2> words{};
    if (reply)
        sd_bus_message_read(reply.get(), "au", 2, &words[0], &words[1]);
    return (words.at(state / 32) >> state % 32 & 1) != 0;
}

ScreenArea AccessibleTree::area(const Element& element) const {
    constexpr std::uint32_t onTheScreen = 0;
    const auto reply = ask(element.path, "org.a11y.atspi.Component", "GetExtents", "u", onTheScreen);
    ScreenArea area;
    if (reply)
        sd_bus_message_read(reply.get(), "(iiii)", &area.x, &area.y, &area.width, &area.height);
    return area;
}

bool AccessibleTree::press(const Element& element) const {
    return ask(element.path, "org.a11y.atspi.Action", "DoAction", "i", 0) != nullptr;
}

std::vector<AccessibleTree::Reference> AccessibleTree::children(const std::string& path) const {
    const auto reply = ask(path, accessible, "GetChildren");
    std::vector<Reference> all;
    const char* bus = nullptr;
    const char* child = nullptr;
    if (reply && sd_bus_message_enter_container(reply.get(), 'a', "(so)") > 0)
        while (sd_bus_message_read(reply.get(), "(so)", &bus, &child) > 0)
            all.push_back({bus, child});
    return all;
}

void AccessibleTree::noteShowing(sd_bus_message* event) {
    std::int32_t isShowing = 0;
    if (program_ == sd_bus_message_get_sender(event) &&
        sd_bus_message_read(event, "sii", nullptr, &isShowing, nullptr) > 0 && isShowing != 0)
        shown_.emplace_back(sd_bus_message_get_path(event));
}

std::vector<std::string> AccessibleTree::windows() {
    while (sd_bus_process(bus_.get(), nullptr) > 0) {
    }
    std::vector<std::string> listed;
    for (const auto& each : children(root))
        listed.push_back(each.path);
    for (const auto& path : std::exchange(shown_, {})) {
        const auto reply = ask(path, properties, "Get", "ss", accessible, "Parent");
        const char* parent = "";
        if (reply && sd_bus_message_read(reply.get(), "v", "(so)", nullptr, &parent) > 0 &&
            std::string(parent) == root && std::ranges::find(listed, path) == listed.end())
            popups_.push_back(path);
    }
    std::vector<std::string> windows(popups_.rbegin(), popups_.rend()); // the latest is on top
    windows.insert(windows.end(), listed.begin(), listed.end());
    return windows;
}

std::optional<AccessibleTree::Element>
AccessibleTree::findFrom(const std::string& path, const std::function<bool(const Element&)>& isWanted) const {
    Element element{path, ""};
    if (!is(element, showing))
        return std::nullopt;
    element.name = askBusText(bus_.get(), program_.c_str(), path.c_str(), accessible, "Name");
    if (isWanted(element))
        return element;
    for (const auto& each : children(path))
        if (auto found = findFrom(each.path, isWanted))
            return found;
    return std::nullopt;
}

} // namespace wakeloft

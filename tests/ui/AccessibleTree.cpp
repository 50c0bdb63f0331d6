#include "ui/AccessibleTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* component = "org.a11y.atspi.Component";
constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr const char* root = "/org/a11y/atspi/accessible/root";
constexpr std::uint32_t screenCoordinates = 0;

BusPointer openAccessibilityBus(sd_event* event) {
    const auto session = openSessionBus(event);
    BusError error;
    sd_bus_message* reply = nullptr;
    const char* address = nullptr;
    if (!session || sd_bus_call_method(session->get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus",
                                       "GetAddress", error.get(), &reply, nullptr) < 0) {
        ADD_FAILURE() << "there is no accessibility bus";
        return nullptr;
    }
    const BusMessage owned(reply);
    sd_bus_message_read(reply, "s", &address);
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    BusPointer opened(bus);
    sd_bus_set_address(bus, address);
    sd_bus_set_bus_client(bus, 1);
    const int result = sd_bus_start(bus);
    EXPECT_GE(result, 0) << "the accessibility bus at " << address << ": " << std::strerror(-result);
    return opened;
}

/// The names on the bus and paths of a list of elements.
std::vector<std::pair<std::string, std::string>> readElements(sd_bus_message* list) {
    std::vector<std::pair<std::string, std::string>> all;
    const char* name = nullptr;
    const char* path = nullptr;
    if (list == nullptr || sd_bus_message_enter_container(list, 'a', "(so)") < 0)
        return all;
    while (sd_bus_message_read(list, "(so)", &name, &path) > 0)
        all.emplace_back(name, path);
    return all;
}

} // namespace

AccessibleTree::AccessibleTree(sd_event* event) : bus_(openAccessibilityBus(event)) {
    if (bus_ == nullptr)
        return;
    BusError error;
    EXPECT_GE(sd_bus_call_method(bus_.get(), registry, "/org/a11y/atspi/registry", registry, "RegisterEvent",
                                 error.get(), nullptr, "s", "object:state-changed"),
              0);
    auto events = matchBusSignal(bus_.get(),
                                 "type='signal',interface='org.a11y.atspi.Event.Object',"
                                 "member='StateChanged',arg0='showing'",
                                 [this](sd_bus_message* change) { noteShowing(change); });
    EXPECT_TRUE(events);
    if (events)
        events_ = std::move(*events);
}

bool AccessibleTree::follow(pid_t process) {
    shown_.clear();
    popups_.clear();
    program_ = registry;
    const auto programs = ask(root, accessible, "GetChildren");
    program_.clear();
    for (const auto& [name, path] : readElements(programs.get())) {
        BusError error;
        sd_bus_message* reply = nullptr;
        std::uint32_t owner = 0;
        if (sd_bus_call_method(bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus", "GetConnectionUnixProcessID", error.get(), &reply, "s",
                               name.c_str()) < 0)
            continue;
        const BusMessage owned(reply);
        sd_bus_message_read(reply, "u", &owner);
        if (owner == static_cast<std::uint32_t>(process))
            program_ = name;
    }
    return !program_.empty();
}

std::vector<AccessibleTree::Element> AccessibleTree::elements() {
    std::vector<Element> all;
    for (const auto& window : windows())
        walk(window, [&](const Element& element) {
            all.push_back(element);
            return false;
        });
    return all;
}

std::optional<AccessibleTree::Element> AccessibleTree::find(const std::string& name,
                                                            const std::string& role) {
    std::optional<Element> found;
    const auto visit = [&](const Element& element) {
        if (element.name == name && (role.empty() || element.role == role))
            found = element;
        return found.has_value();
    };
    for (const auto& window : windows())
        if (walk(window, visit))
            break;
    return found;
}

bool AccessibleTree::is(const Element& element, State state) const {
    return (states(element.path) >> state & 1) != 0;
}

std::string AccessibleTree::description(const Element& element) const {
    return text(element, "Description");
}

ScreenArea AccessibleTree::area(const Element& element) const {
    BusError error;
    sd_bus_message* reply = nullptr;
    ScreenArea area;
    if (sd_bus_call_method(bus_.get(), program_.c_str(), element.path.c_str(), component, "GetExtents",
                           error.get(), &reply, "u", screenCoordinates) < 0)
        return area;
    const BusMessage owned(reply);
    sd_bus_message_read(reply, "(iiii)", &area.x, &area.y, &area.width, &area.height);
    return area;
}

bool AccessibleTree::press(const Element& element) const {
    BusError error;
    constexpr std::int32_t first = 0;
    return sd_bus_call_method(bus_.get(), program_.c_str(), element.path.c_str(), "org.a11y.atspi.Action",
                              "DoAction", error.get(), nullptr, "i", first) >= 0;
}

BusMessage AccessibleTree::ask(const std::string& path, const char* interface, const char* method) const {
    BusError error;
    sd_bus_message* reply = nullptr;
    sd_bus_call_method(bus_.get(), program_.c_str(), path.c_str(), interface, method, error.get(), &reply,
                       nullptr);
    return BusMessage(reply);
}

std::string AccessibleTree::text(const Element& element, const char* property) const {
    BusError error;
    char* value = nullptr;
    if (sd_bus_get_property_string(bus_.get(), program_.c_str(), element.path.c_str(), accessible, property,
                                   error.get(), &value) < 0)
        return "";
    std::string text(value);
    std::free(value);
    return text;
}

std::uint64_t AccessibleTree::states(const std::string& path) const {
    const auto reply = ask(path, accessible, "GetState");
    const void* words = nullptr;
    std::size_t size = 0;
    std::uint64_t states = 0;
    if (reply && sd_bus_message_read_array(reply.get(), 'u', &words, &size) >= 0 && size == sizeof states)
        std::memcpy(&states, words, size); // the lower word comes first
    return states;
}

std::string AccessibleTree::parent(const std::string& path) const {
    BusError error;
    sd_bus_message* reply = nullptr;
    const char* parent = "";
    if (sd_bus_get_property(bus_.get(), program_.c_str(), path.c_str(), accessible, "Parent", error.get(),
                            &reply, "(so)") < 0)
        return parent;
    const BusMessage owned(reply);
    sd_bus_message_read(reply, "(so)", nullptr, &parent);
    return parent;
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
    const auto children = ask(root, accessible, "GetChildren");
    for (const auto& [name, path] : readElements(children.get()))
        listed.push_back(path);
    for (const auto& path : std::exchange(shown_, {}))
        if (parent(path) == root && std::ranges::find(listed, path) == listed.end())
            popups_.push_back(path);
    std::vector<std::string> windows(popups_.rbegin(), popups_.rend()); // the latest is on top
    windows.insert(windows.end(), listed.begin(), listed.end());
    return windows;
}

bool AccessibleTree::walk(const std::string& path, const std::function<bool(const Element&)>& visit) const {
    if ((states(path) >> showing & 1) == 0)
        return false;
    Element element{path, "", ""};
    const auto role = ask(path, accessible, "GetRoleName");
    const char* roleName = "";
    if (role)
        sd_bus_message_read(role.get(), "s", &roleName);
    element.role = roleName;
    element.name = text(element, "Name");
    if (visit(element))
        return true;
    const auto children = ask(path, accessible, "GetChildren");
    return std::ranges::any_of(readElements(children.get()),
                               [&](const auto& child) { return walk(child.second, visit); });
}

} // namespace wakeloft

#include "BusCalls.h"

#include "DesktopApplication.h"
#include "Fail.h"
#include "Program.h"

#include <cstring>
#include <functional>
#include <thread>

namespace wakeloft {

namespace {

constexpr const char* loginManager = "org.freedesktop.login1";
constexpr const char* loginManagerPath = "/org/freedesktop/login1";
constexpr const char* loginManagerInterface = "org.freedesktop.login1.Manager";
constexpr auto patience = std::chrono::seconds(5);

std::string addressIn(const char* variable) {
    const char* address = std::getenv(variable);
    if (address == nullptr)
        fail(std::string(variable) + " is not set.");
    return address;
}

/// Tells each entry of the login manager's list until `isEnough`.
void listInhibitors(sd_bus* bus, const std::function<bool(std::string_view what, pid_t process)>& isEnough) {
    BusError error;
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call_method(bus, loginManager, loginManagerPath, loginManagerInterface,
                                          "ListInhibitors", error.get(), &reply, nullptr);
    const BusMessage owned(reply);
    check("The inhibitors cannot be listed", result, error.get());
    check("The inhibitors cannot be read", sd_bus_message_enter_container(reply, 'a', "(ssssuu)"));
    const char* what = nullptr;
    std::uint32_t process = 0;
    while (sd_bus_message_read(reply, "(ssssuu)", &what, nullptr, nullptr, nullptr, nullptr, &process) > 0)
        if (isEnough(what, static_cast<pid_t>(process)))
            return;
}

bool hasTrayItem(sd_bus* bus, pid_t process) {
    BusError error;
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_get_property(bus, "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                           "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems",
                                           error.get(), &reply, "as");
    const BusMessage owned(reply);
    check("The tray's items cannot be listed", result, error.get());
    check("The tray's items cannot be read", sd_bus_message_enter_container(reply, 'a', "s"));
    const char* item = nullptr; // a bus name, then a path
    while (sd_bus_message_read(reply, "s", &item) > 0) {
        sd_bus_creds* credentials = nullptr;
        pid_t owner = 0;
        if (sd_bus_get_name_creds(bus, std::string(item, std::strcspn(item, "/")).c_str(), SD_BUS_CREDS_PID,
                                  &credentials) >= 0)
            sd_bus_creds_get_pid(credentials, &owner);
        sd_bus_creds_unref(credentials);
        if (owner == process)
            return true;
    }
    return false;
}

} // namespace

void check(const char* what, int result, const sd_bus_error* error) {
    if (result < 0)
        fail(busFailure(what, error, result).description);
}

BusPointer connectTo(const std::string& address) {
    sd_bus* made = nullptr;
    check("No bus connection can be made", sd_bus_new(&made));
    BusPointer bus(made);
    int result = sd_bus_set_address(made, address.c_str());
    if (result >= 0)
        result = sd_bus_set_bus_client(made, 1);
    if (result >= 0)
        result = sd_bus_start(made);
    const char* name = nullptr;
    if (result >= 0)
        result = sd_bus_get_unique_name(made, &name); // waits for the greeting
    check("The bus cannot be reached", result);
    return bus;
}

BusPointer connectToSystemBus() {
    return connectTo(addressIn("DBUS_SYSTEM_BUS_ADDRESS"));
}

BusPointer connectToDesktopBus() {
    return connectTo(addressIn("DBUS_SESSION_BUS_ADDRESS"));
}

void process(sd_bus* bus, std::uint64_t microseconds) {
    int result = sd_bus_process(bus, nullptr);
    if (result == 0)
        result = sd_bus_wait(bus, microseconds);
    check("The bus failed", result == -EINTR ? 0 : result);
}

void sendAction(sd_bus* bus, const char* action) {
    sd_bus_message* made = nullptr;
    int result = sd_bus_message_new_method_call(bus, &made, DesktopApplication::identifier,
                                                DesktopApplication::objectPath, "org.freedesktop.Application",
                                                "ActivateAction");
    const BusMessage call(made);
    if (result >= 0)
        result = sd_bus_message_append(made, "sava{sv}", action, 0, 0);
    if (result >= 0)
        result = sd_bus_message_set_expect_reply(made, 0);
    if (result >= 0)
        result = sd_bus_send(bus, made, nullptr);
    if (result >= 0)
        result = sd_bus_flush(bus);
    check("The program cannot be told", result);
}

void startSession(sd_bus* bus, double seconds) {
    check("The session cannot be started",
          sd_bus_call_method(bus, DesktopApplication::identifier, DesktopApplication::objectPath,
                             "org.freedesktop.Application", "ActivateAction", nullptr, nullptr, "sava{sv}",
                             "start-session", 1, "d", seconds, 0));
}

void pressTrayItem(sd_bus* bus) {
    check("The tray item cannot be pressed",
          sd_bus_call_method(bus, DesktopApplication::identifier, "/StatusNotifierItem",
                             "org.kde.StatusNotifierItem", "Activate", nullptr, nullptr, "ii", 1200, 14));
}

void waitForTrayItem(sd_bus* bus, pid_t process) {
    const auto end = Clock::now() + patience;
    while (!hasTrayItem(bus, process)) {
        if (Clock::now() > end)
            fail("The desktop's tray has no item of process " + std::to_string(process) + ".");
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

BusMessage inhibitIdle(sd_bus* systemBus) {
    BusError error;
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call_method(systemBus, loginManager, loginManagerPath, loginManagerInterface,
                                          "Inhibit", error.get(), &reply, "ssss", "idle", "Wakeloft",
                                          "Wakeloft is keeping this computer awake", "block");
    BusMessage owned(reply);
    check("The login manager refuses", result, error.get());
    return owned;
}

bool blocks(sd_bus* systemBus, std::string_view what, pid_t process) {
    bool isListed = false;
    listInhibitors(systemBus, [&](std::string_view listed, pid_t holder) {
        return isListed = isListed || (listed == what && holder == process);
    });
    return isListed;
}

void waitForNoInhibitor(sd_bus* systemBus) {
    const auto end = Clock::now() + patience;
    for (bool isAny = true; isAny;) {
        isAny = false;
        listInhibitors(systemBus, [&](std::string_view, pid_t) { return isAny = true; });
        if (Clock::now() > end)
            fail("An inhibitor stays that should be gone.");
    }
}

} // namespace wakeloft

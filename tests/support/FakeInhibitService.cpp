#include "support/FakeInhibitService.h"

#include <chrono>
#include <thread>

namespace wakeloft {

namespace {
constexpr std::uint32_t cookieNumber = 7;
}

FakeInhibitService::FakeInhibitService(const PrivateBus& bus, Dialect dialect, Manners manners)
    : dialect_(dialect),
      manners_(manners),
      thread_([this, &bus](sd_event* event) { return serve(bus, event); }) {}

const char* FakeInhibitService::nameOf(Dialect dialect) {
    return dialect == Dialect::sessionManager ? "org.gnome.SessionManager"
                                              : "org.freedesktop.PowerManagement";
}

int FakeInhibitService::inhibit(sd_bus_message* message, void* userdata, sd_bus_error* error) {
    auto* self = static_cast<FakeInhibitService*>(userdata);
    const char* who = nullptr;
    const char* why = nullptr;
    std::uint32_t window = 0;
    std::uint32_t flags = 0;
    const int result = self->dialect_ == Dialect::sessionManager
                           ? sd_bus_message_read(message, "susu", &who, &window, &why, &flags)
                           : sd_bus_message_read(message, "ss", &who, &why);
    if (result < 0)
        return result;
    std::this_thread::sleep_for(std::chrono::milliseconds(self->manners_.answersAfterMs));
    if (self->manners_.refuses)
        return sd_bus_error_set(error, "org.example.Refused", "Not today.");
    self->latest_ = std::to_string(flags) + " " + who + ": " + why;
    ++self->held_;
    ++self->granted_;
    return sd_bus_reply_method_return(message, "u", cookieNumber);
}

int FakeInhibitService::uninhibit(sd_bus_message* message, void* userdata, sd_bus_error* error) {
    std::uint32_t cookie = 0;
    const int result = sd_bus_message_read(message, "u", &cookie);
    if (result < 0 || cookie != cookieNumber)
        return sd_bus_error_set(error, "org.example.UnknownCookie", "There is no such inhibitor.");
    --static_cast<FakeInhibitService*>(userdata)->held_;
    return sd_bus_reply_method_return(message, nullptr);
}

std::shared_ptr<sd_bus> FakeInhibitService::serve(const PrivateBus& bus, sd_event* event) {
    static const sd_bus_vtable sessionManager[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("Inhibit", "susu", "u", inhibit, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("Uninhibit", "u", "", uninhibit, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END,
    };
    static const sd_bus_vtable powerManagement[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("Inhibit", "ss", "u", inhibit, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("UnInhibit", "u", "", uninhibit, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END,
    };
    const bool isSessionManager = dialect_ == Dialect::sessionManager;
    std::shared_ptr<sd_bus> connection = bus.connect(event);
    EXPECT_GE(sd_bus_add_object_vtable(
                  connection.get(), nullptr,
                  isSessionManager ? "/org/gnome/SessionManager" : "/org/freedesktop/PowerManagement/Inhibit",
                  isSessionManager ? "org.gnome.SessionManager" : "org.freedesktop.PowerManagement.Inhibit",
                  isSessionManager ? sessionManager : powerManagement, this),
              0);
    EXPECT_GE(sd_bus_request_name(connection.get(), nameOf(dialect_), 0), 0);
    return connection;
}

} // namespace wakeloft

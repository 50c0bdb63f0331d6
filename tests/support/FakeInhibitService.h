#pragma once

#include "support/FakeService.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

namespace wakeloft {

/// A service of the desktop session that can be asked to hold off sleep, on a thread and a connection of its
/// own, so that blocking calls to it are answered. Ending it is leaving the bus, as in a crash.
class FakeInhibitService {
  public:
    enum class Dialect { sessionManager, powerManagement };

    struct Manners {
        bool refuses = false;
        int answersAfterMs = 0;
    };

    FakeInhibitService(const PrivateBus& bus, Dialect dialect, Manners manners = {false, 0})
        : isSessionManager_(dialect == Dialect::sessionManager),
          manners_(manners),
          thread_([this, &bus](sd_event* event) {
              return std::make_shared<FakeService>(
                  bus, event,
                  isSessionManager_ ? "org.gnome.SessionManager" : "org.freedesktop.PowerManagement",
                  isSessionManager_ ? "/org/gnome/SessionManager"
                                    : "/org/freedesktop/PowerManagement/Inhibit",
                  [this](sd_bus_message* call, sd_bus_error* error) { return answer(call, error); });
          }) {}

    /// How many inhibitors it honours now.
    [[nodiscard]] int held() const { return held_; }
    /// How many it has granted so far.
    [[nodiscard]] int granted() const { return granted_; }
    /// Of the latest request: the flags of a session manager, the application's name and reason.
    [[nodiscard]] std::string latestRequest() const { return latest_; }

  private:
    static constexpr std::uint32_t cookieNumber = 7;

    int answer(sd_bus_message* call, sd_bus_error* error) {
        const char* interface =
            isSessionManager_ ? "org.gnome.SessionManager" : "org.freedesktop.PowerManagement.Inhibit";
        if (sd_bus_message_is_method_call(call, interface, "Inhibit") > 0)
            return inhibit(call, error);
        std::uint32_t cookie = 0;
        if (sd_bus_message_is_method_call(call, interface, isSessionManager_ ? "Uninhibit" : "UnInhibit") <=
            0)
            return 0;
        if (sd_bus_message_read(call, "u", &cookie) < 0 || cookie != cookieNumber)
            return sd_bus_error_set(error, "org.example.UnknownCookie", "There is no such inhibitor.");
        --held_;
        return sd_bus_reply_method_return(call, nullptr);
    }
    int inhibit(sd_bus_message* call, sd_bus_error* error) {
        const char* who = nullptr;
        const char* why = nullptr;
        std::uint32_t flags = 0;
        const int result = isSessionManager_ ? sd_bus_message_read(call, "susu", &who, nullptr, &why, &flags)
                                             : sd_bus_message_read(call, "ss", &who, &why);
        if (result < 0)
            return result;
        std::this_thread::sleep_for(std::chrono::milliseconds(manners_.answersAfterMs));
        if (manners_.refuses)
            return sd_bus_error_set(error, "org.example.Refused", "Not today.");
        latest_ = std::to_string(flags) + " " + who + ": " + why;
        ++held_;
        ++granted_;
        return sd_bus_reply_method_return(call, "u", cookieNumber);
    }

    bool isSessionManager_;
    Manners manners_;
    std::atomic<int> held_ = 0;
    std::atomic<int> granted_ = 0;
    std::string latest_; ///< written before the reply is sent, read after it has come
    ServiceThread thread_;
};

} // namespace wakeloft

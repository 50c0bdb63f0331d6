#pragma once

#include "support/FakeService.h"

#include <string>
#include <vector>

namespace wakeloft {

/// A polkit with one opinion, on the test's own loop.
class FakePolkit {
  public:
    enum class Opinion { yes, no, never };

    FakePolkit(const PrivateBus& bus, sd_event* event)
        : service_(bus, event, "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
                   [this](sd_bus_message* call, sd_bus_error*) { return check(call); }) {}

    Opinion opinion = Opinion::yes;
    std::vector<std::string> asked; ///< "subject kind, subject's name, action, flags"

  private:
    int check(sd_bus_message* call) {
        const char* kind = nullptr;
        const char* key = nullptr;
        const char* name = nullptr;
        const char* action = nullptr;
        std::uint32_t flags = 0;
        int result = sd_bus_message_read(call, "(sa{sv})s", &kind, 1, &key, "s", &name, &action);
        if (result >= 0)
            result = sd_bus_message_skip(call, "a{ss}");
        if (result >= 0)
            result = sd_bus_message_read(call, "u", &flags);
        if (result < 0)
            return result;
        asked.push_back(std::string(kind) + " " + name + " " + action + " " + std::to_string(flags));
        if (opinion == Opinion::never)
            return 1;
        return sd_bus_reply_method_return(call, "(bba{ss})", opinion == Opinion::yes ? 1 : 0, 0, 0);
    }
    FakeService service_;
};

/// A UPower whose battery's warning level is moved by hand, on the test's own loop.
class FakeUPower {
  public:
    FakeUPower(const PrivateBus& bus, sd_event* event)
        : service_(bus, event, "org.freedesktop.UPower", path, [this](sd_bus_message* call, sd_bus_error*) {
              ++reads_;
              return sd_bus_reply_method_return(call, "v", "u", level_);
          }) {}
    void setLevel(std::uint32_t level) {
        level_ = level;
        EXPECT_GE(sd_bus_emit_signal(service_.bus(), path, "org.freedesktop.DBus.Properties",
                                     "PropertiesChanged", "sa{sv}as", "org.freedesktop.UPower.Device", 0, 0),
                  0);
    }
    [[nodiscard]] int reads() const { return reads_; }

  private:
    static constexpr const char* path = "/org/freedesktop/UPower/devices/DisplayDevice";
    std::uint32_t level_ = 1;
    int reads_ = 0;
    FakeService service_;
};

} // namespace wakeloft

#pragma once

#include "Bus.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace wakeloft {

/// A polkit with one opinion, on the test's own loop.
class FakePolkit {
  public:
    enum class Opinion { yes, no, never };

    FakePolkit(const PrivateBus& bus, sd_event* event) : bus_(bus.connect(event)) {
        static const sd_bus_vtable vtable[] = {
            SD_BUS_VTABLE_START(0),
            SD_BUS_METHOD("CheckAuthorization", "(sa{sv})sa{ss}us", "(bba{ss})", check,
                          SD_BUS_VTABLE_UNPRIVILEGED),
            SD_BUS_VTABLE_END,
        };
        EXPECT_GE(sd_bus_add_object_vtable(bus_.get(), nullptr, "/org/freedesktop/PolicyKit1/Authority",
                                           "org.freedesktop.PolicyKit1.Authority", vtable, this),
                  0);
        EXPECT_GE(sd_bus_request_name(bus_.get(), "org.freedesktop.PolicyKit1", 0), 0);
    }

    Opinion opinion = Opinion::yes;
    std::vector<std::string> asked; ///< "subject kind, subject's name, action, flags"

  private:
    static int check(sd_bus_message* call, void* userdata, sd_bus_error*) {
        auto& self = *static_cast<FakePolkit*>(userdata);
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
        self.asked.push_back(std::string(kind) + " " + name + " " + action + " " + std::to_string(flags));
        if (self.opinion == Opinion::never)
            return 1;
        return sd_bus_reply_method_return(call, "(bba{ss})", self.opinion == Opinion::yes ? 1 : 0, 0, 0);
    }
    BusPointer bus_;
};

/// A UPower whose battery's warning level is moved by hand, on the test's own loop.
class FakeUPower {
  public:
    FakeUPower(const PrivateBus& bus, sd_event* event) : bus_(bus.connect(event)) {
        static const sd_bus_vtable vtable[] = {
            SD_BUS_VTABLE_START(0),
            SD_BUS_PROPERTY("WarningLevel", "u", read, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
            SD_BUS_VTABLE_END,
        };
        EXPECT_GE(sd_bus_add_object_vtable(bus_.get(), nullptr, path, interface, vtable, this), 0);
        EXPECT_GE(sd_bus_request_name(bus_.get(), "org.freedesktop.UPower", 0), 0);
    }
    void setLevel(std::uint32_t level) {
        level_ = level;
        EXPECT_GE(sd_bus_emit_properties_changed(bus_.get(), path, interface, "WarningLevel", nullptr), 0);
    }
    [[nodiscard]] int reads() const { return reads_; }

  private:
    static constexpr const char* path = "/org/freedesktop/UPower/devices/DisplayDevice";
    static constexpr const char* interface = "org.freedesktop.UPower.Device";
    static int read(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* userdata,
                    sd_bus_error*) {
        auto& self = *static_cast<FakeUPower*>(userdata);
        ++self.reads_;
        return sd_bus_message_append(reply, "u", self.level_);
    }
    std::uint32_t level_ = 1;
    int reads_ = 0;
    BusPointer bus_;
};

} // namespace wakeloft

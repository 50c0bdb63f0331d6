#include "BusService.h"

#include <array>
#include <iostream>
#include <string>

namespace wakeloft::rig {
namespace {

constexpr auto program = "wakeloft-rig-polkit-authority";
constexpr const char* authorityPath = "/org/freedesktop/PolicyKit1/Authority";
constexpr const char* authorityInterface = "org.freedesktop.PolicyKit1.Authority";
constexpr const char* rigInterface = "com.wakeloft.Rig.Polkit";

/// A polkit that gives everybody the same answer: yes, until com.wakeloft.Rig.Polkit.Set(s) says no, or
/// never (it does not answer). What it is asked and says goes to stdout.
class PolkitAuthority {
  public:
    explicit PolkitAuthority(const BusService& service) : service_(service) {}

    Outcome publish() {
        static const std::array authorityTable = {
            sd_bus_vtable SD_BUS_VTABLE_START(0),
            sd_bus_vtable SD_BUS_METHOD("CheckAuthorization", "(sa{sv})sa{ss}us", "(bba{ss})", check,
                                        SD_BUS_VTABLE_UNPRIVILEGED),
            sd_bus_vtable SD_BUS_SIGNAL("Changed", "", 0),
            sd_bus_vtable SD_BUS_VTABLE_END,
        };
        static const std::array rigTable = {
            sd_bus_vtable SD_BUS_VTABLE_START(0),
            sd_bus_vtable SD_BUS_METHOD("Set", "s", "", set, SD_BUS_VTABLE_UNPRIVILEGED),
            sd_bus_vtable SD_BUS_VTABLE_END,
        };
        int result = sd_bus_add_object_vtable(service_.bus(), nullptr, authorityPath, authorityInterface,
                                              authorityTable.data(), this);
        if (result >= 0) {
            result = sd_bus_add_object_vtable(service_.bus(), nullptr, authorityPath, rigInterface,
                                              rigTable.data(), this);
        }
        return outcome("Cannot publish the authority", result);
    }

  private:
    static int check(sd_bus_message* message, void* userData, sd_bus_error*) {
        const auto& self = *static_cast<PolkitAuthority*>(userData);
        const char* action = nullptr;
        int result = sd_bus_message_skip(message, "(sa{sv})");
        if (result >= 0) {
            result = sd_bus_message_read(message, "s", &action);
        }
        if (result < 0) {
            return result;
        }
        std::cout << sd_bus_message_get_sender(message) << ' ' << action << ' ' << self.answer_ << '\n'
                  << std::flush;
        if (self.answer_ == "never") {
            return 1;
        }
        return sd_bus_reply_method_return(message, "(bba{ss})", self.answer_ == "yes" ? 1 : 0, 0, 0);
    }

    static int set(sd_bus_message* message, void* userData, sd_bus_error* error) {
        auto& self = *static_cast<PolkitAuthority*>(userData);
        const char* text = nullptr;
        int result = sd_bus_message_read(message, "s", &text);
        if (result < 0) {
            return result;
        }
        const std::string answer = text;
        if (answer != "yes" && answer != "no" && answer != "never") {
            return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "Not yes, no or never: %s", text);
        }
        self.answer_ = answer;
        result = sd_bus_emit_signal(self.service_.bus(), authorityPath, authorityInterface, "Changed", "");
        return result < 0 ? result : sd_bus_reply_method_return(message, nullptr);
    }

    const BusService& service_;
    std::string answer_ = "yes";
};

} // namespace
} // namespace wakeloft::rig

int main() {
    using namespace wakeloft::rig;
    const auto service = BusService::connect();
    if (!service) {
        return finish(program, std::unexpected(service.error()));
    }
    PolkitAuthority authority(*service);
    if (const auto published = authority.publish(); !published) {
        return finish(program, published);
    }
    return finish(program, service->serveAs("org.freedesktop.PolicyKit1"));
}

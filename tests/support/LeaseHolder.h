#pragma once

#include "Bus.h"
#include "LidLeaseBus.h"
#include "lease/LidHelperService.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace wakeloft {

/// The seconds since 1970.
inline double wallClock() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

/// A client of the lid helper, with a connection of its own to the system bus. Waits for each answer.
class LeaseHolder {
  public:
    LeaseHolder() {
        sd_bus* bus = nullptr;
        EXPECT_GE(sd_bus_open_system(&bus), 0);
        bus_.reset(bus);
    }

    /// For so many seconds from now. The reason of a refusal (empty: granted), or the name of the error.
    std::string renew(double seconds = 25, bool suspendIfClosed = false) const {
        return answer(renewal(wallClock() + seconds, suspendIfClosed));
    }
    std::string revoke() const { return answer(call("RevokeLease")); }

    /// Calls to the helper, or to who else has `name`.
    BusMessage call(const char* method, const char* name = LidHelperService::label) const {
        sd_bus_message* message = nullptr;
        EXPECT_GE(sd_bus_message_new_method_call(bus_.get(), &message, name, LidLeaseBus::path,
                                                 LidLeaseBus::interface, method),
                  0);
        return BusMessage(message);
    }
    BusMessage renewal(double deadline, bool suspendIfClosed = false,
                       const char* name = LidHelperService::label) const {
        auto message = call("RenewLease", name);
        sd_bus_message_append(message.get(), "da{sv}", deadline, 1, LidLeaseBus::suspendIfClosed, "b",
                              suspendIfClosed ? 1 : 0);
        return message;
    }
    std::string answer(const BusMessage& call) const {
        BusError error;
        sd_bus_message* reply = nullptr;
        const int result = sd_bus_call(bus_.get(), call.get(), 0, error.get(), &reply);
        const BusMessage owned(reply);
        const char* reason = "";
        if (result >= 0 && *sd_bus_message_get_signature(reply, 1) == 's')
            sd_bus_message_read(reply, "s", &reason);
        return result < 0 ? error.get()->name : reason;
    }
    /// Sends it without waiting. The bus holds back who has too many answers to come: none is asked for.
    bool send(const BusMessage& call) const {
        return sd_bus_message_set_expect_reply(call.get(), 0) >= 0 &&
               sd_bus_send(bus_.get(), call.get(), nullptr) >= 0;
    }
    [[nodiscard]] sd_bus* bus() const { return bus_.get(); }

  private:
    BusPointer bus_;
};

} // namespace wakeloft

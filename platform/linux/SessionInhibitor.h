#pragma once

#include "Bus.h"
#include "Hold.h"
#include "support/Lifetime.h"

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace wakeloft {

/// The desktop session's own inhibitor against idle suspend: the first of the known services that somebody
/// owns. Taken again when its service comes back, since a restarted service has forgotten it. Main thread.
class SessionInhibitor {
  public:
    /// `sessionBus` may be null (no session bus) and must outlive the inhibitor; `changed` is told when the
    /// hold changes by itself.
    SessionInhibitor(sd_bus* sessionBus, std::string who, std::string why, std::function<void()> changed);
    SessionInhibitor(const SessionInhibitor&) = delete;
    SessionInhibitor& operator=(const SessionInhibitor&) = delete;
    ~SessionInhibitor();

    /// Waits for the answer of one call, or of two when the services are not known yet.
    const Hold& take();
    void release();
    [[nodiscard]] const Hold& hold() const { return hold_; }

    /// KDE's power management also takes the login manager's idle inhibitors as "keep the screen on".
    [[nodiscard]] bool isKdePowerManagementRunning();

  private:
    static constexpr std::size_t nameCount = 5;
    struct Cookie {
        std::size_t service = 0;
        std::string owner; ///< the unique name that granted it
        std::uint32_t number = 0;
        std::string handle; ///< the portal's
    };

    bool learnOwners();
    void ownerChanged(std::size_t name, std::string newOwner);
    [[nodiscard]] std::optional<std::size_t> firstService() const;
    [[nodiscard]] BusMessage inhibitCall(std::size_t service) const;
    std::optional<Cookie> cookieIn(std::size_t service, sd_bus_message* reply) const;
    void takeLater();
    void answered(std::size_t service, sd_bus_message* reply);
    void expectLateAnswer(std::size_t service, sd_bus_message* call);
    void heardLate(sd_bus_message* message);
    void letGo(const Cookie& cookie) const;
    void accept(std::size_t service, sd_bus_message* reply);

    sd_bus* bus_;
    std::string who_;
    std::string why_;
    std::function<void()> changed_;
    std::array<std::string, nameCount> owners_; ///< empty: nobody
    bool areOwnersKnown_ = false;
    std::array<BusSlot, nameCount> watches_;
    BusSlot pending_;
    BusMessage pendingCall_;
    BusSlot lateAnswers_;
    std::map<std::uint64_t, std::size_t> late_; ///< calls given up on, by serial, and their service
    bool isWanted_ = false;
    Hold hold_;
    std::optional<Cookie> cookie_;
};

} // namespace wakeloft

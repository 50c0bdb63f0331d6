#pragma once

#include "BusConnection.h"
#include "Hold.h"

#include <functional>
#include <string>

namespace wakeloft {

/// The login manager's `idle` block inhibitor: a descriptor that ends with its holder, so that nothing
/// outlives a crash. Looked at again after the login manager was restarted and after each wake. Main thread.
class LoginManagerInhibitor {
  public:
    /// `systemBus` must outlive the inhibitor; `changed` is told when the hold changes by itself.
    LoginManagerInhibitor(BusConnection& systemBus, std::string who, std::string why,
                          std::function<void()> changed);
    LoginManagerInhibitor(const LoginManagerInhibitor&) = delete;
    LoginManagerInhibitor& operator=(const LoginManagerInhibitor&) = delete;
    ~LoginManagerInhibitor();

    /// Waits for the answer of one call.
    const Hold& take();
    /// Takes it, where it is not wanted yet, without waiting; `changed` is told of the answer.
    void takeSoon();
    void release();
    [[nodiscard]] const Hold& hold() const { return hold_; }

    /// Would the login manager itself do nothing about an idle machine (`IdleAction=ignore`)? Waits for one
    /// call.
    [[nodiscard]] bool isIdleActionIgnored();

  private:
    void watch();
    void verify();
    void listed(sd_bus_message* reply);
    [[nodiscard]] bool lists(sd_bus_message* reply) const;
    void takeLater();
    void answered(sd_bus_message* reply);
    void accept(sd_bus_message* reply);
    void refuse(PlatformError error);
    void closeDescriptor();
    [[nodiscard]] BusMessage call(sd_bus* bus, const char* method) const;
    [[nodiscard]] BusMessage inhibitCall(sd_bus* bus) const;

    BusConnection& systemBus_;
    std::string who_;
    std::string why_;
    std::function<void()> changed_;
    bool isWatching_ = false;
    BusSlot ownerWatch_;
    BusSlot wakeWatch_;
    BusSlot pending_; ///< of the one call that is on its way
    bool isWanted_ = false;
    Hold hold_;
    int descriptor_ = -1;
    Subscription reopened_;
    Subscription lost_;
    Lifetime lifetime_;
};

} // namespace wakeloft

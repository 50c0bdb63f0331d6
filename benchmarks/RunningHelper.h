#pragma once

#include "Benchmarks.h"
#include "Bus.h"
#include "Program.h"

namespace wakeloft {

/// The name that BareService.cpp takes.
inline constexpr const char* bareServiceName = "org.freedesktop.PolicyKit1";

/// Tells how long a program on the system bus takes from its start to the ownership of its name.
class NameWatch {
  public:
    explicit NameWatch(const char* name);

    /// Returns when the name has an owner: when that was.
    Clock::time_point waitForOwner() { return wait(true); }
    void waitForNoOwner() { wait(false); }

  private:
    Clock::time_point wait(bool isOwned);

    const char* name_;
    BusPointer bus_;
    bool isOwned_ = false;
    Clock::time_point changedAt_;
    BusSlot watch_;
};

/// The lid helper on the system bus, and the bare service as a polkit that lets everybody in.
class RunningHelper {
  public:
    /// Returns when both answer calls.
    explicit RunningHelper(const MeasuredPrograms& programs);

    [[nodiscard]] const Program& helper() const { return helper_; }
    [[nodiscard]] const Program& bareService() const { return polkit_; }

  private:
    NameWatch helperName_;
    NameWatch polkitName_;
    Program polkit_;
    Program helper_;
};

/// A client of the helper, on a connection of its own.
class LeaseClient {
  public:
    explicit LeaseClient(uid_t user);

    /// Ends all measuring unless the lease is granted.
    void renew() const;
    void revoke() const;
    /// Calls that ask nothing of the program.
    void pingHelper() const;
    void pingBareService() const;

  private:
    BusPointer bus_;
};

} // namespace wakeloft

#pragma once

#include "support/ChildProcess.h"

#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// Who asks the helper to keep the machine awake: a bare client that renews its lease as the app does. What
/// drives the real app instead has to be written here alone.
class Deepwake {
  public:
    static constexpr double usualSeconds = 30;
    static constexpr double shortSeconds = 3; ///< where a lease is to run out

    /// Off; for leases of that many seconds.
    explicit Deepwake(double leaseSeconds = usualSeconds) : leaseSeconds_(leaseSeconds) {}
    Deepwake(const Deepwake&) = delete;
    Deepwake& operator=(const Deepwake&) = delete;
    ~Deepwake() {
        if (client_)
            kill();
    }

    void turnOn() {
        client_.emplace(std::vector<std::string>{WAKELOFT_LEASE_CLIENT, std::to_string(leaseSeconds_)});
    }
    void turnOff() { client_->signal(SIGTERM); }
    void kill() { client_->signal(SIGKILL); }
    void logOut() { client_->signal(SIGHUP); }
    /// It stays, and renews nothing.
    void hang() { client_->signal(SIGSTOP); }
    /// It is told that it may not, at once or when it renews a short lease.
    bool isRefused(int timeoutMs = 5000) { return client_->wait(timeoutMs) == EXIT_FAILURE; }

  private:
    double leaseSeconds_;
    std::optional<ChildProcess> client_;
};

} // namespace wakeloft

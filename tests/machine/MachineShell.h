#pragma once

#include "support/ChildProcess.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// Why there is no private machine around this process (see rig/private-machine); nothing where there is.
std::optional<std::string> machineAbsence();

/// Stops the process where there is none: no fault of a test may reach the machine that somebody works on.
void requireMachine();

/// A shell command's output, of both kinds, without the line break at its end. A failure of the command fails
/// the running test.
std::string outputOf(const std::string& command);

/// A shell of a user that does what it is told.
class UserShell {
  public:
    /// As a service that has nothing to do with a login.
    explicit UserShell(const std::string& user) : UserShell(user, {}) {}
    /// In a login session, on seat0 or from afar.
    static UserShell loggedInOnSeat(const std::string& user);
    static UserShell loggedInFromAfar(const std::string& user);
    UserShell(const UserShell&) = delete;
    UserShell& operator=(const UserShell&) = delete;
    /// Logs out.
    ~UserShell();

    std::string run(const std::string& command);
    /// What the helper answers to one renewal from here, as gdbus writes it.
    std::string askForLease();
    /// Whether the session is in the foreground: yes or no.
    std::string isActive();

  private:
    UserShell(const std::string& user, const std::vector<std::string>& settings);

    int connection_ = -1;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace wakeloft

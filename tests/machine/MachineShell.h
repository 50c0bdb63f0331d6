#pragma once

#include <optional>
#include <string>

namespace wakeloft {

/// Why there is no private machine around this process (see rig/private-machine); nothing where there is.
std::optional<std::string> machineAbsence();

/// A shell command's output, of both kinds, without the line break at its end. A failure of the command fails
/// the running test; where there is no private machine, it stops the process: no fault of a test may reach
/// the machine that somebody works on.
std::string outputOf(const std::string& command);

/// What runs the commands of a user, one at a time.
class UserShell {
  public:
    /// In a login session at the seat, in one from afar, or as a service that has nothing to do with a login.
    enum class Login { onSeat, fromAfar, none };

    UserShell(const std::string& user, Login login);
    UserShell(const UserShell&) = delete;
    UserShell& operator=(const UserShell&) = delete;
    /// Logs out.
    ~UserShell();

    /// A failure of the command is none here.
    std::string run(const std::string& command);

  private:
    std::string unit_;
    std::string pipes_; ///< the common beginning of their paths
};

} // namespace wakeloft

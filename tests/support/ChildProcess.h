#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace wakeloft {

/// A program that runs beside the test and ends with this object. A failure to start fails the running test.
class ChildProcess {
  public:
    /// `environment` holds NAME=VALUE entries on top of the test's own.
    explicit ChildProcess(const std::vector<std::string>& command,
                          const std::vector<std::string>& environment = {});
    /// Runs `work` in a process of `user` (only root may choose another one) and of the group of that number.
    /// Its result is the exit code.
    ChildProcess(uid_t user, const std::function<int()>& work);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return pid_; }
    void signal(int number) const;
    /// Waits for its end, at most `timeoutMs`: its exit code, 128 + the signal that ended it, or -1 if it
    /// still runs.
    int wait(int timeoutMs);

  private:
    pid_t pid_ = -1;
    int exitCode_ = -1;
};

} // namespace wakeloft

#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace wakeloft {

using Clock = std::chrono::steady_clock;

inline double microsecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

/// A program that runs as long as this object.
class Program {
  public:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    /// Starts it with these changes to our environment.
    explicit Program(const std::vector<std::string>& command, const Environment& changes = {});
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    [[nodiscard]] pid_t id() const { return id_; }
    /// Just before it was started.
    [[nodiscard]] Clock::time_point start() const { return start_; }
    /// Ends all measuring when the program is no longer there.
    void requireRunning() const;

  private:
    std::string name_;
    Clock::time_point start_;
    pid_t id_ = -1;
};

/// A message bus of our own, so that two instances of a program do not meet.
class SessionBus {
  public:
    SessionBus();

    [[nodiscard]] const std::string& address() const { return address_; }
    /// For a program that is to live on this bus, with settings of its own.
    [[nodiscard]] Program::Environment environment() const;

  private:
    std::filesystem::path folder_;
    std::string address_;
    Program daemon_;
};

/// What the programs write to their standard output and error goes to this file.
std::filesystem::path programsLog();

/// A new folder that ends with the private desktop.
std::filesystem::path makeFolder();

} // namespace wakeloft

#include "PmsetSleepSetting.h"

#include "lease/LidSleepLease.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <system_error>
#include <thread>

namespace wakeloft {

namespace {

using Clock = std::chrono::steady_clock;

PlatformError failure(const std::string& sentence) {
    return {"pmset", 0, sentence};
}

PlatformError failure(const std::string& sentence, int code) {
    return {"errno", code, sentence + ": " + std::generic_category().message(code)};
}

/// A program without input, output and environment. It does not outlive this object.
class Child {
  public:
    static std::expected<Child, PlatformError> start(const std::string& program, bool disabled) {
        std::array<std::string, 4> words = {"pmset", "-a", "disablesleep", disabled ? "1" : "0"};
        std::array<char*, 5> arguments = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                                          nullptr};
        std::array<char*, 1> environment = {nullptr};
        posix_spawn_file_actions_t files{};
        int code = posix_spawn_file_actions_init(&files);
        if (code != 0)
            return std::unexpected(failure("Starting pmset could not be prepared", code));
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            if (code == 0)
                code = posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
        pid_t process = 0;
        if (code == 0)
            code =
                posix_spawn(&process, program.c_str(), &files, nullptr, arguments.data(), environment.data());
        posix_spawn_file_actions_destroy(&files);
        if (code != 0)
            return std::unexpected(failure("pmset could not be started", code));
        return Child(process);
    }

    Child(Child&& other) noexcept : process_(std::exchange(other.process_, 0)) {}
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    Child& operator=(Child&&) = delete;
    ~Child() {
        if (process_ != 0) {
            kill(process_, SIGKILL);
            static_cast<void>(waited(0));
        }
    }

    /// Its exit code, once it has ended; anything else than an exit is -1.
    std::optional<int> ended() {
        const auto status = waited(WNOHANG);
        if (!status)
            return std::nullopt;
        process_ = 0;
        return WIFEXITED(*status) ? WEXITSTATUS(*status) : -1;
    }

  private:
    explicit Child(pid_t process) : process_(process) {}

    [[nodiscard]] std::optional<int> waited(int options) const {
        int status = -1;
        pid_t result = 0;
        do
            result = waitpid(process_, &status, options);
        while (result < 0 && errno == EINTR);
        if (result == 0)
            return std::nullopt;
        return result < 0 ? -1 : status; // -1: it was not ours to wait for
    }

    pid_t process_;
};

} // namespace

std::expected<void, PlatformError> PmsetSleepSetting::writeDisabled(bool disabled) {
    const auto end = Clock::now() + std::chrono::duration<double>(LidSleepLease::writeTimeout);
    constexpr std::chrono::milliseconds pause(10);
    auto child = Child::start(program_, disabled);
    if (!child)
        return std::unexpected(child.error());
    std::optional<int> code;
    while (true) {
        if (!code)
            code = child->ended();
        if (code && *code != 0)
            return std::unexpected(failure("pmset ended with code " + std::to_string(*code) + "."));
        if (code) { // not sooner: the kernel's value may have been the wanted one before
            const auto isDisabled = read_();
            if (!isDisabled)
                return std::unexpected(isDisabled.error());
            if (*isDisabled == disabled)
                return {};
        }
        if (Clock::now() >= end)
            return std::unexpected(failure(code ? "The system has not taken the setting over in time."
                                                : "pmset has not ended in time."));
        std::this_thread::sleep_for(pause); // nothing tells of the registry's change
    }
}

} // namespace wakeloft

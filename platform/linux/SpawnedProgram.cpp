#include "SpawnedProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace wakeloft {

namespace {

std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const auto& each : texts)
        pointers.push_back(const_cast<char*>(each.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// Nothing of ours goes along: no descriptor but the outputs, no blocked or ignored signal, no terminal.
class CleanStart {
  public:
    CleanStart() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
    }
    CleanStart(const CleanStart&) = delete;
    CleanStart& operator=(const CleanStart&) = delete;
    ~CleanStart() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }

    /// 0, or the error.
    int run(pid_t& pid, char* const* command, char* const* environment) {
        constexpr int firstOfOurs = 3;
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        posix_spawnattr_setflags(&attributes_,
                                 POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
        int error = posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        if (error == 0)
            error = posix_spawn_file_actions_addclosefrom_np(&actions_, firstOfOurs);
        return error != 0 ? error
                          : posix_spawnp(&pid, command[0], &actions_, &attributes_, command, environment);
    }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

} // namespace

std::vector<std::string> processEnvironment() {
    std::vector<std::string> environment;
    for (char** each = environ; each != nullptr && *each != nullptr; ++each)
        environment.emplace_back(*each);
    return environment;
}

SpawnedProgram::SpawnedProgram(pid_t pid, std::function<void(int)> ended)
    : pid_(pid), ended_(std::move(ended)) {}

SpawnedProgram::~SpawnedProgram() {
    watch_.reset();
    if (descriptor_ >= 0)
        close(descriptor_);
}

std::expected<std::unique_ptr<SpawnedProgram>, PlatformError>
SpawnedProgram::start(sd_event* event, const std::vector<std::string>& command,
                      const std::vector<std::string>& environment, std::function<void(int)> ended) {
    pid_t pid = -1;
    const int error = CleanStart().run(pid, pointers(command).data(), pointers(environment).data());
    if (error != 0)
        return std::unexpected(busFailure("Cannot start " + command.front(), -error));
    std::unique_ptr<SpawnedProgram> program(new SpawnedProgram(pid, std::move(ended)));
    if (const int result = program->watch(event); result < 0)
        return std::unexpected(busFailure("Cannot tell how " + command.front() + " ends", result));
    return program;
}

int SpawnedProgram::watch(sd_event* event) {
    descriptor_ = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0)); // closed on exec
    if (descriptor_ < 0)
        return -errno;
    const auto handler = [](sd_event_source*, int, std::uint32_t, void* userdata) {
        static_cast<SpawnedProgram*>(userdata)->hasEnded();
        return 0;
    };
    sd_event_source* source = nullptr;
    const int result = sd_event_add_io(event, &source, descriptor_, EPOLLIN, handler, this);
    watch_.reset(source);
    return result;
}

void SpawnedProgram::hasEnded() {
    constexpr int signalled = 128;
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) == 0)
        return;
    watch_.reset();
    const auto ended = std::move(ended_); // it may end this object
    ended(WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status));
}

} // namespace wakeloft

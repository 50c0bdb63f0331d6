#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <grp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace wakeloft {

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::vector<std::string>& environment) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& each : command)
        arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    pid_ = fork();
    EXPECT_GE(pid_, 0);
    if (pid_ != 0)
        return;
    setsid();                         // as a service has, and with it its own share of the machine
    prctl(PR_SET_PDEATHSIG, SIGKILL); // whatever happens to the test
    for (const auto& each : environment)
        putenv(const_cast<char*>(each.c_str()));
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

ChildProcess::ChildProcess(uid_t user, const std::function<int()>& work) : pid_(fork()) {
    EXPECT_GE(pid_, 0);
    if (pid_ != 0)
        return;
    if (user != geteuid() &&
        (setgroups(0, nullptr) != 0 || setresgid(user, user, user) != 0 || setresuid(user, user, user) != 0))
        _exit(126);
    setsid();
    prctl(PR_SET_PDEATHSIG, SIGKILL); // which becoming another user would undo
    _exit(work());
}

ChildProcess::~ChildProcess() {
    constexpr int patienceMs = 3000;
    if (exitCode_ >= 0 || pid_ <= 0)
        return;
    signal(SIGTERM);
    if (wait(patienceMs) >= 0)
        return;
    signal(SIGKILL);
    wait(patienceMs);
}

void ChildProcess::signal(int number) const {
    if (exitCode_ < 0)
        kill(pid_, number);
}

int ChildProcess::wait(int timeoutMs) {
    if (exitCode_ >= 0)
        return exitCode_;
    const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
    pollfd ended = {descriptor, POLLIN, 0};
    while (poll(&ended, 1, timeoutMs) < 0 && errno == EINTR) {
    }
    close(descriptor);
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) == pid_)
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return exitCode_;
}

} // namespace wakeloft

#include "machine/MachineShell.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace wakeloft {

namespace {

std::string withoutLineBreak(std::string text) {
    if (text.ends_with('\n'))
        text.pop_back();
    return text;
}

} // namespace

std::optional<std::string> machineAbsence() {
    if (const char* reason = std::getenv("WAKELOFT_RIG_NO_MACHINE"))
        return reason;
    if (!std::filesystem::exists("/run/wakeloft-rig/lid"))
        return "these tests are for rig/private-machine";
    return std::nullopt;
}

void requireMachine() {
    if (!machineAbsence())
        return;
    std::fprintf(stderr, "This would act on a machine that is not the rig's.\n");
    std::abort();
}

std::string outputOf(const std::string& command) {
    requireMachine();
    constexpr const char* file = "/run/wakeloft-rig/output";
    constexpr int timeoutMs = 30'000;
    ChildProcess shell({"bash", "-c", "{ " + command + "; } >" + file + " 2>&1"});
    const int code = shell.wait(timeoutMs);
    std::ifstream stream(file);
    const std::string output(std::istreambuf_iterator<char>(stream), {});
    EXPECT_EQ(code, 0) << command << ": " << output;
    return withoutLineBreak(output);
}

UserShell UserShell::loggedInOnSeat(const std::string& user) {
    return {user, {"-pPAMName=wakeloft-rig", "-EXDG_SEAT=seat0", "-EXDG_SESSION_TYPE=x11"}};
}

UserShell UserShell::loggedInFromAfar(const std::string& user) {
    return {user, {"-pPAMName=wakeloft-rig", "-EXDG_SESSION_TYPE=tty"}};
}

UserShell::UserShell(const std::string& user, const std::vector<std::string>& settings) {
    requireMachine();
    std::array<int, 2> ends{};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    connection_ = ends[0];
    // The shell's end goes on into the process, and stays open in no other.
    const int shellEnd = dup(ends[1]);
    close(ends[1]);
    std::vector<std::string> command{
        "bash", "-c", "exec \"$@\" <&" + std::to_string(shellEnd) + " >&" + std::to_string(shellEnd), "bash"};
    for (const char* each : {"systemd-run", "--quiet", "--pipe", "--wait", "--collect"})
        command.emplace_back(each);
    command.push_back("-pUser=" + user);
    command.insert(command.end(), settings.begin(), settings.end());
    command.emplace_back("sh");
    process_ = std::make_unique<ChildProcess>(command);
    close(shellEnd);
    EXPECT_EQ(run("id -un"), user);
}

UserShell::~UserShell() {
    constexpr int timeoutMs = 5000;
    close(connection_);
    EXPECT_EQ(process_->wait(timeoutMs), 0);
}

std::string UserShell::run(const std::string& command) {
    constexpr char end = '\4';
    constexpr int timeoutMs = 10'000;
    const std::string line = "{ " + command + "; } 2>&1; printf '\\004'\n";
    EXPECT_EQ(write(connection_, line.data(), line.size()), static_cast<ssize_t>(line.size()));
    std::string output;
    pollfd readable = {connection_, POLLIN, 0};
    while (!output.ends_with(end) && poll(&readable, 1, timeoutMs) > 0) {
        std::array<char, 4096> buffer{};
        const auto size = read(connection_, buffer.data(), buffer.size());
        if (size <= 0)
            break;
        output.append(buffer.data(), static_cast<std::size_t>(size));
    }
    EXPECT_TRUE(output.ends_with(end)) << command << ": " << output;
    if (output.ends_with(end))
        output.pop_back();
    return withoutLineBreak(std::move(output));
}

std::string UserShell::askForLease() {
    return run(
        "gdbus call --system --dest com.wakeloft.app.lidhelper --object-path /com/wakeloft/app/lidhelper "
        "--method com.wakeloft.app.LidLease.RenewLease $(($(date +%s) + 20)).0 '{}'");
}

std::string UserShell::isActive() {
    return run("loginctl show-session \"$XDG_SESSION_ID\" --property=Active --value");
}

} // namespace wakeloft

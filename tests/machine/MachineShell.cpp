#include "machine/MachineShell.h"

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace wakeloft {

std::optional<std::string> machineAbsence() {
    if (const char* reason = std::getenv("WAKELOFT_RIG_NO_MACHINE"))
        return reason;
    if (!std::filesystem::exists("/run/wakeloft-rig/lid"))
        return "these tests are for rig/private-machine";
    return std::nullopt;
}

std::string outputOf(const std::string& command) {
    if (machineAbsence()) {
        std::fprintf(stderr, "This would act on a machine that is not the rig's.\n");
        std::abort();
    }
    constexpr const char* file = "/run/wakeloft-rig/output";
    constexpr int timeoutMs = 30'000;
    ChildProcess shell({"bash", "-c", "{ " + command + "; } >" + file + " 2>&1"});
    const int code = shell.wait(timeoutMs);
    std::ifstream stream(file);
    std::string output(std::istreambuf_iterator<char>(stream), {});
    EXPECT_EQ(code, 0) << command << ": " << output;
    if (output.ends_with('\n'))
        output.pop_back();
    return output;
}

UserShell::UserShell(const std::string& user, Login login)
    : unit_("shell-of-" + user), pipes_("/run/wakeloft-rig/" + unit_) {
    std::string settings = " -pUser=" + user;
    if (login != Login::none)
        settings += " -pPAMName=wakeloft-rig -EXDG_SESSION_TYPE=x11";
    if (login == Login::onSeat)
        settings += " -EXDG_SEAT=seat0";
    outputOf("mkfifo -m 666 " + pipes_ + ".in " + pipes_ + ".out && systemd-run --quiet --collect --unit=" +
             unit_ + settings + " sh -c 'while :; do sh <$0.in >$0.out 2>&1; done' " + pipes_);
    EXPECT_EQ(run("id -un"), user);
}

UserShell::~UserShell() {
    outputOf("systemctl stop " + unit_ + " && rm " + pipes_ + ".in " + pipes_ + ".out");
}

std::string UserShell::run(const std::string& command) {
    return outputOf("cat >" + pipes_ + ".in <<'END'\n" + command + "\nEND\ncat " + pipes_ + ".out");
}

} // namespace wakeloft

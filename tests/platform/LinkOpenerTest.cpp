#include "LinkOpener.h"
#include "PrivateSystem.h"
#include "support/Files.h"

#include <csignal>

namespace wakeloft {
namespace {

TEST_F(PrivateSystem, TheUsersProgramForLinksStartsCleanAndIsBuried) {
    const auto told = bus.directory() / "told";
    const auto program = bus.directory() / "xdg-open";
    put(program, "#!/bin/sh\n"
                 "echo \"$1 $CUP $DBUS_SYSTEM_BUS_ADDRESS $(cut -d ' ' -f 6 /proc/$$/stat) $$\" > \"$TOLD\"\n"
                 "kill -TERM $$\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    const std::string path = std::getenv("PATH");
    setenv("PATH", bus.directory().c_str(), 1);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    LinkOpener opener(event, nullptr, {"CUP=full", "PATH=" + path, "TOLD=" + told.string()}, Sandbox::none);
    std::string failure;
    opener.open("https://example.org/?a=1&b=$HOME;c",
                [&](const PlatformError& error) { failure = error.description; });
    EXPECT_TRUE(waitFor([&] { return !failure.empty(); })) << textOf(told);
    EXPECT_EQ(failure, "Cannot open https://example.org/?a=1&b=$HOME;c: xdg-open failed with code 143.");
    sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
    setenv("PATH", path.c_str(), 1);
    const auto text = textOf(told);
    const int process = std::stoi(text.substr(text.rfind(' ')));
    EXPECT_EQ(text, "https://example.org/?a=1&b=$HOME;c full  " + std::to_string(process) + " " +
                        std::to_string(process) + "\n"); // in a session of its own
    EXPECT_EQ(kill(process, 0), -1);
}

} // namespace
} // namespace wakeloft

#include "LinkOpener.h"
#include "PrivateSystem.h"
#include "support/FakeService.h"
#include "support/Files.h"

#include <csignal>

namespace wakeloft {
namespace {

/// Without an xdg-open at first.
struct Links : PrivateSystem {
    const std::filesystem::path told = bus.directory() / "told";
    const std::string path = std::getenv("PATH");
    std::vector<std::string> failures;
    LinkOpener::Failed failed = [this](const PlatformError& error) { failures.push_back(error.description); };

    Links() { setenv("PATH", bus.directory().c_str(), 1); }
    ~Links() override { setenv("PATH", path.c_str(), 1); }

    void install(const std::string& script) const {
        const auto program = bus.directory() / "xdg-open";
        put(program, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }
    std::string failure() {
        EXPECT_TRUE(waitFor([this] { return !failures.empty(); })) << textOf(told);
        const auto all = std::exchange(failures, {});
        return all.empty() ? "" : all.front();
    }
};

TEST_F(Links, TheUsersProgramStartsCleanAndIsBuried) {
    install("echo \"$1 $CUP $DBUS_SYSTEM_BUS_ADDRESS $(cut -d ' ' -f 6 /proc/$$/stat) $$\" > \"$TOLD\"\n"
            "kill -TERM $$");
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    LinkOpener opener(event, nullptr, {"CUP=full", "PATH=" + path, "TOLD=" + told.string()}, Sandbox::none);
    opener.open("https://example.org/?a=1&b=$HOME;c", failed);
    EXPECT_EQ(failure(), "Cannot open https://example.org/?a=1&b=$HOME;c: xdg-open failed with code 143.");
    sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
    const auto text = textOf(told);
    const int process = std::stoi(text.substr(text.rfind(' ')));
    EXPECT_EQ(text, "https://example.org/?a=1&b=$HOME;c full  " + std::to_string(process) + " " +
                        std::to_string(process) + "\n"); // in a session of its own
    EXPECT_EQ(kill(process, 0), -1);
}

TEST_F(Links, ThePortalStandsInAndServesASandbox) {
    std::optional<std::uint32_t> outcome = 0;
    std::string opened;
    const auto answer = [&](sd_bus_message* call, sd_bus_error* error) {
        const char* uri = nullptr;
        const char* token = nullptr;
        sd_bus_message_read(call, "ssa{sv}", nullptr, &uri, 1, nullptr, "s", &token);
        if (!outcome)
            return sd_bus_error_set(error, "org.example.Busy", "Not now.");
        opened = uri;
        std::string sender = sd_bus_message_get_sender(call) + 1;
        sender[sender.find('.')] = '_';
        const auto request = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;
        sd_bus_reply_method_return(call, "o", request.c_str());
        return sd_bus_emit_signal(sd_bus_message_get_bus(call), request.c_str(),
                                  "org.freedesktop.portal.Request", "Response", "ua{sv}", *outcome, 0);
    };
    LinkOpener opener(event, observer.get(), {}, Sandbox::none);
    opener.open("x:0", failed);
    EXPECT_NE(failure(), ""); // nobody is there
    const FakeService portal(bus, event, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                             answer);
    opener.open("x:1", failed);
    EXPECT_TRUE(waitFor([&] { return opened == "x:1"; }));
    install("[ $1 = good: ] || exit 3");
    opener.open("good:", failed);
    opener.open("bad:", failed);
    EXPECT_EQ(failure(), "Cannot open bad:: The desktop has no program for it.");
    EXPECT_EQ(opened, "x:1"); // xdg-open is there to say no

    LinkOpener sandboxed(event, observer.get(), {}, Sandbox::flatpak);
    outcome = 1; // the user was asked for a program, and declined
    sandboxed.open("x:2", failed);
    EXPECT_TRUE(waitFor([&] { return opened == "x:2"; }));
    outcome = 2;
    sandboxed.open("x:3", failed);
    EXPECT_EQ(failure(), "Cannot open x:3: The desktop has no program for it.");
    outcome = std::nullopt;
    sandboxed.open("x:4", failed);
    EXPECT_EQ(failure(), "Cannot open x:4: The desktop portal refuses: Not now. (org.example.Busy).");
}

} // namespace
} // namespace wakeloft

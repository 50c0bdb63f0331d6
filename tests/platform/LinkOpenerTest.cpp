#include "LinkOpener.h"
#include "SdEventMainRunLoop.h"
#include "SoftwareCentreUpdate.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;

/// A portal on the test's own loop that answers with `outcome` where it has one.
struct FakePortal {
    BusPointer bus;
    BusSlot object;
    std::optional<std::uint32_t> outcome = 0;
    std::string opened;

    FakePortal(const PrivateBus& daemon, sd_event* event) : bus(daemon.connect(event)) {
        static const sd_bus_vtable vtable[] = {
            SD_BUS_VTABLE_START(0),
            SD_BUS_METHOD("OpenURI", "ssa{sv}", "o", openUri, SD_BUS_VTABLE_UNPRIVILEGED),
            SD_BUS_VTABLE_END,
        };
        sd_bus_slot* slot = nullptr;
        EXPECT_GE(sd_bus_add_object_vtable(bus.get(), &slot, "/org/freedesktop/portal/desktop",
                                           "org.freedesktop.portal.OpenURI", vtable, this),
                  0);
        object.reset(slot);
        EXPECT_GE(sd_bus_request_name(bus.get(), "org.freedesktop.portal.Desktop", 0), 0);
    }

    static int openUri(sd_bus_message* message, void* userdata, sd_bus_error* error) {
        auto* self = static_cast<FakePortal*>(userdata);
        const char* window = nullptr;
        const char* uri = nullptr;
        const char* key = nullptr;
        const char* token = nullptr;
        if (sd_bus_message_read(message, "ss", &window, &uri) < 0 ||
            sd_bus_message_read(message, "a{sv}", 1, &key, "s", &token) < 0)
            return -EINVAL;
        if (!self->outcome)
            return sd_bus_error_set(error, "org.example.Busy", "Not now.");
        self->opened = uri;
        std::string sender = sd_bus_message_get_sender(message) + 1;
        sender[sender.find('.')] = '_';
        const auto path = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;
        sd_bus_reply_method_return(message, "o", path.c_str());
        return sd_bus_emit_signal(self->bus.get(), path.c_str(), "org.freedesktop.portal.Request", "Response",
                                  "ua{sv}", *self->outcome, 0);
    }
};

struct Links : testing::Test {
    PrivateBus daemon;
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    BusPointer bus = daemon.connect(loop->event());
    fs::path told = daemon.directory() / "told";
    std::string path = std::getenv("PATH");
    std::vector<std::string> failures;
    LinkOpener::Failed failed = [this](const PlatformError& error) { failures.push_back(error.description); };

    Links() { setenv("PATH", daemon.directory().c_str(), 1); }
    ~Links() override { setenv("PATH", path.c_str(), 1); }

    /// An xdg-open that runs `script`.
    void install(const std::string& script) const {
        const auto program = daemon.directory() / "xdg-open";
        std::ofstream(program) << "#!/bin/sh\n" << script << "\n";
        fs::permissions(program, fs::perms::owner_all);
    }
    bool waitFor(const std::function<bool()>& condition) {
        for (int look = 0; look < 500; ++look)
            if (runUntil(loop->event(), condition, 10))
                return true;
        return false;
    }
    [[nodiscard]] std::string contents() const {
        std::stringstream text;
        text << std::ifstream(told).rdbuf();
        return text.str();
    }
    /// A process that has ended stays known until it is buried.
    static bool isKnown(const std::string& process) { return kill(std::stoi(process), 0) == 0; }
};

TEST_F(Links, TheUsersProgramStartsCleanAndIsBuried) {
    install("echo \"$1 $CUP $LEFT $(cut -d ' ' -f 6 /proc/$$/stat) $$\" > \"$TOLD\"; kill -TERM $$; echo "
            "survived >> "
            "\"$TOLD\"");
    setenv("LEFT", "ours", 1);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    LinkOpener opener(loop->event(), bus.get(), {"CUP=full", "PATH=" + path, "TOLD=" + told.string()},
                      Sandbox::none);
    opener.open("https://example.org/?a=1&b=$HOME;c", failed);
    EXPECT_TRUE(waitFor([&] { return !failures.empty(); })) << contents();
    sigprocmask(SIG_SETMASK, &before, nullptr);
    unsetenv("LEFT");
    std::istringstream words(contents());
    std::string address;
    std::string cup;
    std::string session;
    std::string process;
    std::string rest;
    words >> address >> cup >> session >> process >> rest;
    EXPECT_EQ(address, "https://example.org/?a=1&b=$HOME;c");
    EXPECT_EQ(cup, "full");
    EXPECT_EQ(session, process); // a session of its own
    EXPECT_EQ(rest, "");         // the signal was not blocked
    EXPECT_EQ(failures.front(),
              "Cannot open https://example.org/?a=1&b=$HOME;c: xdg-open failed with code 143.");
    EXPECT_FALSE(isKnown(process));
}

TEST_F(Links, OnlyAFailureIsTold) {
    install("echo $$ > \"$TOLD\"; [ \"$1\" = good: ] || exit 3");
    FakePortal portal(daemon, loop->event());
    LinkOpener opener(loop->event(), bus.get(), {"TOLD=" + told.string()}, Sandbox::none);
    opener.open("good:", failed);
    EXPECT_TRUE(waitFor([&] { return contents().ends_with('\n') && !isKnown(contents()); }));
    EXPECT_TRUE(failures.empty());
    opener.open("bad:", failed);
    EXPECT_TRUE(waitFor([&] { return !failures.empty(); }));
    EXPECT_EQ(failures.front(), "Cannot open bad:: The desktop has no program for it.");
    EXPECT_EQ(portal.opened, ""); // xdg-open is there to say no
}

TEST_F(Links, ThePortalStandsInAndServesASandbox) {
    FakePortal portal(daemon, loop->event());
    LinkOpener opener(loop->event(), bus.get(), {}, Sandbox::none); // there is no xdg-open
    opener.open("https://example.org/1", failed);
    EXPECT_TRUE(waitFor([&] { return portal.opened == "https://example.org/1"; }));
    install("exit 0");
    LinkOpener sandboxed(loop->event(), bus.get(), {}, Sandbox::flatpak);
    portal.outcome = 1; // the user was asked for a program, and declined
    sandboxed.open("https://example.org/2", failed);
    EXPECT_TRUE(waitFor([&] { return portal.opened == "https://example.org/2"; }));
    portal.outcome = 2;
    sandboxed.open("https://example.org/3", failed);
    EXPECT_TRUE(waitFor([&] { return failures.size() == 1; }));
    EXPECT_EQ(failures.back(), "Cannot open https://example.org/3: The desktop has no program for it.");
    portal.outcome = std::nullopt;
    sandboxed.open("https://example.org/4", failed);
    EXPECT_TRUE(waitFor([&] { return failures.size() == 2; }));
    EXPECT_EQ(failures.back(), "Cannot open https://example.org/4: The desktop portal refuses: Not now. "
                               "(org.example.Busy).");
    EXPECT_FALSE(runUntil(loop->event(), [&] { return failures.size() > 2; }, 100));
}

TEST_F(Links, WithNothingToOpenItTheUpdateSaysWhy) {
    LinkOpener opener(loop->event(), nullptr, {}, Sandbox::none);
    SoftwareCentreUpdate update(opener, "org.example.App", failed);
    update.checkForUpdates();
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures.front(),
              "Cannot open appstream://org.example.App: Cannot start xdg-open: No such file or "
              "directory.");
    LinkOpener alone(loop->event(), bus.get(), {}, Sandbox::none); // a bus without a portal
    alone.open("https://example.org", failed);
    EXPECT_TRUE(waitFor([&] { return failures.size() == 2; }));
}

} // namespace
} // namespace wakeloft

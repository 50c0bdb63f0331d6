#pragma once

#include "PrivateSystem.h"
#include "support/FakeService.h"
#include "support/LeaseHolder.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iostream>
#include <iterator>

namespace wakeloft {

inline constexpr const char* helperName = LidHelperService::label;
inline constexpr const char* accessDenied = "org.freedesktop.DBus.Error.AccessDenied";
inline constexpr const char* limitsExceeded = "org.freedesktop.DBus.Error.LimitsExceeded";

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isMeasured = false; // a sanitizer takes its own time and memory
#else
inline constexpr bool isMeasured = true;
#endif

/// A real helper as a process on a private system, beside a polkit with one opinion.
struct LidHelperProcess : PrivateSystem {
    enum class Opinion { yes, no, broken, never };

    LidHelperProcess() {
        startLoginManager();
        helper = std::make_unique<ChildProcess>(
            std::vector<std::string>{"sh", "-c", "exec \"$0\" 2>\"$1\"", WAKELOFT_LID_HELPER, logFile});
        EXPECT_TRUE(waitFor([&] { return isOwned(helperName); })) << log();
    }
    ~LidHelperProcess() override {
        if (HasFailure())
            std::cerr << log();
    }

    /// Sends the signal, and waits for the end: the exit code.
    int end(int signal) {
        helper->signal(signal);
        return helper->wait(5000);
    }
    /// All that it has said.
    std::string log() const {
        std::ifstream stream(logFile);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// Its own memory, in KiB.
    long memory() const {
        const std::string name = "Private_Dirty:";
        std::ifstream lines("/proc/" + std::to_string(helper->pid()) + "/smaps_rollup");
        std::string line;
        while (std::getline(lines, line))
            if (line.starts_with(name))
                return std::atol(line.c_str() + name.size());
        ADD_FAILURE() << "no " << name;
        return -1;
    }

    int checkAuthorization(sd_bus_message* call) {
        ++asked;
        if (opinion == Opinion::broken || opinion == Opinion::never)
            return opinion == Opinion::broken ? -EIO : 1;
        return sd_bus_reply_method_return(call, "(bba{ss})", opinion == Opinion::yes ? 1 : 0, 0, 0);
    }
    const std::string logFile = bus.directory() / "helper.log";
    std::atomic<Opinion> opinion = Opinion::yes;
    std::atomic<int> asked = 0;
    ServiceThread polkit{[this](sd_event* thread) {
        return std::make_shared<FakeService>(
            bus, thread, "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
            [this](sd_bus_message* call, sd_bus_error*) { return checkAuthorization(call); });
    }};
    std::unique_ptr<ChildProcess> helper;
};

} // namespace wakeloft

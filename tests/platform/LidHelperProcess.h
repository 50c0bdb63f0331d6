#pragma once

#include "LidHelperFakes.h"
#include "PrivateSystem.h"
#include "lease/LidHelperService.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace wakeloft {

inline constexpr const char* helperName = LidHelperService::label;
inline constexpr const char* accessDenied = "org.freedesktop.DBus.Error.AccessDenied";
inline constexpr const char* limitsExceeded = "org.freedesktop.DBus.Error.LimitsExceeded";

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isMeasured = false; // a sanitizer takes its own time and memory
#else
inline constexpr bool isMeasured = true;
#endif

/// A real helper as a process on a private system, beside a polkit with one opinion, and what its clients
/// say.
struct LidHelperProcess : testing::Test, PrivateSystem {
    LidHelperProcess();
    ~LidHelperProcess() override;

    void start(const std::string& program = WAKELOFT_LID_HELPER,
               const std::vector<std::string>& arguments = {});
    /// Sends the signal, and waits for the end: the exit code.
    int end(int signal);
    /// All that the helpers of this test have logged.
    std::string log() const;
    /// The number behind `name` in a file that the kernel keeps about the process.
    long figure(const std::string& name, const char* file) const;
    /// Its own memory, in KiB.
    long memory() const { return figure("Private_Dirty", "smaps_rollup"); }

    /// How many locks of the helper's kind `who` holds.
    int locks(const std::string& who = "Wakeloft");

    BusMessage call(sd_bus* client, const char* method, const char* name = helperName);
    BusMessage renewal(sd_bus* client, double deadline, bool suspendIfClosed = false,
                       const char* name = helperName);
    /// The reason in the answer (empty: granted), or the name of the error.
    std::string answer(sd_bus* client, sd_bus_message* message);
    std::string renew(const BusPointer& client, double seconds = 25, bool suspendIfClosed = false);
    std::string revoke(const BusPointer& client);
    static double wallClock();

    std::unique_ptr<FakePolkit> polkit = std::make_unique<FakePolkit>(bus, event);
    std::unique_ptr<ChildProcess> helper;
};

/// The helper of this build runs from the start.
struct LidHelperRunning : LidHelperProcess {
    LidHelperRunning() { start(); }
};

} // namespace wakeloft

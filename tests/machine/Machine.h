#pragma once

#include "machine/MachineShell.h"
#include "support/LeaseHolder.h"
#include "support/ListedInhibitors.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <functional>
#include <string>

namespace wakeloft {

/// The private machine that a test runs on; see rig/private-machine. Elsewhere the tests are skipped. Each
/// begins without a helper, and with the lid open.
struct Machine : testing::Test {
    static constexpr const char* unit = "wakeloft-lidhelper.service";
    static constexpr const char* program = "/usr/libexec/WakeloftLidHelper";

    void SetUp() override;
    void TearDown() override;

    static bool waitFor(const std::function<bool()>& condition, double seconds = 5);
    static void pass(double seconds) { usleep(static_cast<unsigned>(seconds * 1e6)); }
    /// As `systemctl show` writes it.
    static std::string unitProperty(const std::string& name) {
        return outputOf("systemctl show --value --property=" + name + " " + unit);
    }
    static void signalHelper(int number) {
        outputOf("kill -" + std::to_string(number) + " " + unitProperty("MainPID"));
    }
    /// How many locks of the helper's kind it holds.
    [[nodiscard]] int locks() const {
        return listedInhibitors(bus.get(), "sleep:handle-lid-switch", "Wakeloft");
    }
    /// What the installed helper is to write when it starts.
    static std::string startLine();
    /// What the helper has written into the journal since the test began.
    [[nodiscard]] std::string journal() const;
    static void setLid(bool isClosed);
    /// Whether the machine went to sleep since it was last woken.
    static bool hasSlept();
    static void wake();

    BusPointer bus;
    std::string cursor; ///< in the journal
};

} // namespace wakeloft

#include "machine/Machine.h"
#include "support/OtherLock.h"

#include <csignal>

namespace wakeloft {
namespace {

/// A helper that ends without a chance to put anything right.
struct BrokenHelper : Machine {
    /// A lease is held, and the lid shut.
    static void hold(const LeaseHolder& holder, bool suspendIfClosed) {
        setLid(false);
        wake();
        EXPECT_EQ(holder.renew(28, suspendIfClosed), "");
        setLid(true);
    }
    /// Which minds the lid itself, and acts on its movement alone.
    OtherLock desktop() { return {bus.get(), "handle-power-key:handle-lid-switch", "Desktop"}; }
    void expectEndedBy(const std::string& result, double seconds = 5) {
        EXPECT_TRUE(waitFor([this] { return locks() == 0; }, seconds));
        EXPECT_TRUE(waitFor([] { return unitProperty("ActiveState") == "failed"; }));
        EXPECT_EQ(unitProperty("Result"), result);
    }
};

TEST_F(BrokenHelper, LeavesNoLockWhenItIsKilledAndLetsTheComputerSleep) {
    const LeaseHolder holder;
    const auto minding = desktop();
    hold(holder, true);
    pass(0.3);
    EXPECT_EQ(locks(), 1);
    EXPECT_FALSE(hasSlept());
    signalHelper(SIGKILL);
    expectEndedBy("signal");
    EXPECT_TRUE(waitFor(hasSlept));
    EXPECT_TRUE(
        journal().ends_with("\nthe helper ended without letting go\nthe lid is shut: asking for sleep"))
        << journal();

    hold(holder,
         false); // the next request brings another helper; this time nobody wants the computer to sleep
    signalHelper(SIGKILL);
    expectEndedBy("signal");
    pass(1);
    EXPECT_FALSE(hasSlept());
}

TEST_F(BrokenHelper, IsEndedByTheWatchdogWhenItHangsAndNotBefore) {
    const LeaseHolder holder;
    const auto minding = desktop();
    EXPECT_EQ(holder.renew(), "");
    EXPECT_EQ(unitProperty("WatchdogUSec"), "20s");
    holder.revoke();
    EXPECT_EQ(unitProperty("WatchdogUSec"), "0"); // at rest no sign of life is expected
    constexpr double limit = 2;                   // from here on
    const std::string folder = std::string("/run/systemd/system/") + unit + ".d";
    outputOf("mkdir " + folder + " && printf '[Service]\\nWatchdogSec=2\\n' >" + folder +
             "/short.conf && systemctl daemon-reload && systemctl stop " + unit);
    hold(holder, true);
    const auto process = unitProperty("MainPID");
    pass(2 * limit);
    EXPECT_EQ(unitProperty("MainPID"), process);
    EXPECT_EQ(locks(), 1);
    EXPECT_FALSE(hasSlept());
    signalHelper(SIGSTOP);
    expectEndedBy("watchdog", limit + 1);
    EXPECT_TRUE(waitFor(hasSlept));
    EXPECT_EQ(holder.renew(), "");
    EXPECT_EQ(locks(), 1);
    outputOf("rm -r " + folder + " && systemctl daemon-reload");
}

} // namespace
} // namespace wakeloft

#include "machine/Machine.h"

#include <chrono>
#include <csignal>
#include <memory>

namespace wakeloft {
namespace {

/// A helper that ends without a chance to put anything right, on a desktop that minds the lid itself: it acts
/// on the lid's movement alone.
struct BrokenHelper : Machine {
    std::unique_ptr<OtherLock> desktop;
    std::unique_ptr<LeaseHolder> holder;

    void SetUp() override {
        Machine::SetUp();
        if (IsSkipped() || HasFailure())
            return;
        holder = std::make_unique<LeaseHolder>();
        setLid(true);
        EXPECT_TRUE(waitFor(hasSlept)); // the machine can
        setLid(false);
        desktop = std::make_unique<OtherLock>("handle-power-key:handle-lid-switch", "Desktop");
        wake();
    }
    /// A lease is held, and the lid shut.
    void hold(bool suspendIfClosed) {
        setLid(false);
        wake();
        EXPECT_EQ(holder->renew(suspendIfClosed), "");
        EXPECT_EQ(locks(), 1);
        setLid(true);
    }
};

TEST_F(BrokenHelper, LeavesNoLockWhenItIsKilledAndLetsTheComputerSleep) {
    hold(true);
    pass(0.3);
    EXPECT_FALSE(hasSlept());
    signalHelper(SIGKILL);
    EXPECT_TRUE(waitFor([this] { return locks() == 0; }));
    EXPECT_TRUE(waitFor(hasSlept));
    EXPECT_TRUE(waitFor([] { return unitProperty("ActiveState") == "failed"; }));
    EXPECT_EQ(unitProperty("Result"), "signal");
    EXPECT_TRUE(
        journal().ends_with("\nthe helper ended without letting go\nthe lid is shut: asking for sleep"))
        << journal();

    hold(false); // the next request brings another helper; this time nobody wants the computer to sleep
    signalHelper(SIGKILL);
    EXPECT_TRUE(waitFor([this] { return locks() == 0; }));
    EXPECT_TRUE(waitFor([] { return unitProperty("ActiveState") == "failed"; }));
    pass(1);
    EXPECT_FALSE(hasSlept());
}

TEST_F(BrokenHelper, IsEndedByTheWatchdogWhenItHangs) {
    constexpr double limit = 20; // of the unit, since the last sign of life
    EXPECT_EQ(holder->renew(), "");
    EXPECT_EQ(unitProperty("WatchdogUSec"), "20s");
    holder->revoke();
    EXPECT_EQ(unitProperty("WatchdogUSec"), "0"); // at rest none is expected
    hold(true);
    signalHelper(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    const auto seconds = [begin] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    pass(3);
    EXPECT_EQ(locks(), 1); // nobody else lets go
    EXPECT_FALSE(hasSlept());
    EXPECT_TRUE(waitFor([this] { return locks() == 0; }, limit));
    std::printf("hung: lock gone after %.1f s\n", seconds());
    EXPECT_LT(seconds(), limit + 2);
    EXPECT_TRUE(waitFor(hasSlept));
    EXPECT_TRUE(waitFor([] { return unitProperty("ActiveState") == "failed"; }));
    EXPECT_EQ(unitProperty("Result"), "watchdog");
    EXPECT_EQ(holder->renew(), "");
    EXPECT_EQ(locks(), 1);
}

TEST_F(BrokenHelper, IsNotTakenForHungWhileItHolds) {
    const std::string folder = std::string("/run/systemd/system/") + unit + ".d";
    outputOf("mkdir " + folder + " && printf '[Service]\\nWatchdogSec=1\\n' >" + folder +
             "/short.conf && systemctl daemon-reload");
    EXPECT_EQ(holder->renew(), "");
    const auto process = unitProperty("MainPID");
    pass(3);
    EXPECT_EQ(unitProperty("MainPID"), process);
    EXPECT_EQ(locks(), 1);
    signalHelper(SIGSTOP); // the short limit is in force
    EXPECT_TRUE(waitFor([this] { return locks() == 0; }, 3));
    outputOf("rm -r " + folder + " && systemctl daemon-reload");
}

} // namespace
} // namespace wakeloft

#include "lease/LidHelperService.h"
#include "machine/Machine.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace wakeloft {
namespace {

constexpr const char* granted = "('',)";

struct InstalledHelper : Machine {};

TEST_F(InstalledHelper, IsStartedByTheBusWithTheFirstCallAndStopsInOrder) {
    EXPECT_EQ(unitProperty("MainPID"), "0");
    LeaseHolder holder;
    EXPECT_EQ(holder.renew(), "");
    EXPECT_EQ(unitProperty("ActiveState"), "active");
    EXPECT_EQ(journal(), startLine());
    const auto process = unitProperty("MainPID");
    const auto listed = outputOf("busctl call org.freedesktop.login1 /org/freedesktop/login1 "
                                 "org.freedesktop.login1.Manager ListInhibitors");
    EXPECT_NE(
        listed.find("\"sleep:handle-lid-switch\" \"Wakeloft\" \"Deepwake keeps this computer awake with the "
                    "lid closed\" \"block\" 0 " +
                    process),
        std::string::npos)
        << listed;
    holder.revoke();
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(unitProperty("MainPID"), process); // it stays, asleep

    EXPECT_EQ(holder.renew(), "");
    EXPECT_EQ(locks(), 1);
    const auto begin = std::chrono::steady_clock::now();
    outputOf(std::string("systemctl stop ") + unit);
    EXPECT_LT(std::chrono::steady_clock::now() - begin,
              std::chrono::duration<double>(LidHelperService::exitTimeout));
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(unitProperty("MainPID") + unitProperty("ActiveState") + unitProperty("Result"),
              "0inactivesuccess");
    EXPECT_EQ(holder.renew(), ""); // the same connection brings another
    EXPECT_EQ(journal(), startLine() + "\n" + startLine());
}

TEST_F(InstalledHelper, ServesWhoSitsAtTheComputerAlone) {
    const auto expectRefused = [](UserShell& shell) {
        const auto answer = shell.askForLease();
        EXPECT_NE(
            answer.find("org.freedesktop.DBus.Error.AccessDenied: Only who sits at this computer may keep it "
                        "awake with the lid closed."),
            std::string::npos)
            << answer;
    };
    auto first = UserShell::loggedInOnSeat("wakeloft-one");
    EXPECT_EQ(first.isActive(), "yes");
    EXPECT_EQ(first.askForLease(), granted);
    std::printf("session %s on seat0, active: %s: let in\n", first.run("echo $XDG_SESSION_ID").c_str(),
                first.isActive().c_str());
    EXPECT_TRUE(waitFor([this] { return locks() == 0; })); // the client has ended
    auto afar = UserShell::loggedInFromAfar("wakeloft-three");
    EXPECT_EQ(afar.isActive(), "yes"); // though at no seat
    expectRefused(afar);
    UserShell nowhere("wakeloft-two");
    expectRefused(nowhere);
    {
        auto second = UserShell::loggedInOnSeat("wakeloft-two");
        EXPECT_EQ(second.isActive() + first.isActive(), "yesno");
        expectRefused(first);
        EXPECT_EQ(second.askForLease(), granted);
        outputOf("loginctl activate " + first.run("echo $XDG_SESSION_ID"));
        EXPECT_EQ(second.isActive() + first.isActive(), "noyes");
        EXPECT_EQ(first.askForLease(), granted);
        expectRefused(second);
    }
    EXPECT_EQ(locks(), 0);
}

TEST_F(InstalledHelper, LeavesAloneWhatOthersHave) {
    LeaseHolder holder;
    const auto expectRefused = [&] {
        EXPECT_EQ(holder.renew(),
                  "The sleep setting is already on, set by something other than Wakeloft, and was left "
                  "as it is.");
        EXPECT_EQ(locks(), 0);
    };
    // As desktops have them: each but a part of it.
    const OtherLock desktop("handle-power-key:handle-suspend-key:handle-hibernate-key:handle-lid-switch",
                            "Desktop");
    const OtherLock download("sleep", "Download");
    EXPECT_EQ(holder.renew(), "");
    EXPECT_EQ(locks(), 1);
    holder.revoke();
    {
        const OtherLock other("sleep:handle-lid-switch", "Other");
        expectRefused();
    }
    EXPECT_EQ(holder.renew(), "");
    holder.revoke();
    outputOf("systemctl mask --runtime suspend.target");
    expectRefused();
    outputOf("systemctl unmask --runtime suspend.target");
    EXPECT_EQ(holder.renew(), "");
    const std::string refusal =
        "\nlease refused: disablesleep is already 1 and this helper did not write it; left as it is";
    EXPECT_EQ(journal(), startLine() + refusal + refusal);
}

TEST_F(InstalledHelper, TellsEveryHolderOnceThatItsLockWasTakenAway) {
    LeaseHolder one;
    LeaseHolder two;
    const auto renewals = [&] { return one.renew() + "|" + two.renew(); };
    EXPECT_EQ(renewals(), "|");
    outputOf("systemctl restart systemd-logind"); // which knows its locks again
    EXPECT_TRUE(waitFor([this] { return locks() == 1; }));
    EXPECT_EQ(renewals(), "|");

    outputOf("systemctl mask --runtime systemd-logind && systemctl stop systemd-logind && "
             "rm /run/systemd/inhibit/* && systemctl unmask --runtime systemd-logind && "
             "systemctl start systemd-logind");
    const std::string sentence =
        "The sleep setting was turned off by something other than Wakeloft, and was left off.";
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(renewals(), sentence + "|" + sentence);
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(renewals(), "|");
    EXPECT_EQ(locks(), 1);
    EXPECT_EQ(journal(),
              startLine() + "\nlease ended: disablesleep was set to 0 by something else; left at 0");
}

TEST_F(InstalledHelper, HasNextToNoRightsBeyondItsTask) {
    LeaseHolder holder;
    ASSERT_EQ(holder.renew(), ""); // they are enough
    const auto verdict = outputOf(std::string("systemd-analyze security ") + unit + " | tail -n 1");
    std::printf("%s\n", verdict.c_str());
    const auto colon = verdict.rfind(": ");
    ASSERT_NE(colon, std::string::npos);
    EXPECT_LE(std::strtod(verdict.c_str() + colon + 2, nullptr), 1.0);
    EXPECT_GT(std::strtod(verdict.c_str() + colon + 2, nullptr), 0.0);
}

} // namespace
} // namespace wakeloft

#include "machine/Machine.h"
#include "support/OtherLock.h"

#include <cstdio>
#include <cstdlib>

namespace wakeloft {
namespace {

using InstalledHelper = Machine;

TEST_F(InstalledHelper, IsStartedByTheBusWithTheFirstCallAndStopsInOrder) {
    EXPECT_EQ(unitProperty("MainPID"), "0");
    const LeaseHolder holder;
    EXPECT_EQ(holder.renew(), "");
    const auto process = unitProperty("MainPID");
    const auto verdict = outputOf(std::string("systemd-analyze security ") + unit + " | tail -n 1");
    std::printf("%s\n", verdict.c_str());
    const double exposure = std::strtod(verdict.c_str() + verdict.rfind(": ") + 2, nullptr);
    EXPECT_LE(exposure, 1.0);
    EXPECT_GT(exposure, 0.0);

    EXPECT_EQ(holder.revoke(), "");
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(unitProperty("MainPID"), process); // it stays, asleep
    EXPECT_EQ(holder.renew(), "");
    EXPECT_EQ(locks(), 1);
    outputOf(std::string("systemctl stop ") + unit);
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(unitProperty("ActiveState") + unitProperty("Result"), "inactivesuccess");
    EXPECT_EQ(holder.renew(), ""); // the same connection brings another
    EXPECT_EQ(journal(), startLine() + "\n" + startLine());
}

TEST_F(InstalledHelper, ServesWhoSitsAtTheComputerAlone) {
    using Login = UserShell::Login;
    const auto isActive = [](UserShell& shell) {
        return shell.run("loginctl show-session \"$XDG_SESSION_ID\" --property=Active --value");
    };
    const auto isServed = [](UserShell& shell) {
        const auto answer = shell.run(
            "gdbus call --system --dest com.wakeloft.app.lidhelper --object-path /com/wakeloft/app/lidhelper "
            "--method com.wakeloft.app.LidLease.RenewLease $(($(date +%s) + 20)).0 '{}'");
        const bool isRefused = answer.ends_with("AccessDenied: Only who sits at this computer may keep it "
                                                "awake with the lid closed.");
        EXPECT_TRUE(isRefused || answer == "('',)") << answer;
        return !isRefused;
    };
    UserShell first("wakeloft-one", Login::onSeat);
    EXPECT_EQ(isActive(first), "yes");
    EXPECT_TRUE(isServed(first));
    EXPECT_TRUE(waitFor([this] { return locks() == 0; })); // the client has ended
    {
        UserShell afar("wakeloft-three", Login::fromAfar);
        EXPECT_EQ(isActive(afar), "yes"); // though at no seat
        EXPECT_FALSE(isServed(afar));
        UserShell nowhere("wakeloft-two", Login::none);
        EXPECT_FALSE(isServed(nowhere));
    }
    UserShell second("wakeloft-two", Login::onSeat);
    EXPECT_EQ(isActive(second) + isActive(first), "yesno");
    EXPECT_FALSE(isServed(first));
    EXPECT_TRUE(isServed(second));
    outputOf("loginctl activate " + first.run("echo $XDG_SESSION_ID"));
    EXPECT_TRUE(isServed(first));
    EXPECT_FALSE(isServed(second));
}

TEST_F(InstalledHelper, LeavesAloneWhatOthersHave) {
    const LeaseHolder holder;
    const auto expectGranted = [&] {
        EXPECT_EQ(holder.renew(), "");
        EXPECT_EQ(locks(), 1);
        EXPECT_EQ(holder.revoke(), "");
    };
    const auto expectRefused = [&] {
        EXPECT_EQ(holder.renew(),
                  "The sleep setting is already on, set by something other than Wakeloft, and was left "
                  "as it is.");
        EXPECT_EQ(locks(), 0);
    };
    // As desktops have them: each but a part of it.
    const OtherLock desktop(
        bus.get(), "handle-power-key:handle-suspend-key:handle-hibernate-key:handle-lid-switch", "Desktop");
    const OtherLock download(bus.get(), "sleep", "Download");
    expectGranted();
    {
        const OtherLock other(bus.get(), "sleep:handle-lid-switch", "Other");
        expectRefused();
    }
    expectGranted();
    for (const std::string how : {"", "--runtime "}) {
        outputOf("systemctl mask " + how + "suspend.target");
        expectRefused();
        outputOf("systemctl unmask " + how + "suspend.target");
    }
}

TEST_F(InstalledHelper, TellsEveryHolderOnceThatItsLockWasTakenAway) {
    const LeaseHolder one;
    const LeaseHolder two;
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
    EXPECT_EQ(renewals(), sentence + "|" + sentence);
    EXPECT_EQ(locks(), 0);
    EXPECT_EQ(renewals(), "|");
    EXPECT_EQ(locks(), 1);
}

TEST_F(InstalledHelper, MakesWayForAnotherThatReplacesItOnceNobodyNeedsIt) {
    // As an upgrade of its package does it.
    const auto replaceByOtherCode = [](const std::string& mode) {
        const std::string next = std::string(program) + ".dpkg-new";
        outputOf(std::string("cp ") + program + " " + next + " && echo >>" + next + " && chmod " + mode +
                 " " + next + " && mv " + next + " " + program);
    };
    const auto says = [this](const std::string& text) {
        return waitFor([&] { return journal().find(text) != std::string::npos; });
    };
    const auto hasEnded = [] { return unitProperty("ActiveState") == "inactive"; };
    const LeaseHolder holder;
    EXPECT_EQ(holder.renew(), "");
    const auto process = unitProperty("MainPID");
    replaceByOtherCode("757"); // anybody may have written it
    EXPECT_TRUE(says("\nthe file on disk is no genuine helper; this one goes on: "));
    holder.revoke();
    pass(0.5);
    EXPECT_EQ(unitProperty("MainPID"), process);

    EXPECT_EQ(holder.renew(), "");
    replaceByOtherCode("755");
    EXPECT_TRUE(says("\nanother helper is on disk now, cdhash "));
    pass(0.5);
    EXPECT_EQ(unitProperty("MainPID"), process);
    EXPECT_EQ(locks(), 1);
    holder.revoke();
    EXPECT_TRUE(waitFor(hasEnded));
    EXPECT_EQ(holder.renew(), "");
    EXPECT_TRUE(says("\nThe helper's program was replaced: this one ends.\n" + startLine()));
    holder.revoke();
    replaceByOtherCode("755"); // while nothing else wakes it
    EXPECT_TRUE(waitFor(hasEnded));
    EXPECT_EQ(unitProperty("Result"), "success");
}

} // namespace
} // namespace wakeloft

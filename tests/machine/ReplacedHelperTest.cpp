#include "machine/Machine.h"

namespace wakeloft {
namespace {

/// A helper whose program is replaced, as an upgrade of its package does it.
struct ReplacedHelper : Machine {
    /// By other code; `mode` as chmod takes it.
    static void replace(const std::string& mode) {
        const std::string next = std::string(program) + ".dpkg-new";
        outputOf(std::string("cp ") + program + " " + next + " && echo >>" + next + " && chmod " + mode +
                 " " + next + " && mv " + next + " " + program);
    }
    [[nodiscard]] bool hasSaid(const std::string& text) const {
        return waitFor([&] { return journal().find(text) != std::string::npos; });
    }
    static bool hasEnded() {
        return waitFor([] { return unitProperty("ActiveState") == "inactive"; });
    }
};

TEST_F(ReplacedHelper, MakesWayForTheNewOneWhenNobodyNeedsIt) {
    constexpr double moment = 0.5;
    const std::string farewell = "\nThe helper's program was replaced: this one ends.";
    LeaseHolder holder;
    EXPECT_EQ(holder.renew(), "");
    const auto process = unitProperty("MainPID");
    replace("757"); // anybody may have written it
    EXPECT_TRUE(hasSaid("\nthe file on disk is no genuine helper; this one goes on: "));
    holder.revoke();
    pass(moment);
    EXPECT_EQ(unitProperty("MainPID"), process);

    EXPECT_EQ(holder.renew(), "");
    replace("755");
    EXPECT_TRUE(hasSaid("\nanother helper is on disk now, cdhash "));
    pass(moment);
    EXPECT_EQ(unitProperty("MainPID"), process);
    EXPECT_EQ(locks(), 1);
    holder.revoke();
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(unitProperty("Result"), "success");
    EXPECT_TRUE(journal().ends_with(farewell));

    EXPECT_EQ(holder.renew(), ""); // the new one
    EXPECT_EQ(locks(), 1);
    EXPECT_TRUE(journal().ends_with(farewell + "\n" + startLine()));
    holder.revoke();
    replace("755"); // while nothing else wakes it
    EXPECT_TRUE(hasEnded());
}

} // namespace
} // namespace wakeloft

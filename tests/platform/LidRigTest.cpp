#include "PrivateSystem.h"
#include "lease/RigLeaseFile.h"
#include "support/LeaseHolder.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace wakeloft {
namespace {

TEST_F(PrivateSystem, TheRigsHelperRecordsItsLeaseInAFileThatTheCheckerFollows) {
    const auto file = (bus.directory() / "lease").string();
    const auto said = bus.directory() / "said";
    const ChildProcess helper({WAKELOFT_RIG_LID_HELPER, "--lease-file=" + file});
    ASSERT_TRUE(waitFor([this] { return isOwned(LidHelperService::label); }));
    const ChildProcess checker({"sh", "-c", "exec \"$0\" \"$1\" >\"$2\"", WAKELOFT_RIG_LID_CHECKER,
                                "--lease-file=" + file, said.string()});
    const auto checkerSays = [&](const std::string& text) {
        return waitFor([&] {
            std::ifstream stream(said);
            return std::string(std::istreambuf_iterator<char>(stream), {}).ends_with(text);
        });
    };
    EXPECT_TRUE(checkerSays("missing\n"));
    const LeaseHolder client;
    EXPECT_EQ(client.renew(20), "");
    EXPECT_NEAR(RigLeaseFile::readAt(file).value_or(Date{}).secondsSince1970, wallClock() + 20, 1);
    EXPECT_TRUE(checkerSays("missing\nheld\n"));
    EXPECT_EQ(client.renew(1), "");
    EXPECT_TRUE(waitFor([&] { return !std::filesystem::exists(file); }));
    EXPECT_EQ(client.renew(2), "");
    helper.signal(SIGKILL);
    EXPECT_TRUE(checkerSays("held\nlapsed\n"));
}

} // namespace
} // namespace wakeloft

#include "LidHelperProcess.h"
#include "lease/RigLeaseFile.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace wakeloft {
namespace {

TEST_F(LidHelperProcess, TheRigRecordsItsLeaseInAFileThatTheCheckerFollows) {
    const auto file = (bus.directory() / "lease").string();
    const auto said = bus.directory() / "said";
    start(WAKELOFT_RIG_LID_HELPER, {"--lease-file=" + file});
    const ChildProcess checker({"sh", "-c", "exec \"$0\" \"$1\" >\"$2\"", WAKELOFT_RIG_LID_CHECKER,
                                "--lease-file=" + file, said.string()});
    const auto checkerSays = [&](const std::string& text) {
        return waitFor([&] {
            std::ifstream stream(said);
            return std::string(std::istreambuf_iterator<char>(stream), {}).ends_with(text);
        });
    };
    EXPECT_TRUE(checkerSays("missing\n"));
    const auto client = bus.connect(event);
    EXPECT_EQ(renew(client, 20), "");
    EXPECT_NEAR(RigLeaseFile::readAt(file).value_or(Date{}).secondsSince1970, wallClock() + 20, 1);
    EXPECT_TRUE(checkerSays("missing\nheld\n"));
    EXPECT_EQ(renew(client, 1), "");
    EXPECT_TRUE(waitFor([&] { return !std::filesystem::exists(file); }));
    EXPECT_EQ(renew(client, 2), "");
    end(SIGKILL);
    EXPECT_TRUE(checkerSays("held\nlapsed\n"));
}

} // namespace
} // namespace wakeloft

#include "PrivateSystem.h"
#include "ProgramWatch.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;
using Finding = LidHelperFileWatch::Finding;

struct LidHelperProgram : PrivateSystem {
    const fs::path folder = bus.directory() / "libexec";
    const fs::path program = folder / "WakeloftLidHelper";

    LidHelperProgram() { install("the helper"); }
    void install(const std::string& code) {
        fs::create_directory(folder);
        chmod(folder.c_str(), 0755);
        fs::remove(program);
        std::ofstream(program) << code;
        chmod(program.c_str(), 0755);
    }
    /// The hash of what is there, or what is wrong with it.
    std::string judged() const {
        const auto hash = hashOfTrustedFile(program);
        return hash ? *hash : hash.error().description;
    }
};

TEST_F(LidHelperProgram, ThatOthersCouldHavePutThereIsNoHelper) {
    EXPECT_EQ(judged().size(), 64U); // a hash
    const auto expectDistrust = [this](const char* change, const fs::path& file, const std::string& reason) {
        EXPECT_EQ(ChildProcess({"sh", "-c", change, program}).wait(5000), 0);
        EXPECT_EQ(judged(), file.string() + reason);
        install("the helper");
    };
    expectDistrust("chmod 757 $0", program, " can be written by others.");
    expectDistrust("chmod 775 $0", program, " can be written by others.");
    expectDistrust("chmod 777 ${0%/*}", folder, " can be written by others.");
    expectDistrust("truncate --size=65M $0", program, " is too large for a helper.");
    expectDistrust("rm $0 && mkfifo $0", program, " is no regular file.");
    expectDistrust("ln -sf /bin/sh $0", program, " cannot be read: Too many levels of symbolic links.");
    if (geteuid() == 0)
        expectDistrust("chown 65534 $0", program, " belongs to another user.");
}

TEST_F(LidHelperProgram, IsFollowedWhereverItsFileAndFolderGo) {
    auto found = Finding::running();
    ProgramWatch watch(
        event, program, [&](const Finding& finding) { found = finding; }, [](const std::string&) {});
    ASSERT_TRUE(watch.follow());
    const auto file = identityOfFile(program).value();
    watch.start({program, {file.device, file.inode}, judged()});
    const auto becomes = [&](const Finding& finding) { return waitFor([&] { return found == finding; }); };
    const auto aside = folder / "aside";
    fs::rename(program, aside);
    EXPECT_TRUE(becomes(Finding::missing()));
    fs::last_write_time(aside, fs::file_time_type::clock::now()); // touched as well
    fs::rename(aside, program);
    EXPECT_TRUE(becomes(Finding::running()));
    fs::rename(folder, bus.directory() / "elsewhere");
    EXPECT_TRUE(becomes(Finding::missing()));
    fs::create_directory(folder);
    pass(100);
    fs::remove(folder);
    pass(100);
    EXPECT_EQ(found, Finding::missing());
    install("another");
    EXPECT_TRUE(becomes(Finding::replaced(judged())));
}

} // namespace
} // namespace wakeloft

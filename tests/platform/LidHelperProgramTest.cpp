#include "LidHelperProcess.h"

#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;

/// A helper that runs from a folder of its own.
struct LidHelperProgram : LidHelperProcess {
    const fs::path folder = bus.directory() / "libexec";
    const fs::path program = folder / "WakeloftLidHelper";
    int versions = 0;

    LidHelperProgram() {
        makeFolder();
        install(program);
        start(program);
    }
    void makeFolder() {
        fs::create_directory(folder);
        chmod(folder.c_str(), 0755);
    }
    /// A helper that works, and that is no other one's copy.
    fs::path install(const fs::path& path) {
        fs::copy_file(WAKELOFT_LID_HELPER, path);
        std::ofstream(path, std::ios::app) << ++versions;
        chmod(path.c_str(), 0755);
        return path;
    }
    fs::path prepared() { return install(folder / "WakeloftLidHelper.new"); }
    void replace() { fs::rename(prepared(), program); }

    bool hasLogged(const std::string& text) {
        return waitFor([&] { return log().find(text) != std::string::npos; });
    }
    bool stays() { return helper->wait(200) < 0 && isOwned(helperName); }
};

TEST_F(LidHelperProgram, ReplacedAtRestItEndsAndTheNextRequestStartsTheNewOne) {
    const auto sums = bus.directory() / "sums";
    ChildProcess({"sh", "-c", "sha256sum <\"$0\" >\"$1\"", program, sums}).wait(5000);
    std::string hash;
    std::ifstream(sums) >> hash;
    EXPECT_NE(log().find("cdhash " + hash + ", from " + program.string() + "\n"), std::string::npos) << log();

    EXPECT_TRUE(stays());
    replace();
    EXPECT_EQ(helper->wait(5000), 0);
    EXPECT_TRUE(hasLogged("another helper is on disk now, cdhash "));
    std::ofstream(bus.directory() / "helper.service")
        << "[D-BUS Service]\nName=" << helperName
        << "\nExec=/usr/bin/env DBUS_SYSTEM_BUS_ADDRESS=" << bus.address() << " " << program.string() << "\n";
    ASSERT_GE(sd_bus_call_method(observer.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                 "ReloadConfig", nullptr, nullptr, ""),
              0);
    EXPECT_EQ(renew(bus.connect(event)), "");
}

TEST_F(LidHelperProgram, ReplacedWhileALeaseIsHeldItStaysUntilTheRelease) {
    const auto client = bus.connect(event);
    ASSERT_EQ(renew(client), "");
    replace();
    EXPECT_TRUE(hasLogged("another helper is on disk now, cdhash "));
    EXPECT_TRUE(stays());
    EXPECT_EQ(renew(client), "");
    EXPECT_EQ(locks(), 1);
    EXPECT_EQ(revoke(client), "");
    EXPECT_EQ(helper->wait(5000), 0);
    EXPECT_EQ(locks(), 0);
}

TEST_F(LidHelperProgram, ItsOwnFileBackInItsPlaceIsNoReplacement) {
    const auto aside = folder / "aside";
    fs::rename(program, aside);
    EXPECT_TRUE(hasLogged("the helper's file is gone"));
    fs::last_write_time(aside, fs::file_time_type::clock::now()); // touched as well
    fs::rename(aside, program);
    EXPECT_TRUE(hasLogged("this helper is the one on disk"));
    EXPECT_TRUE(stays());
    // The folder goes, moved or removed, and comes back with a helper.
    fs::rename(folder, bus.directory() / "elsewhere");
    pass(100);
    makeFolder();
    pass(100);
    fs::remove_all(folder);
    pass(100);
    EXPECT_TRUE(stays());
    makeFolder();
    replace();
    EXPECT_EQ(helper->wait(5000), 0);
}

TEST_F(LidHelperProgram, RemovedWithItsFolderItStaysUntilAnotherIsThere) {
    fs::remove(program);
    EXPECT_TRUE(hasLogged("the helper's file is gone"));
    fs::remove(folder); // noticed by itself: no change of the file comes with it
    EXPECT_TRUE(stays());
    makeFolder();
    pass(100);
    replace();
    EXPECT_EQ(helper->wait(5000), 0);
}

TEST_F(LidHelperProgram, WhatOthersCouldHavePutThereIsNoHelper) {
    const auto own = folder / "own";
    fs::create_hard_link(program, own);
    const auto isDistrusted = [&](const std::string& reason, const fs::path& file) {
        SCOPED_TRACE(reason);
        fs::rename(file, program);
        EXPECT_TRUE(hasLogged(reason));
        EXPECT_TRUE(stays());
        fs::create_hard_link(own, file);
        fs::rename(file, program);
        EXPECT_TRUE(waitFor([&] { return log().ends_with("this helper is the one on disk\n"); }));
    };
    auto file = prepared();
    chmod(file.c_str(), 0757);
    isDistrusted(program.string() + " can be written by others.", file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    isDistrusted(" is no regular file.", file);
    fs::create_symlink(WAKELOFT_LID_HELPER, file);
    isDistrusted(" cannot be read: Too many levels of symbolic links.", file);
    fs::resize_file(prepared(), 65 << 20);
    isDistrusted(" is too large for a helper.", file);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(prepared().c_str(), 65534, 65534), 0);
        isDistrusted(" belongs to another user.", file);
    }
    chmod(folder.c_str(), 0777);
    replace();
    EXPECT_TRUE(hasLogged(folder.string() + " can be written by others."));
    EXPECT_TRUE(stays());
    chmod(folder.c_str(), 0755);
    replace();
    EXPECT_EQ(helper->wait(5000), 0);
}

} // namespace
} // namespace wakeloft

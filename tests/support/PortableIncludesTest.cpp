#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace wakeloft {
namespace {

namespace fs = std::filesystem;

/// Does the check that every build of the core makes pass a folder with this one file?
bool passes(const std::string& source) {
    std::string name = (fs::temp_directory_path() / "wakeloft-includes.XXXXXX").string();
    const fs::path folder = mkdtemp(name.data());
    fs::create_directories(folder / "linux");
    std::ofstream(folder / "Ours.h") << "#pragma once\n";
    std::ofstream(folder / "linux/Theirs.h") << "#pragma once\n";
    std::ofstream(folder / "Ours.cpp") << source;
    const std::string command = "\"" WAKELOFT_CMAKE "\" -DROOTS=\"" + folder.string() +
                                "\" -P \"" WAKELOFT_INCLUDE_CHECK "\" >/dev/null 2>&1";
    const bool isPassed = std::system(command.c_str()) == 0; // NOLINT(cert-env33-c): a fixed command
    fs::remove_all(folder);
    return isPassed;
}

TEST(PortableIncludes, AreTheStandardLibrarysAndOurOwn) {
    EXPECT_TRUE(passes("#include \"Ours.h\"\n#include <vector>\n  #  include <expected>\n"));
    for (const char* mistake :
         {"#include <unistd.h>\n", "#include <QString>\n", "#include <systemd/sd-bus.h>\n",
          "#include \"Missing.h\"\n", "#include \"linux/Theirs.h\"\n", "#include \"../Ours.h\"\n",
          "#include HEADER\n"})
        EXPECT_FALSE(passes(mistake)) << mistake;
}

} // namespace
} // namespace wakeloft

#include "lease/RigLeaseFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>

namespace wakeloft {
namespace {

TEST(RigLeaseFile, WritesTheShortestTextThatReadsBackTheSame) {
    EXPECT_EQ(RigLeaseFile::encode(Date{1731700000.25}), "1731700000.25");
    EXPECT_EQ(RigLeaseFile::encode(Date{1731700000}), "1731700000.0");
    using Limits = std::numeric_limits<double>;
    for (const double seconds : {0.0, -0.1, 1731700000.1234567, 0.1 + 0.2, Limits::max(), Limits::lowest(),
                                 Limits::min(), Limits::denorm_min(), 64092211200.0})
        EXPECT_EQ(RigLeaseFile::decode(RigLeaseFile::encode(Date{seconds})), Date{seconds}) << seconds;
}

TEST(RigLeaseFile, ReadsOneFiniteNumberAndNothingElse) {
    EXPECT_EQ(RigLeaseFile::decode("1731700000.5\n"), Date{1731700000.5});
    EXPECT_EQ(RigLeaseFile::decode(" \t\r\n+1.5e3\r\n "), Date{1500});
    EXPECT_EQ(RigLeaseFile::decode("-.5"), Date{-0.5});
    for (const std::string& text :
         {std::string(), std::string(" \n"), std::string("nan"), std::string("inf"), std::string("-infinity"),
          std::string("12abc"), std::string("1 2"), std::string("1,5"), std::string("+-1"),
          std::string("++1"), std::string("1e999"), std::string("\0001", 2), std::string("1\0", 2),
          std::string("\xFF")})
        EXPECT_EQ(RigLeaseFile::decode(text), std::nullopt) << text;
}

TEST(RigLeaseFile, AMissingFileReadsAsNothing) {
    const auto folder = std::filesystem::path(testing::TempDir());
    const auto path = folder / "wakeloft-rig-lease-file-test";
    std::ofstream(path) << "1731700000.5\n";
    EXPECT_EQ(RigLeaseFile::readAt(path), Date{1731700000.5});
    std::filesystem::remove(path);
    EXPECT_EQ(RigLeaseFile::readAt(path), std::nullopt);
    EXPECT_EQ(RigLeaseFile::readAt(folder), std::nullopt);
}

} // namespace
} // namespace wakeloft

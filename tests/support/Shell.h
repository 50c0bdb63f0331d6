#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace wakeloft {

/// What a shell command writes to its output. Its failure fails the running test, unless it `mayFail`.
inline std::string outputOf(const std::string& command, bool mayFail = false) {
    FILE* pipe =
        popen(command.c_str(), "re"); // NOLINT(cert-env33-c): the commands are all written in the tests
    if (pipe == nullptr)
        throw std::runtime_error(command + " cannot be run");
    std::string output;
    std::array<char, 4096> buffer{};
    while (const auto size = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), size);
    const int code = pclose(pipe);
    EXPECT_TRUE(mayFail || code == 0) << command << ": " << output;
    return output;
}

/// What is in a file; nothing where there is none.
inline std::string textOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace wakeloft

#include "ui/Screen.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <thread>

namespace wakeloft {

bool comesTrue(const std::function<bool()>& condition, int timeoutMs) {
    using Clock = std::chrono::steady_clock;
    constexpr auto pause = std::chrono::milliseconds(20); // the program and the desktop need the processor
    const auto end = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (Clock::now() > end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

namespace screen {

namespace {

/// What the command writes, which is to succeed unless it `mayFail`.
std::string outputOf(const std::string& command, bool mayFail = false) {
    FILE* pipe = popen(command.c_str(), "r"); // NOLINT(cert-env33-c): the commands are all written here
    if (pipe == nullptr) {
        ADD_FAILURE() << command << " cannot be run";
        return "";
    }
    std::string output;
    std::array<char, 4096> buffer{};
    while (const auto size = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), size);
    const int code = pclose(pipe);
    EXPECT_TRUE(mayFail || code == 0) << command;
    return output;
}

std::string cropped(const ScreenArea& area) {
    std::ostringstream crop;
    crop << " -crop " << area.width << 'x' << area.height << '+' << area.x << '+' << area.y << " +repage";
    return crop.str();
}

} // namespace

bool hasTray() {
    return std::getenv("DISPLAY") != nullptr && std::getenv("WAKELOFT_RIG_DESKTOP") != nullptr &&
           !outputOf("xdotool search --class '^wrapper-2.0$' 2>/dev/null", true).empty();
}

std::optional<ScreenArea> trayIcons(const std::string& windowClass) {
    constexpr int oneIcon = 22; // less is the bare tray
    std::istringstream lines(outputOf("xdotool search --onlyvisible --class '^" + windowClass +
                                          "$' getwindowgeometry --shell 2>/dev/null",
                                      true));
    ScreenArea area;
    for (std::string line; std::getline(lines, line);)
        for (auto [name, value] : {std::pair("X=", &area.x), std::pair("Y=", &area.y),
                                   std::pair("WIDTH=", &area.width), std::pair("HEIGHT=", &area.height)})
            if (line.starts_with(name))
                *value = std::atoi(line.c_str() + std::string(name).size());
    return area.width >= oneIcon ? std::optional(area) : std::nullopt;
}

void movePointer(int x, int y) {
    outputOf("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y));
}

void click(int x, int y) {
    outputOf("xdotool mousemove " + std::to_string(x) + " " + std::to_string(y) + " sleep 0.03 click 1");
}

void click(const ScreenArea& area) {
    click(area.x + area.width / 2, area.y + area.height / 2);
}

void rightClick(const ScreenArea& area) {
    movePointer(area.x + area.width / 2, area.y + area.height / 2);
    outputOf("xdotool sleep 0.03 click 3");
}

void type(const std::string& keys) {
    outputOf("xdotool key " + keys);
}

std::string pixels(const ScreenArea& area) {
    return outputOf("import -silent -window root" + cropped(area) + " rgb:-");
}

void save(const std::string& path, const std::optional<ScreenArea>& area) {
    outputOf("import -silent -window root" + (area ? cropped(*area) : "") + " '" + path + "'");
}

} // namespace screen

} // namespace wakeloft

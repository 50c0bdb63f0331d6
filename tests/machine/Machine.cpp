#include "machine/Machine.h"

#include <cstdio>
#include <fstream>

namespace wakeloft {

namespace {

constexpr const char* sleepStates = "/sys/power/state";
constexpr const char* awake = "freeze mem disk";

} // namespace

void Machine::SetUp() {
    if (const auto reason = machineAbsence())
        GTEST_SKIP() << *reason;
    sd_bus* opened = nullptr;
    ASSERT_GE(sd_bus_open_system(&opened), 0);
    bus.reset(opened);
    outputOf(std::string("systemctl stop ") + unit + " && systemctl reset-failed");
    ASSERT_EQ(locks(), 0);
    wake();
    cursor = outputOf("journalctl --sync; journalctl --lines=0 --show-cursor | sed -n 's/^-- cursor: //p'");
}

void Machine::TearDown() {
    if (bus == nullptr)
        return;
    setLid(false);
    if (HasFailure())
        std::printf("%s\n",
                    outputOf("journalctl --output=short-monotonic --after-cursor='" + cursor + "'").c_str());
}

bool Machine::waitFor(const std::function<bool()>& condition, double seconds) {
    constexpr double pause = 0.02;
    for (double left = seconds; !condition(); left -= pause) {
        if (left < 0)
            return false;
        pass(pause);
    }
    return true;
}

std::string Machine::startLine() {
    return "helper starting: Wakeloft " WAKELOFT_VERSION " (" WAKELOFT_BUILD "), cdhash " +
           outputOf(std::string("sha256sum <") + program + " | cut -c1-64") + ", from " + program;
}

std::string Machine::journal() const {
    return outputOf("journalctl --sync; journalctl --after-cursor='" + cursor +
                    R"(' | sed -n 's/^.* WakeloftLidHelper\[[0-9]*\]: //p')");
}

void Machine::setLid(bool isClosed) {
    outputOf(std::string(WAKELOFT_RIG "/lid ") + (isClosed ? "close" : "open"));
}

bool Machine::hasSlept() {
    std::ifstream file(sleepStates);
    std::string states;
    std::getline(file, states);
    return states != awake;
}

void Machine::wake() {
    EXPECT_TRUE(waitFor([] {
        return outputOf("busctl get-property org.freedesktop.login1 /org/freedesktop/login1 "
                        "org.freedesktop.login1.Manager PreparingForSleep") == "b false";
    }));
    std::ofstream(sleepStates) << awake << '\n';
}

} // namespace wakeloft

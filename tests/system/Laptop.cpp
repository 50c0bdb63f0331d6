#include "system/Laptop.h"

#include "lease/LidHelperService.h"
#include "support/ChildProcess.h"
#include "support/ListedInhibitors.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace wakeloft {

namespace {

using Clock = std::chrono::steady_clock;
constexpr int patienceMs = 15'000;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

} // namespace

void Laptop::reconnect() {
    bus_ = std::move(openSystemBus(loop_->event()).value());
}

std::string Laptop::file(const std::string& name) {
    const char* folder = std::getenv("WAKELOFT_RIG_DIR");
    return std::string(folder == nullptr ? "" : folder) + "/" + name;
}

bool Laptop::hasLid() {
    return std::filesystem::is_directory(file("lid"));
}

void Laptop::order(std::vector<std::string> command) {
    const std::string name = command[0];
    command[0] = std::string(WAKELOFT_RIG) + "/" + name;
    EXPECT_EQ(ChildProcess(command).wait(patienceMs), 0) << name;
}

int Laptop::suspends() {
    std::ifstream log(file("service-manager.log"));
    int count = 0;
    for (std::string line; std::getline(log, line);)
        count += line.starts_with("StartUnit suspend.target");
    return count;
}

std::optional<double> Laptop::sleepsAfter(const std::function<void()>& event, double timeoutMs) {
    const int before = suspends();
    const auto start = Clock::now();
    event();
    do {
        if (suspends() > before)
            return millisecondsSince(start);
        usleep(1000);
    } while (millisecondsSince(start) < timeoutMs);
    return std::nullopt;
}

void Laptop::settle() {
    int isSleeping = 1;
    for (const auto start = Clock::now(); isSleeping != 0 && millisecondsSince(start) < patienceMs;
         usleep(10'000))
        sd_bus_get_property_trivial(bus_.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                                    "org.freedesktop.login1.Manager", "PreparingForSleep", nullptr, 'b',
                                    &isSleeping);
    EXPECT_EQ(isSleeping, 0);
}

int Laptop::locks() {
    return listedInhibitors(bus_.get(), "sleep:handle-lid-switch", "Wakeloft");
}

std::optional<double> Laptop::waitForLocks(int count) {
    const auto start = Clock::now();
    do {
        if (locks() == count)
            return millisecondsSince(start);
    } while (millisecondsSince(start) < patienceMs);
    return std::nullopt;
}

pid_t Laptop::helper() {
    sd_bus_creds* credentials = nullptr;
    pid_t process = 0;
    if (sd_bus_get_name_creds(bus_.get(), LidHelperService::label, SD_BUS_CREDS_PID, &credentials) >= 0)
        sd_bus_creds_get_pid(credentials, &process);
    sd_bus_creds_unref(credentials);
    return process;
}

void Laptop::signalHelper(int number) {
    const pid_t process = helper();
    ASSERT_GT(process, 0) << "the helper does not run";
    kill(process, number);
}

} // namespace wakeloft

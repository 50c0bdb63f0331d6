#include "system/Laptop.h"

#include "lease/LidHelperService.h"
#include "support/AskBus.h"
#include "support/Shell.h"
#include "support/Waiting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace wakeloft {

namespace {

constexpr double patienceMs = 15'000;

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

int suspends() {
    std::istringstream log(textOf(Laptop::file("service-manager.log")));
    int count = 0;
    for (std::string line; std::getline(log, line);)
        count += line.starts_with("StartUnit suspend.target");
    return count;
}

} // namespace

void Laptop::reconnect() {
    bus_ = std::move(openSystemBus(loop_->event()).value());
}

std::string Laptop::file(const std::string& name) {
    return variable("WAKELOFT_RIG_DIR") + "/" + name;
}

void Laptop::order(const std::string& command) {
    // The login manager that it starts is not to hold the pipe open.
    outputOf(WAKELOFT_RIG "/" + command + " >/dev/null");
}

bool Laptop::isReal() {
    return variable("WAKELOFT_RIG_LOGIN_MANAGER") == "real";
}

void Laptop::openLid() {
    order("lid open");
    EXPECT_TRUE(comesTrue([this] {
        int isSleeping = 1;
        sd_bus_get_property_trivial(bus_.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                                    "org.freedesktop.login1.Manager", "PreparingForSleep", nullptr, 'b',
                                    &isSleeping);
        return isSleeping == 0;
    }));
}

std::optional<double> Laptop::sleepsAfter(const std::function<void()>& event, double timeoutMs) {
    const int before = suspends();
    const auto start = std::chrono::steady_clock::now();
    event();
    const std::chrono::duration<double, std::milli> ofEvent = std::chrono::steady_clock::now() - start;
    const auto taken = comesTrue([before] { return suspends() > before; }, timeoutMs - ofEvent.count(),
                                 std::chrono::milliseconds(1));
    return taken ? std::optional(ofEvent.count() + *taken) : std::nullopt;
}

int Laptop::inhibitors(const std::string& what) {
    const auto all = listedInhibitors(bus_.get());
    const auto isMeant = [&](const ListedInhibitor& each) {
        return each.who == "Wakeloft" && (what.empty() || (each.what == what && each.mode == "block"));
    };
    return all ? static_cast<int>(std::ranges::count_if(*all, isMeant)) : -1;
}

std::optional<double> Laptop::waitFor(const std::string& what, int count) {
    // The login manager looks after ended inhibitors only while nobody asks it anything.
    constexpr std::chrono::milliseconds pause(1);
    return comesTrue([&] { return inhibitors(what) == count; }, patienceMs, pause);
}

Laptop::Lasting Laptop::lasting(const char* what, const std::string& kind, int rounds,
                                const std::function<void()>& hold, const std::function<void()>& end) {
    std::vector<double> times;
    for (int round = 0; round < rounds && (round == 0 || !testing::Test::HasFailure()); ++round) {
        hold();
        EXPECT_TRUE(waitFor(kind, 1)) << "round " << round;
        end();
        const auto gone = waitFor(kind, 0);
        EXPECT_TRUE(gone) << "round " << round;
        times.push_back(gone.value_or(patienceMs));
    }
    std::ranges::sort(times);
    const Lasting lasting = {times[times.size() / 2], times.back()};
    std::printf("%s killed %zu times: released after %.2f ms (median), %.2f ms (worst)\n", what, times.size(),
                lasting.median, lasting.worst);
    return lasting;
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

void Laptop::waitForHelpersAnswers() {
    const auto answer = askBus(bus_.get(), LidHelperService::label, "/", "org.freedesktop.DBus.Peer", "Ping");
    EXPECT_TRUE(answer) << answer.error; // which it sends after the others
}

} // namespace wakeloft

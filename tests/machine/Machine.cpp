#include "machine/Machine.h"

#include "lease/LidHelperService.h"
#include "support/ListedInhibitors.h"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace wakeloft {

namespace {

constexpr const char* sleepStates = "/sys/power/state";
constexpr const char* awake = "freeze mem disk";

BusPointer connectToSystemBus() {
    requireMachine();
    sd_bus* bus = nullptr;
    EXPECT_GE(sd_bus_open_system(&bus), 0);
    return BusPointer(bus);
}

} // namespace

LeaseHolder::LeaseHolder() : bus_(connectToSystemBus()) {}

std::string LeaseHolder::renew(bool suspendIfClosed) {
    constexpr double seconds = 28;
    const double now =
        std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_call(bus_.get(), &message, LidHelperService::label,
                                   "/com/wakeloft/app/lidhelper", "com.wakeloft.app.LidLease", "RenewLease");
    const BusMessage call(message);
    sd_bus_message_append(message, "da{sv}", now + seconds, 1, "suspend_if_closed", "b",
                          suspendIfClosed ? 1 : 0);
    BusError error;
    sd_bus_message* reply = nullptr;
    if (sd_bus_call(bus_.get(), message, 0, error.get(), &reply) < 0)
        return error.get()->name;
    const BusMessage owned(reply);
    const char* reason = nullptr;
    return sd_bus_message_read(reply, "s", &reason) < 0 ? "no reason" : reason;
}

void LeaseHolder::revoke() {
    EXPECT_GE(sd_bus_call_method(bus_.get(), LidHelperService::label, "/com/wakeloft/app/lidhelper",
                                 "com.wakeloft.app.LidLease", "RevokeLease", nullptr, nullptr, nullptr),
              0);
}

OtherLock::OtherLock(std::string what, std::string who)
    : bus_(connectToSystemBus()),
      what_(std::move(what)),
      who_(std::move(who)),
      process_(std::make_unique<ChildProcess>(std::vector<std::string>{
          "systemd-inhibit", "--what=" + what_, "--who=" + who_, "--mode=block", "sleep", "600"})) {
    expectListed(1);
}

OtherLock::~OtherLock() {
    process_.reset();
    expectListed(0);
}

void OtherLock::expectListed(int count) const {
    EXPECT_TRUE(Machine::waitFor([&] { return listedInhibitors(bus_.get(), what_, who_) == count; }));
}

void Machine::SetUp() {
    if (const auto reason = machineAbsence())
        GTEST_SKIP() << *reason;
    bus_ = connectToSystemBus();
    outputOf(std::string("systemctl stop ") + unit + " && systemctl reset-failed");
    ASSERT_EQ(unitProperty("ActiveState"), "inactive");
    ASSERT_EQ(locks(), 0);
    wake();
    cursor_ = outputOf("journalctl --sync; journalctl --lines=0 --show-cursor | sed -n 's/^-- cursor: //p'");
}

void Machine::TearDown() {
    if (bus_ == nullptr)
        return;
    setLid(false);
    if (HasFailure())
        std::printf("%s\n",
                    outputOf("journalctl --output=short-monotonic --after-cursor='" + cursor_ + "'").c_str());
}

bool Machine::waitFor(const std::function<bool()>& condition, double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        pass(0.02);
    }
    return true;
}

void Machine::pass(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

std::string Machine::unitProperty(const std::string& name) {
    return outputOf("systemctl show --value --property=" + name + " " + unit);
}

int Machine::locks() {
    return listedInhibitors(bus_.get(), "sleep:handle-lid-switch", "Wakeloft");
}

void Machine::signalHelper(int number) {
    const auto process = std::atoi(unitProperty("MainPID").c_str());
    ASSERT_GT(process, 1);
    ASSERT_EQ(kill(process, number), 0);
}

std::string Machine::startLine() {
    return "helper starting: Wakeloft " WAKELOFT_VERSION " (" WAKELOFT_BUILD "), cdhash " +
           outputOf(std::string("sha256sum <") + program + " | cut -c1-64") + ", from " + program;
}

std::string Machine::journal() const {
    return outputOf("journalctl --sync; journalctl --after-cursor='" + cursor_ +
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
    requireMachine();
    EXPECT_TRUE(waitFor([] {
        return outputOf("busctl get-property org.freedesktop.login1 /org/freedesktop/login1 "
                        "org.freedesktop.login1.Manager PreparingForSleep") == "b false";
    }));
    std::ofstream(sleepStates) << awake << '\n';
}

} // namespace wakeloft

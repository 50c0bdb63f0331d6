#include "support/PrivateBus.h"

#include "support/Shell.h"
#include "support/Waiting.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>

namespace wakeloft {

PrivateBus::PrivateBus() {
    std::string folder = (std::filesystem::temp_directory_path() / "wakeloft-bus-XXXXXX").string();
    directory_ = mkdtemp(folder.data());
    address_ = "unix:path=" + folder + "/bus";
    std::ofstream(directory_ / "bus.conf")
        << "<busconfig><type>session</type><listen>" << address_
        << "</listen><auth>EXTERNAL</auth><servicedir>" << folder
        << "</servicedir><policy context=\"default\"><allow user=\"*\"/><allow send_destination=\"*\"/>"
           "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>\n";
    const std::string start = "cd \"$0\" && exec dbus-daemon --config-file=bus.conf --print-address --nofork "
                              "--nopidfile --nosyslog >address 2>log";
    daemon_ = std::make_unique<ChildProcess>(std::vector<std::string>{"/bin/sh", "-c", start, folder});
    const auto isThere = [this] { return !textOf(directory_ / "address").empty(); };
    EXPECT_TRUE(comesTrue(isThere, 10'000, std::chrono::milliseconds(1))) << textOf(directory_ / "log");
}

PrivateBus::~PrivateBus() {
    daemon_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

BusPointer PrivateBus::connect(sd_event* event) const {
    return connectToBus(address_, event);
}

BusPointer connectToBus(const std::string& address, sd_event* event) {
    sd_bus* opened = nullptr;
    sd_bus_new(&opened);
    BusPointer bus(opened);
    sd_bus_set_address(opened, address.c_str());
    sd_bus_set_bus_client(opened, 1);
    sd_bus_set_trusted(opened, 1); // as a session bus is, where no caller is checked
    int result = sd_bus_start(opened);
    if (result >= 0)
        result = sd_bus_attach_event(opened, event, SD_EVENT_PRIORITY_NORMAL);
    EXPECT_GE(result, 0) << "no connection to " << address << ": " << std::strerror(-result);
    return result >= 0 ? std::move(bus) : nullptr;
}

bool runUntil(sd_event* event, const std::function<bool()>& condition, int timeoutMs) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()).count();
        if (left <= 0)
            return false;
        const int result = sd_event_run(event, static_cast<std::uint64_t>(left));
        if (result < 0) {
            ADD_FAILURE() << "the event loop failed: " << std::strerror(-result);
            return false;
        }
    }
    return true;
}

} // namespace wakeloft

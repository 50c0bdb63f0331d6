#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace wakeloft {

namespace {

void writeConfiguration(const std::filesystem::path& directory, const std::filesystem::path& file) {
    std::ofstream(file)
        << "<busconfig><type>session</type><listen>unix:path=" << directory.string()
        << "/bus</listen><auth>EXTERNAL</auth><servicedir>" << directory.string()
        << "</servicedir><policy context=\"default\"><allow user=\"*\"/><allow send_destination=\"*\"/>"
           "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>\n";
}

/// Starts the daemon, which writes its address to `addressPipe` and messages to `log`. It ends with this
/// process at the latest.
pid_t startDaemon(const std::filesystem::path& configuration, int addressPipe,
                  const std::filesystem::path& log) {
    const std::string configurationOption = "--config-file=" + configuration.string();
    const std::string addressOption = "--print-address=" + std::to_string(addressPipe);
    const pid_t pid = fork();
    if (pid == 0) {
        setsid(); // as a service has, and with it its own share of the machine
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        fcntl(addressPipe, F_SETFD, 0);
        const int messages = open(log.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        if (messages >= 0)
            dup2(messages, STDERR_FILENO);
        execlp("dbus-daemon", "dbus-daemon", configurationOption.c_str(), addressOption.c_str(), "--nofork",
               "--nopidfile", "--nosyslog", nullptr);
        _exit(127);
    }
    return pid;
}

/// The first line, empty if the other end closes before it is whole.
std::string readLine(int descriptor) {
    std::string line;
    char character = 0;
    while (read(descriptor, &character, 1) == 1) {
        if (character == '\n')
            return line;
        line.push_back(character);
    }
    return {};
}

} // namespace

PrivateBus::PrivateBus() {
    std::string name = (std::filesystem::temp_directory_path() / "wakeloft-bus-XXXXXX").string();
    std::array<int, 2> addressPipe{};
    if (mkdtemp(name.data()) == nullptr || pipe2(addressPipe.data(), O_CLOEXEC) != 0) {
        ADD_FAILURE() << "no room for a private bus: " << std::strerror(errno);
        return;
    }
    directory_ = name;
    const std::filesystem::path configuration = directory_ / "bus.conf";
    writeConfiguration(directory_, configuration);
    const std::filesystem::path log = directory_ / "log";
    daemon_ = startDaemon(configuration, addressPipe[1], log);
    close(addressPipe[1]);
    address_ = readLine(addressPipe[0]);
    close(addressPipe[0]);
    if (address_.empty())
        ADD_FAILURE() << "dbus-daemon did not start: " << std::ifstream(log).rdbuf();
}

PrivateBus::~PrivateBus() {
    if (daemon_ > 0) {
        kill(daemon_, SIGTERM);
        waitpid(daemon_, nullptr, 0);
    }
    std::error_code ignored;
    if (!directory_.empty())
        std::filesystem::remove_all(directory_, ignored);
}

BusPointer PrivateBus::connect(sd_event* event) const {
    sd_bus* bus = nullptr;
    int result = sd_bus_new(&bus);
    BusPointer owned(bus);
    if (result >= 0)
        result = sd_bus_set_address(bus, address_.c_str());
    if (result >= 0)
        result = sd_bus_set_bus_client(bus, 1);
    if (result >= 0)
        result = sd_bus_set_trusted(bus, 1); // as a session bus is, where no caller is checked
    if (result >= 0)
        result = sd_bus_start(bus);
    if (result >= 0)
        result = sd_bus_attach_event(bus, event, SD_EVENT_PRIORITY_NORMAL);
    if (result >= 0)
        return owned;
    ADD_FAILURE() << "no connection to the private bus: " << std::strerror(-result);
    return nullptr;
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

#include "LidHelperProcess.h"

#include "LidLeaseBus.h"
#include "support/ListedInhibitors.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace wakeloft {

LidHelperProcess::LidHelperProcess() {
    setenv("RUNTIME_DIRECTORY", bus.directory().c_str(), 1); // as the service manager does
    startLoginManager();
}

LidHelperProcess::~LidHelperProcess() {
    if (HasFailure())
        std::cerr << log();
}

void LidHelperProcess::start(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> command{"sh", "-c", "exec \"$0\" \"$@\" 2>>\"$HELPER_LOG\"", program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    helper = std::make_unique<ChildProcess>(
        command, std::vector{"HELPER_LOG=" + (bus.directory() / "helper.log").string()});
    ASSERT_TRUE(waitFor([&] { return isOwned(helperName); })) << log();
}

int LidHelperProcess::end(int signal) {
    helper->signal(signal);
    return helper->wait(5000);
}

std::string LidHelperProcess::log() const {
    std::ifstream stream(bus.directory() / "helper.log");
    return {std::istreambuf_iterator<char>(stream), {}};
}

long LidHelperProcess::figure(const std::string& name, const char* file) const {
    std::ifstream lines("/proc/" + std::to_string(helper->pid()) + "/" + file);
    std::string line;
    while (std::getline(lines, line))
        if (line.starts_with(name + ":"))
            return std::atol(line.c_str() + name.size() + 1);
    ADD_FAILURE() << "no figure " << name;
    return -1;
}

int LidHelperProcess::locks(const std::string& who) {
    return listedInhibitors(observer.get(), "sleep:handle-lid-switch", who);
}

BusMessage LidHelperProcess::call(sd_bus* client, const char* method, const char* name) {
    sd_bus_message* message = nullptr;
    EXPECT_GE(sd_bus_message_new_method_call(client, &message, name, LidLeaseBus::path,
                                             LidLeaseBus::interface, method),
              0);
    return BusMessage(message);
}

BusMessage LidHelperProcess::renewal(sd_bus* client, double deadline, bool suspendIfClosed,
                                     const char* name) {
    auto message = call(client, "RenewLease", name);
    sd_bus_message_append(message.get(), "da{sv}", deadline, 1, LidLeaseBus::suspendIfClosed, "b",
                          suspendIfClosed ? 1 : 0);
    return message;
}

std::string LidHelperProcess::answer(sd_bus* client, sd_bus_message* message) {
    std::optional<std::string> text;
    const auto slot = callBusLater(client, message, [&](sd_bus_message* reply) {
        const char* reason = "";
        if (const auto* error = sd_bus_message_get_error(reply))
            text = error->name;
        else
            text = sd_bus_message_read(reply, "s", &reason) >= 0 ? reason : "";
    });
    EXPECT_TRUE(runUntil(event, [&] { return text.has_value(); }, 6000));
    return text.value_or("no answer");
}

std::string LidHelperProcess::renew(const BusPointer& client, double seconds, bool suspendIfClosed) {
    return answer(client.get(), renewal(client.get(), wallClock() + seconds, suspendIfClosed).get());
}

std::string LidHelperProcess::revoke(const BusPointer& client) {
    return answer(client.get(), call(client.get(), "RevokeLease").get());
}

double LidHelperProcess::wallClock() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

} // namespace wakeloft

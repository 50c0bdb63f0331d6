// usage: wakeloft-lease-client SECONDS
// Asks the lid helper for leases of that length, as the app does, until it is refused one (exit code 1) or
// gets a SIGTERM, which makes it give its lease back.
#include "Bus.h"
#include "LidLeaseBus.h"
#include "lease/LidHelperService.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>

using namespace wakeloft;

namespace {

/// What speaks against the lease, or nothing.
std::string refusal(sd_bus* bus, double seconds) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const double deadline = std::chrono::duration<double>(now).count() + seconds;
    BusError error;
    sd_bus_message* reply = nullptr;
    const int result =
        sd_bus_call_method(bus, LidHelperService::label, LidLeaseBus::path, LidLeaseBus::interface,
                           "RenewLease", error.get(), &reply, "da{sv}", deadline, 0);
    const BusMessage owned(reply);
    const char* reason = "";
    if (result < 0 || sd_bus_message_read(reply, "s", &reason) < 0)
        return busFailure("No answer", error.get(), result).description;
    return reason;
}

} // namespace

int main(int count, char** arguments) {
    const double seconds = count == 2 ? std::atof(arguments[1]) : 0;
    sigset_t termination;
    sigemptyset(&termination);
    sigaddset(&termination, SIGTERM);
    sigprocmask(SIG_BLOCK, &termination, nullptr);
    sd_bus* bus = nullptr;
    if (sd_bus_open_system(&bus) < 0)
        return EXIT_FAILURE;
    const BusPointer owned(bus);
    const auto interval = static_cast<long>(seconds / 3 * 1e9);
    const timespec pause = {interval / 1'000'000'000, interval % 1'000'000'000};
    do {
        if (const auto reason = refusal(bus, seconds); !reason.empty()) {
            std::fprintf(stderr, "wakeloft-lease-client: %s\n", reason.c_str());
            return EXIT_FAILURE;
        }
    } while (sigtimedwait(&termination, nullptr, &pause) < 0);
    return sd_bus_call_method(bus, LidHelperService::label, LidLeaseBus::path, LidLeaseBus::interface,
                              "RevokeLease", nullptr, nullptr, nullptr) < 0
               ? EXIT_FAILURE
               : EXIT_SUCCESS;
}

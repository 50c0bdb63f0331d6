#include "BusDeadline.h"

#include <cerrno>

namespace wakeloft {

BusDeadline::BusDeadline(Seconds seconds)
    : end_(Clock::now() +
           std::chrono::duration_cast<Clock::duration>(std::chrono::duration<Seconds>(seconds))) {}

std::expected<BusMessage, PlatformError> BusDeadline::call(sd_bus* bus, sd_bus_message* message,
                                                           std::string_view what) const {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end_ - Clock::now()).count();
    if (left <= 0)
        return std::unexpected(busFailure(what, -ETIMEDOUT));
    BusError error;
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call(bus, message, static_cast<std::uint64_t>(left), error.get(), &reply);
    if (result < 0)
        return std::unexpected(busFailure(what, error.get(), result));
    return BusMessage(reply);
}

} // namespace wakeloft

#pragma once

#include <systemd/sd-bus.h>

#include <cstddef>

namespace wakeloft {

/// What a renewal may say beside its deadline.
struct LeaseOptions {
    bool suspendIfClosed = false;

    /// Reads an a{sv} of at most `mostBytes`; names that are not known are passed over. A negative errno,
    /// with `error` set, for options that are too large or of a wrong type.
    static int read(sd_bus_message* message, std::size_t mostBytes, LeaseOptions& options,
                    sd_bus_error* error);
};

} // namespace wakeloft

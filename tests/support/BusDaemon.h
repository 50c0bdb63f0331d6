#pragma once

#include <systemd/sd-bus.h>

#include <gtest/gtest.h>

namespace wakeloft {

/// The process that serves this connection.
inline pid_t daemonOf(sd_bus* bus) {
    sd_bus_creds* credentials = nullptr;
    pid_t process = 0;
    EXPECT_GE(sd_bus_get_owner_creds(bus, SD_BUS_CREDS_PID, &credentials), 0);
    EXPECT_GE(sd_bus_creds_get_pid(credentials, &process), 0);
    sd_bus_creds_unref(credentials);
    return process;
}

} // namespace wakeloft

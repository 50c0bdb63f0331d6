#pragma once

#include "SdEventMainRunLoop.h"
#include "support/ChildProcess.h"
#include "support/ListedInhibitors.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace wakeloft {

/// A private bus that this process takes for the system's, and the embedded login manager on it.
struct PrivateSystem : testing::Test {
    PrivateSystem() { setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1); }

    void startLoginManager(const std::string& idleAction = "suspend") {
        loginManager = std::make_unique<ChildProcess>(std::vector<std::string>{
            WAKELOFT_RIG_LOGIN_MANAGER, "--idle-action=" + idleAction, "--idle-after=3600"});
        ASSERT_TRUE(waitFor([&] { return isOwned("org.freedesktop.login1"); }));
    }
    /// Looks again and again: what others do changes without a word to this loop.
    bool waitFor(const std::function<bool()>& condition) {
        constexpr int mostLooks = 500;
        for (int look = 0; look < mostLooks; ++look)
            if (runUntil(event, condition, 10))
                return true;
        return false;
    }
    void pass(int milliseconds) {
        runUntil(event, [] { return false; }, milliseconds);
    }
    bool isOwned(const char* name) { return sd_bus_get_name_creds(observer.get(), name, 0, nullptr) >= 0; }
    /// How many such locks there are under Wakeloft's name; -1 without a login manager.
    int locks(const char* what = "sleep:handle-lid-switch") {
        return listedInhibitors(observer.get(), what, "Wakeloft");
    }

    PrivateBus bus;
    std::unique_ptr<SdEventMainRunLoop> loop = std::move(SdEventMainRunLoop::create().value());
    sd_event* event = loop->event();
    BusPointer observer = bus.connect(event);
    std::unique_ptr<ChildProcess> loginManager;
};

} // namespace wakeloft

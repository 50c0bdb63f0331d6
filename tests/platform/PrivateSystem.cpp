#include "PrivateSystem.h"

#include "support/ListedInhibitors.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace wakeloft {

PrivateSystem::PrivateSystem() {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
}

void PrivateSystem::startLoginManager(const std::vector<std::string>& options) {
    std::vector<std::string> command{WAKELOFT_RIG_LOGIN_MANAGER};
    command.insert(command.end(), options.begin(), options.end());
    loginManager = std::make_unique<ChildProcess>(command);
    ASSERT_TRUE(waitFor([&] { return isOwned("org.freedesktop.login1"); }));
}

bool PrivateSystem::waitFor(const std::function<bool()>& condition, int mostLooks) {
    for (int look = 0; look < mostLooks; ++look)
        if (runUntil(event, condition, 10))
            return true;
    return false;
}

void PrivateSystem::pass(int milliseconds) {
    runUntil(event, [] { return false; }, milliseconds);
}

bool PrivateSystem::isOwned(const char* name) {
    return sd_bus_get_name_creds(observer.get(), name, 0, nullptr) >= 0;
}

std::unique_ptr<ChildProcess> PrivateSystem::otherLock(const std::string& what, const std::string& who,
                                                       const std::string& mode) {
    auto holder = std::make_unique<ChildProcess>(std::vector<std::string>{
        "systemd-inhibit", "--what=" + what, "--who=" + who, "--mode=" + mode, "sleep", "60"});
    EXPECT_TRUE(waitFor([&] { return listedInhibitors(observer.get(), what, who, mode) == 1; })) << what;
    return holder;
}

} // namespace wakeloft

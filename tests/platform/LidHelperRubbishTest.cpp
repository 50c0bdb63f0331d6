#include "LidHelperProcess.h"

#include <cmath>
#include <limits>

namespace wakeloft {
namespace {

constexpr const char* invalidArguments = "org.freedesktop.DBus.Error.InvalidArgs";

TEST_F(LidHelperRunning, RubbishIsRefusedAndChangesNothing) {
    const auto client = bus.connect(event);
    const auto send = [&](const BusMessage& message) { return answer(client.get(), message.get()); };
    for (const double deadline :
         {std::nan(""), std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()})
        EXPECT_EQ(send(renewal(client.get(), deadline)), "The lease deadline is not a number.");
    EXPECT_EQ(renew(client, -1e300), "");
    const auto noted = [&](const std::string& name, const std::string& text) {
        auto message = call(client.get(), "RenewLease");
        sd_bus_message_append(message.get(), "da{sv}", wallClock() + 20, 1, name.c_str(), "s", text.c_str());
        return send(message);
    };
    const long before = memory();
    std::string huge;
    huge.resize(10'000'000, 'x');
    EXPECT_EQ(noted("note", std::string(5000, 'x')), limitsExceeded);
    EXPECT_EQ(noted("note", huge), limitsExceeded);
    EXPECT_EQ(noted(huge, "x"), limitsExceeded);
    auto many = call(client.get(), "RenewLease");
    sd_bus_message_append(many.get(), "d", wallClock() + 20);
    sd_bus_message_open_container(many.get(), 'a', "{sv}");
    for (int option = 0; option < 1000; ++option)
        sd_bus_message_append(many.get(), "{sv}", "option", "(ayv)", 2, 1, 2, "t", std::uint64_t{7});
    sd_bus_message_close_container(many.get());
    EXPECT_EQ(send(many), limitsExceeded);
    EXPECT_EQ(noted("suspend_if_closed", "yes\nno \x1b[31m"), invalidArguments);
    auto wrongRenewal = call(client.get(), "RenewLease");
    sd_bus_message_append(wrongRenewal.get(), "s", huge.c_str());
    EXPECT_EQ(send(wrongRenewal), invalidArguments);
    auto wrongRevocation = call(client.get(), "RevokeLease");
    sd_bus_message_append(wrongRevocation.get(), "s", "\x1b[31m");
    EXPECT_EQ(send(wrongRevocation), invalidArguments);
    EXPECT_EQ(send(call(client.get(), "WriteSetting")), "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_EQ(locks(), 0);
    if (isMeasured) {
        EXPECT_LE(memory(), before + 1024);
    }
    EXPECT_EQ(noted("note", std::string(1000, 'x')), ""); // not known, and not too large
    EXPECT_EQ(locks(), 1);
    // The start line, and nothing of what they said.
    EXPECT_EQ(log().find('\n'), log().size() - 1) << log();
}

} // namespace
} // namespace wakeloft

#include "support/ListedInhibitors.h"

#include <algorithm>

namespace wakeloft {

std::expected<std::vector<ListedInhibitor>, int> listedInhibitors(sd_bus* bus) {
    BusError error;
    sd_bus_message* reply = nullptr;
    const int result =
        sd_bus_call_method(bus, "org.freedesktop.login1", "/org/freedesktop/login1",
                           "org.freedesktop.login1.Manager", "ListInhibitors", error.get(), &reply, nullptr);
    const BusMessage owned(reply);
    if (result < 0)
        return std::unexpected(result);
    return ListedInhibitor::readAll(reply);
}

int listedInhibitors(sd_bus* bus, const std::string& what, const std::string& who, const std::string& mode) {
    const auto all = listedInhibitors(bus);
    if (!all)
        return -1;
    return static_cast<int>(std::ranges::count_if(*all, [&](const ListedInhibitor& each) {
        return each.what == what && each.who == who && each.mode == mode;
    }));
}

} // namespace wakeloft

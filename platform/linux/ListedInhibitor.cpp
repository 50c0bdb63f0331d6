#include "ListedInhibitor.h"

namespace wakeloft {

std::expected<std::vector<ListedInhibitor>, int> ListedInhibitor::readAll(sd_bus_message* reply) {
    std::vector<ListedInhibitor> all;
    int result = sd_bus_message_enter_container(reply, 'a', "(ssssuu)");
    while (result > 0) {
        const char* what = nullptr;
        const char* who = nullptr;
        const char* why = nullptr;
        const char* mode = nullptr;
        std::uint32_t user = 0;
        std::uint32_t process = 0;
        result = sd_bus_message_read(reply, "(ssssuu)", &what, &who, &why, &mode, &user, &process);
        if (result > 0)
            all.push_back({what, who, why, mode, user, process});
    }
    if (result < 0)
        return std::unexpected(result);
    return all;
}

} // namespace wakeloft

#pragma once

#include "ListedInhibitor.h"
#include "support/AskBus.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// What the login manager on `bus` lists, or nothing where there is none.
inline std::optional<std::vector<ListedInhibitor>> listedInhibitors(sd_bus* bus) {
    const auto answer = askBus(bus, "org.freedesktop.login1", "/org/freedesktop/login1",
                               "org.freedesktop.login1.Manager", "ListInhibitors");
    if (!answer)
        return std::nullopt;
    auto all = ListedInhibitor::readAll(answer.reply.get());
    return all ? std::optional(std::move(*all)) : std::nullopt;
}

/// How many of these on exactly `what` are `who`'s; -1 where there is no login manager.
inline int listedInhibitors(sd_bus* bus, const std::string& what, const std::string& who,
                            const std::string& mode = "block") {
    const auto all = listedInhibitors(bus);
    const auto isMeant = [&](const ListedInhibitor& each) {
        return each.what == what && each.who == who && each.mode == mode;
    };
    return all ? static_cast<int>(std::ranges::count_if(*all, isMeant)) : -1;
}

} // namespace wakeloft

#pragma once

#include "Bus.h"
#include "ListedInhibitor.h"

#include <string>

namespace wakeloft {

/// What the login manager on `bus` lists, or a negative errno.
std::expected<std::vector<ListedInhibitor>, int> listedInhibitors(sd_bus* bus);
/// How many of these on exactly `what` are `who`'s; -1 where there is no login manager.
int listedInhibitors(sd_bus* bus, const std::string& what, const std::string& who,
                     const std::string& mode = "block");

} // namespace wakeloft

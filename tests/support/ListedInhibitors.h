#pragma once

#include "Bus.h"

#include <string>

namespace wakeloft {

/// How many block inhibitors on exactly `what` the login manager on `bus` lists for `who`; -1 where there is
/// none.
int listedInhibitors(sd_bus* bus, const std::string& what, const std::string& who);

} // namespace wakeloft

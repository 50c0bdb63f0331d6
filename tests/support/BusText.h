#pragma once

#include <systemd/sd-bus.h>

#include <string>

namespace wakeloft {

/// The body of a message as a line of text, from its start: strings quoted, containers in the brackets of
/// their kind, variants as what they hold. Such as `1 (0 [{"label" "Quit"}] [])`.
std::string bodyText(sd_bus_message* message);

} // namespace wakeloft

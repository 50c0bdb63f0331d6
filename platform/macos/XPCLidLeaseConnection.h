#pragma once

#include "lid/LidLeaseClientConnection.h"

namespace wakeloft {

/// Connections to the helper's mach service, to which the system lets only code answer that meets the
/// requirement.
LidLeaseConnectionFactory xpcLidLeaseConnections();

} // namespace wakeloft

#pragma once

#include "Table.h"

#include <functional>
#include <string>

namespace wakeloft {

/// The programs that are measured.
struct MeasuredPrograms {
    std::string wakeloft;
    std::string bareTray;
    std::string lidHelper;
    std::string bareService;
};

/// Measures both, and by turns first, so that what disturbs the machine disturbs both.
void byTurns(int round, const std::function<void()>& figure, const std::function<void()>& floor);

/// From the call that a click makes to the inhibitor held, over the bus call that this needs at least. In
/// this process.
void measureClickToHold(Table& table);
/// From a session-bus action to the login manager's word that idle sleep is blocked, with the running
/// program.
void measureActionToHold(Table& table, const MeasuredPrograms& programs);
/// Context switches of all threads in a minute at rest.
void measureWakeUps(Table& table, const MeasuredPrograms& programs);
/// Memory of the program at rest, its panel never opened.
void measureMemory(Table& table, const MeasuredPrograms& programs);
/// Memory of the helper at rest, after its first lease.
void measureHelperMemory(Table& table, const MeasuredPrograms& programs);
/// A lease that is held and renewed, over a ping to the same helper, with 1, 8 and 64 clients.
void measureRenewals(Table& table, const MeasuredPrograms& programs);
/// From the press on the tray item to the panel drawn, over a bare widget of its size.
void measurePanelOpening(Table& table, const MeasuredPrograms& programs);
/// From the start to the moment a tray has read the icon.
void measureStartToTray(Table& table, const MeasuredPrograms& programs);
/// From the helper's start to the ownership of its name on the bus.
void measureStartToName(Table& table, const MeasuredPrograms& programs);

} // namespace wakeloft

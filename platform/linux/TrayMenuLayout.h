#pragma once

#include "StatusNotifierItem.h"

#include <string>
#include <vector>

namespace wakeloft {

/// The id of the menu itself, above its lines.
constexpr std::int32_t trayMenuRoot = 0;

/// The properties that a host asked for; none: all of them.
using TrayMenuPropertyNames = std::vector<std::string>;

/// The line with `id`, null if there is none (as for the root).
const TrayMenuLine* findTrayMenuLine(const std::vector<TrayMenuLine>& menu, std::int32_t id);

/// Are both menus the same lines in the same order, so that only properties of theirs can differ?
bool hasSameTrayMenuLines(const std::vector<TrayMenuLine>& left, const std::vector<TrayMenuLine>& right);

/// The writers below append com.canonical.dbusmenu's forms to `message`; negative errno on failure. A null
/// line stands for the root.

/// `(ia{sv}av)`: `line` with its properties, and the lines below it if `withChildren`.
int appendTrayMenuLayout(sd_bus_message* message, const std::vector<TrayMenuLine>& menu,
                         const TrayMenuLine* line, bool withChildren, const TrayMenuPropertyNames& names);
/// `(ia{sv})`: what differs from the properties' default values.
int appendTrayMenuProperties(sd_bus_message* message, const TrayMenuLine* line,
                             const TrayMenuPropertyNames& names);
/// `(ia{sv})`: the properties in which `line` differs from `previous`, defaults too.
int appendTrayMenuChanges(sd_bus_message* message, const TrayMenuLine& line, const TrayMenuLine& previous);
/// `v`: one property, its default value too. -ENOENT if there is none of this name.
int appendTrayMenuProperty(sd_bus_message* message, const TrayMenuLine* line, const std::string& name);

} // namespace wakeloft

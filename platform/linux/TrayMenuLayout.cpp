#include "TrayMenuLayout.h"

#include <algorithm>
#include <cerrno>

namespace wakeloft {

namespace {

/// One underscore would mark the letter after it as the access key.
std::string escapedLabel(const std::string& label) {
    std::string escaped;
    for (const char character : label) {
        if (character == '_')
            escaped.push_back('_');
        escaped.push_back(character);
    }
    return escaped;
}

bool isAskedFor(const char* name, const TrayMenuPropertyNames& names) {
    return names.empty() || std::ranges::find(names, name) != names.end();
}

std::int32_t idOf(const TrayMenuLine* line) {
    return line == nullptr ? trayMenuRoot : line->id;
}

bool isToggle(const TrayMenuLine* line) {
    return line != nullptr && line->isChecked.has_value();
}

/// -1: neither on nor off.
std::int32_t toggleState(const TrayMenuLine* line) {
    return isToggle(line) ? std::int32_t{*line->isChecked} : -1;
}

/// Carries on with the message unless it has failed already.
int then(int result, int next(sd_bus_message*), sd_bus_message* message) {
    return result < 0 ? result : next(message);
}

int openProperties(sd_bus_message* message, std::int32_t id) {
    int result = sd_bus_message_append(message, "i", id);
    if (result >= 0)
        result = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "{sv}");
    return result;
}

int appendFilteredProperties(sd_bus_message* message, const TrayMenuLine* line,
                             const TrayMenuPropertyNames& names) {
    int result = openProperties(message, idOf(line));
    const auto append = [&](const char* name, const char* type, auto value) {
        if (result >= 0 && isAskedFor(name, names))
            result = sd_bus_message_append(message, "{sv}", name, type, value);
    };
    if (line == nullptr) {
        append("children-display", "s", "submenu");
    } else if (line->isSeparator) {
        append("type", "s", "separator");
    } else {
        append("label", "s", escapedLabel(line->label).c_str());
        if (!line->isEnabled)
            append("enabled", "b", 0);
        if (line->isChecked) {
            append("toggle-type", "s", "checkmark");
            append("toggle-state", "i", toggleState(line));
        }
    }
    return then(result, sd_bus_message_close_container, message);
}

int appendChildren(sd_bus_message* message, const std::vector<TrayMenuLine>& menu,
                   const TrayMenuPropertyNames& names) {
    for (const TrayMenuLine& line : menu) {
        int result = sd_bus_message_open_container(message, SD_BUS_TYPE_VARIANT, "(ia{sv}av)");
        if (result >= 0)
            result = appendTrayMenuLayout(message, {}, &line, false, names);
        result = then(result, sd_bus_message_close_container, message);
        if (result < 0)
            return result;
    }
    return 0;
}

} // namespace

const TrayMenuLine* findTrayMenuLine(const std::vector<TrayMenuLine>& menu, std::int32_t id) {
    const auto line = std::ranges::find(menu, id, &TrayMenuLine::id);
    return line == menu.end() ? nullptr : &*line;
}

bool hasSameTrayMenuLines(const std::vector<TrayMenuLine>& left, const std::vector<TrayMenuLine>& right) {
    // A line that becomes a separator or a check box is another widget to a host, not the same with another
    // property.
    return std::ranges::equal(left, right, [](const TrayMenuLine& one, const TrayMenuLine& other) {
        return one.id == other.id && one.isSeparator == other.isSeparator &&
               isToggle(&one) == isToggle(&other);
    });
}

int appendTrayMenuLayout(sd_bus_message* message, const std::vector<TrayMenuLine>& menu,
                         const TrayMenuLine* line, bool withChildren, const TrayMenuPropertyNames& names) {
    int result = sd_bus_message_open_container(message, SD_BUS_TYPE_STRUCT, "ia{sv}av");
    if (result >= 0)
        result = appendFilteredProperties(message, line, names);
    if (result >= 0)
        result = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "v");
    if (result >= 0 && line == nullptr && withChildren)
        result = appendChildren(message, menu, names);
    result = then(result, sd_bus_message_close_container, message);
    return then(result, sd_bus_message_close_container, message);
}

int appendTrayMenuProperties(sd_bus_message* message, const TrayMenuLine* line,
                             const TrayMenuPropertyNames& names) {
    int result = sd_bus_message_open_container(message, SD_BUS_TYPE_STRUCT, "ia{sv}");
    if (result >= 0)
        result = appendFilteredProperties(message, line, names);
    return then(result, sd_bus_message_close_container, message);
}

int appendTrayMenuChanges(sd_bus_message* message, const TrayMenuLine& line, const TrayMenuLine& previous) {
    int result = sd_bus_message_open_container(message, SD_BUS_TYPE_STRUCT, "ia{sv}");
    if (result >= 0)
        result = openProperties(message, line.id);
    if (result >= 0 && line.label != previous.label)
        result = sd_bus_message_append(message, "{sv}", "label", "s", escapedLabel(line.label).c_str());
    if (result >= 0 && line.isEnabled != previous.isEnabled)
        result = sd_bus_message_append(message, "{sv}", "enabled", "b", line.isEnabled ? 1 : 0);
    if (result >= 0 && line.isChecked != previous.isChecked)
        result = sd_bus_message_append(message, "{sv}", "toggle-state", "i", toggleState(&line));
    result = then(result, sd_bus_message_close_container, message);
    return then(result, sd_bus_message_close_container, message);
}

int appendTrayMenuProperty(sd_bus_message* message, const TrayMenuLine* line, const std::string& name) {
    if (name == "label")
        return sd_bus_message_append(message, "v", "s",
                                     line == nullptr ? "" : escapedLabel(line->label).c_str());
    if (name == "type")
        return sd_bus_message_append(message, "v", "s",
                                     line != nullptr && line->isSeparator ? "separator" : "standard");
    if (name == "enabled")
        return sd_bus_message_append(message, "v", "b", line == nullptr || line->isEnabled ? 1 : 0);
    if (name == "toggle-type")
        return sd_bus_message_append(message, "v", "s", isToggle(line) ? "checkmark" : "");
    if (name == "toggle-state")
        return sd_bus_message_append(message, "v", "i", toggleState(line));
    if (name == "visible")
        return sd_bus_message_append(message, "v", "b", 1);
    if (name == "children-display")
        return sd_bus_message_append(message, "v", "s", line == nullptr ? "submenu" : "");
    return -ENOENT;
}

} // namespace wakeloft

#include "TrayMenu.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace wakeloft {

namespace {

constexpr auto menuInterface = "com.canonical.dbusmenu";
constexpr std::uint32_t protocolVersion = 3;

std::expected<std::vector<std::int32_t>, int> readIds(sd_bus_message* message) {
    const void* data = nullptr;
    std::size_t size = 0;
    const int result = sd_bus_message_read_array(message, 'i', &data, &size);
    if (result < 0)
        return std::unexpected(result);
    const auto* first = static_cast<const std::int32_t*>(data);
    return std::vector<std::int32_t>(first, first + size / sizeof(std::int32_t));
}

std::expected<TrayMenuPropertyNames, int> readNames(sd_bus_message* message) {
    TrayMenuPropertyNames names;
    int result = sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "s");
    const char* name = nullptr;
    while (result >= 0 && (result = sd_bus_message_read(message, "s", &name)) > 0)
        names.emplace_back(name);
    if (result >= 0)
        result = sd_bus_message_exit_container(message);
    if (result < 0)
        return std::unexpected(result);
    return names;
}

int appendIds(sd_bus_message* message, const std::vector<std::int32_t>& ids) {
    return sd_bus_message_append_array(message, 'i', ids.data(), ids.size() * sizeof(std::int32_t));
}

int unknownId(sd_bus_error* error, std::int32_t id) {
    return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "The menu has no line with the id %d.", id);
}

int noneKnown(sd_bus_error* error) {
    return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "The menu has a line with none of the ids.");
}

/// An answer to `call` that `fill` writes; `fill` returns a negative errno on failure.
template <class Fill>
int reply(sd_bus_message* call, Fill fill) {
    sd_bus_message* message = nullptr;
    int result = sd_bus_message_new_method_return(call, &message);
    const BusMessage owned(message);
    if (result >= 0)
        result = fill(message);
    return result < 0 ? result : sd_bus_send(nullptr, message, nullptr);
}

} // namespace

/// The handlers of the object's methods and properties; `userdata` is the menu.
struct TrayMenu::Table {
    static const sd_bus_vtable vtable[];

    static TrayMenu& self(void* userdata) { return *static_cast<TrayMenu*>(userdata); }

    static int getLayout(sd_bus_message* call, void* userdata, sd_bus_error* error) {
        const TrayMenu& menu = self(userdata);
        std::int32_t parent = 0;
        std::int32_t depth = 0;
        const int result = sd_bus_message_read(call, "ii", &parent, &depth);
        if (result < 0)
            return result;
        const auto names = readNames(call);
        if (!names)
            return names.error();
        if (!menu.has(parent))
            return unknownId(error, parent);
        return reply(call, [&](sd_bus_message* message) {
            const int appended = sd_bus_message_append(message, "u", menu.revision_);
            return appended < 0
                       ? appended
                       : appendTrayMenuLayout(message, menu.lines_, findTrayMenuLine(menu.lines_, parent),
                                              depth != 0, *names);
        });
    }

    static int getGroupProperties(sd_bus_message* call, void* userdata, sd_bus_error* error) {
        const TrayMenu& menu = self(userdata);
        auto ids = readIds(call);
        if (!ids)
            return ids.error();
        const auto names = readNames(call);
        if (!names)
            return names.error();
        if (ids->empty()) {
            ids->push_back(trayMenuRoot);
            for (const TrayMenuLine& line : menu.lines_)
                ids->push_back(line.id);
        }
        // A host may ask for lines that have just gone: those are left out.
        std::erase_if(*ids, [&](std::int32_t id) { return !menu.has(id); });
        if (ids->empty())
            return noneKnown(error);
        return reply(call, [&](sd_bus_message* message) {
            int appended = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "(ia{sv})");
            for (const std::int32_t id : *ids) {
                if (appended >= 0)
                    appended = appendTrayMenuProperties(message, findTrayMenuLine(menu.lines_, id), *names);
            }
            return appended < 0 ? appended : sd_bus_message_close_container(message);
        });
    }

    static int getProperty(sd_bus_message* call, void* userdata, sd_bus_error* error) {
        const TrayMenu& menu = self(userdata);
        std::int32_t id = 0;
        const char* name = nullptr;
        const int result = sd_bus_message_read(call, "is", &id, &name);
        if (result < 0)
            return result;
        if (!menu.has(id))
            return unknownId(error, id);
        const int replied = reply(call, [&](sd_bus_message* message) {
            return appendTrayMenuProperty(message, findTrayMenuLine(menu.lines_, id), name);
        });
        if (replied == -ENOENT)
            return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "Menu lines have no property %s.",
                                     name);
        return replied;
    }

    static int event(sd_bus_message* call, void* userdata, sd_bus_error* error) {
        TrayMenu& menu = self(userdata);
        std::int32_t id = 0;
        const char* name = nullptr;
        const int result = sd_bus_message_read(call, "is", &id, &name);
        if (result < 0)
            return result;
        if (!menu.has(id))
            return unknownId(error, id);
        menu.receive(id, name);
        return sd_bus_reply_method_return(call, nullptr);
    }

    static int eventGroup(sd_bus_message* call, void* userdata, sd_bus_error* error) {
        TrayMenu& menu = self(userdata);
        std::vector<std::int32_t> unknownIds;
        bool isAnyKnown = false;
        int result = sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, "(isvu)");
        while (result >= 0 &&
               (result = sd_bus_message_enter_container(call, SD_BUS_TYPE_STRUCT, "isvu")) > 0) {
            std::int32_t id = 0;
            const char* name = nullptr;
            result = sd_bus_message_read(call, "is", &id, &name);
            if (result < 0)
                return result;
            if (menu.has(id)) {
                isAnyKnown = true;
                menu.receive(id, name);
            } else {
                unknownIds.push_back(id);
            }
            result = sd_bus_message_skip(call, "vu");
            if (result >= 0)
                result = sd_bus_message_exit_container(call);
        }
        if (result < 0)
            return result;
        if (!isAnyKnown && !unknownIds.empty())
            return noneKnown(error);
        return reply(call, [&](sd_bus_message* message) { return appendIds(message, unknownIds); });
    }

    // The lines are always up to date, so nothing has to be read again before they are shown.
    static int aboutToShow(sd_bus_message* call, void* userdata, sd_bus_error* error) {
        std::int32_t id = 0;
        const int result = sd_bus_message_read(call, "i", &id);
        if (result < 0)
            return result;
        if (!self(userdata).has(id))
            return unknownId(error, id);
        return sd_bus_reply_method_return(call, "b", 0);
    }

    static int aboutToShowGroup(sd_bus_message* call, void* userdata, sd_bus_error* error) {
        const TrayMenu& menu = self(userdata);
        auto ids = readIds(call);
        if (!ids)
            return ids.error();
        const bool isAnyAsked = !ids->empty();
        const auto known = std::erase_if(*ids, [&](std::int32_t id) { return menu.has(id); });
        if (isAnyAsked && known == 0)
            return noneKnown(error);
        return reply(call, [&](sd_bus_message* message) {
            const int appended = appendIds(message, {});
            return appended < 0 ? appended : appendIds(message, *ids);
        });
    }

    static int version(sd_bus*, const char*, const char*, const char*, sd_bus_message* answer, void*,
                       sd_bus_error*) {
        return sd_bus_message_append(answer, "u", protocolVersion);
    }

    static int textDirection(sd_bus*, const char*, const char*, const char*, sd_bus_message* answer,
                             void* userdata, sd_bus_error*) {
        return sd_bus_message_append(answer, "s", self(userdata).isRightToLeft_ ? "rtl" : "ltr");
    }

    static int status(sd_bus*, const char*, const char*, const char*, sd_bus_message* answer, void*,
                      sd_bus_error*) {
        return sd_bus_message_append(answer, "s", "normal");
    }

    static int iconThemePath(sd_bus*, const char*, const char*, const char*, sd_bus_message* answer, void*,
                             sd_bus_error*) {
        return sd_bus_message_append(answer, "as", 0);
    }
};

const sd_bus_vtable TrayMenu::Table::vtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_NAMES("GetLayout", "iias",
                             SD_BUS_PARAM(parentId) SD_BUS_PARAM(recursionDepth) SD_BUS_PARAM(propertyNames),
                             "u(ia{sv}av)", SD_BUS_PARAM(revision) SD_BUS_PARAM(layout), getLayout, 0),
    SD_BUS_METHOD_WITH_NAMES("GetGroupProperties", "aias", SD_BUS_PARAM(ids) SD_BUS_PARAM(propertyNames),
                             "a(ia{sv})", SD_BUS_PARAM(properties), getGroupProperties, 0),
    SD_BUS_METHOD_WITH_NAMES("GetProperty", "is", SD_BUS_PARAM(id) SD_BUS_PARAM(name), "v",
                             SD_BUS_PARAM(value), getProperty, 0),
    SD_BUS_METHOD_WITH_NAMES(
        "Event", "isvu", SD_BUS_PARAM(id) SD_BUS_PARAM(eventId) SD_BUS_PARAM(data) SD_BUS_PARAM(timestamp),
        "", "", event, 0),
    SD_BUS_METHOD_WITH_NAMES("EventGroup", "a(isvu)", SD_BUS_PARAM(events), "ai", SD_BUS_PARAM(idErrors),
                             eventGroup, 0),
    SD_BUS_METHOD_WITH_NAMES("AboutToShow", "i", SD_BUS_PARAM(id), "b", SD_BUS_PARAM(needUpdate), aboutToShow,
                             0),
    SD_BUS_METHOD_WITH_NAMES("AboutToShowGroup", "ai", SD_BUS_PARAM(ids), "aiai",
                             SD_BUS_PARAM(updatesNeeded) SD_BUS_PARAM(idErrors), aboutToShowGroup, 0),
    SD_BUS_PROPERTY("Version", "u", version, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("TextDirection", "s", textDirection, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
    SD_BUS_PROPERTY("Status", "s", status, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconThemePath", "as", iconThemePath, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_SIGNAL_WITH_NAMES("ItemsPropertiesUpdated", "a(ia{sv})a(ias)",
                             SD_BUS_PARAM(updatedProps) SD_BUS_PARAM(removedProps), 0),
    SD_BUS_SIGNAL_WITH_NAMES("LayoutUpdated", "ui", SD_BUS_PARAM(revision) SD_BUS_PARAM(parent), 0),
    SD_BUS_VTABLE_END,
};

std::expected<std::unique_ptr<TrayMenu>, PlatformError> TrayMenu::create(sd_bus* bus, const char* objectPath,
                                                                         std::vector<TrayMenuLine> lines,
                                                                         bool isRightToLeft, Events events) {
    std::unique_ptr<TrayMenu> menu(
        new TrayMenu(bus, objectPath, std::move(lines), isRightToLeft, std::move(events)));
    sd_bus_slot* object = nullptr;
    const int result =
        sd_bus_add_object_vtable(bus, &object, objectPath, menuInterface, Table::vtable, menu.get());
    menu->object_.reset(object);
    if (result < 0)
        return std::unexpected(busFailure("The tray menu cannot be offered", result));
    return menu;
}

TrayMenu::TrayMenu(sd_bus* bus, const char* objectPath, std::vector<TrayMenuLine> lines, bool isRightToLeft,
                   Events events)
    : bus_(bus),
      objectPath_(objectPath),
      lines_(std::move(lines)),
      isRightToLeft_(isRightToLeft),
      events_(std::move(events)) {}

void TrayMenu::show(std::vector<TrayMenuLine> lines, bool isRightToLeft) {
    const std::vector<TrayMenuLine> previous = std::exchange(lines_, std::move(lines));
    const bool wasRightToLeft = std::exchange(isRightToLeft_, isRightToLeft);
    int result = 0;
    if (!hasSameTrayMenuLines(lines_, previous))
        result = sd_bus_emit_signal(bus_, objectPath_, menuInterface, "LayoutUpdated", "ui", ++revision_,
                                    trayMenuRoot);
    else if (lines_ != previous)
        result = emitChanges(previous);
    if (result >= 0 && isRightToLeft_ != wasRightToLeft)
        result = sd_bus_emit_properties_changed(bus_, objectPath_, menuInterface, "TextDirection", nullptr);
    if (result < 0)
        events_.failed(busFailure("The tray cannot be told of a change of the menu", result));
}

int TrayMenu::emitChanges(const std::vector<TrayMenuLine>& previous) {
    sd_bus_message* signal = nullptr;
    int result =
        sd_bus_message_new_signal(bus_, &signal, objectPath_, menuInterface, "ItemsPropertiesUpdated");
    const BusMessage owned(signal);
    if (result >= 0)
        result = sd_bus_message_open_container(signal, SD_BUS_TYPE_ARRAY, "(ia{sv})");
    for (std::size_t index = 0; index < lines_.size() && result >= 0; ++index) {
        if (lines_[index] != previous[index])
            result = appendTrayMenuChanges(signal, lines_[index], previous[index]);
    }
    if (result >= 0)
        result = sd_bus_message_close_container(signal);
    if (result >= 0)
        result = sd_bus_message_append(signal, "a(ias)", 0);
    return result < 0 ? result : sd_bus_send(bus_, signal, nullptr);
}

bool TrayMenu::canChoose(std::int32_t id) const {
    const TrayMenuLine* line = findTrayMenuLine(lines_, id);
    return line != nullptr && !line->isSeparator && line->isEnabled;
}

bool TrayMenu::has(std::int32_t id) const {
    return id == trayMenuRoot || findTrayMenuLine(lines_, id) != nullptr;
}

void TrayMenu::receive(std::int32_t id, std::string_view event) {
    // Hosts also tell "opened", "closed" and "hovered"; nothing follows from those.
    if (event == "clicked" && canChoose(id))
        events_.chosen(id);
}

} // namespace wakeloft

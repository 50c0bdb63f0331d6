#include "XdgAutostartLoginItem.h"

#include "AtomicFile.h"
#include "Bus.h"
#include "DesktopEntry.h"
#include "ProgramLocation.h"
#include "XdgFolders.h"

#include <algorithm>
#include <utility>

namespace wakeloft {

namespace fs = std::filesystem;

namespace {

constexpr const char* gnomeSwitch = "X-GNOME-Autostart-enabled";

bool isOn(const DesktopEntry& entry) {
    return entry.value("Exec") && !entry.isTrue("Hidden") && !entry.isFalse(gnomeSwitch);
}

/// Also with arguments, or behind a program such as env.
bool starts(const DesktopEntry& entry, const fs::path& program) {
    const auto exec = entry.value("Exec");
    const auto word = DesktopEntry::execWord(program);
    return exec && word && (" " + *exec + " ").contains(" " + *word + " ");
}

/// The entry in the file; nothing where there is no file. What a desktop would not take for an entry is one
/// with nothing in it.
std::expected<std::optional<DesktopEntry>, PlatformError> readEntry(const fs::path& path) {
    const auto text = readWholeFile(path);
    if (!text)
        return std::unexpected(text.error());
    return *text ? std::optional(DesktopEntry::parse(**text).value_or(DesktopEntry())) : std::nullopt;
}

std::string obstacleHere() {
    switch (currentSandbox()) {
    case Sandbox::none:
        return programPath().empty()
                   ? "The system doesn't say where Wakeloft is, so it cannot open it at login."
                   : "";
    case Sandbox::flatpak:
        return "Wakeloft runs inside Flatpak, which hides the list of what opens at login. Add Wakeloft in "
               "your "
               "desktop's settings for startup applications.";
    case Sandbox::snap:
        return "Wakeloft runs as a snap, which hides the list of what opens at login. Add Wakeloft in your "
               "desktop's settings for startup applications.";
    }
    return "";
}

} // namespace

XdgAutostartLoginItem::Places XdgAutostartLoginItem::placesFor(const std::string& identifier) {
    const auto file = fs::path("autostart") / (identifier + ".desktop");
    Places places{{}, {}, programPath(), installationFolders(), obstacleHere()};
    for (const auto& folder : systemConfigFolders())
        places.shared.push_back(folder / file);
    if (const auto folder = configFolder())
        places.entry = *folder / file;
    else
        places.obstacle = folder.error().description;
    return places;
}

XdgAutostartLoginItem::XdgAutostartLoginItem(Places places) : places_(std::move(places)) {}

LoginItemState XdgAutostartLoginItem::state() const {
    if (!places_.obstacle.empty())
        return LoginItemState::disabled;
    const auto own = readEntry(places_.entry);
    const auto entry = own && !*own ? sharedEntry() : own.value_or(std::nullopt);
    return entry && isOn(*entry) ? LoginItemState::enabled : LoginItemState::disabled;
}

bool XdgAutostartLoginItem::isAtStableLocation() const {
    return std::ranges::any_of(places_.folders,
                               [&](const fs::path& folder) { return isBelow(places_.program, folder); });
}

std::expected<void, Error> XdgAutostartLoginItem::registerItem() {
    if (!places_.obstacle.empty())
        return std::unexpected(PlatformError{"autostart", 0, places_.obstacle});
    const auto own = readEntry(places_.entry);
    if (!own)
        return std::unexpected(own.error());
    const auto present = *own ? *own : sharedEntry();
    if (present && isOn(*present) && starts(*present, places_.program) && state() == LoginItemState::enabled)
        return {};
    const auto exec = DesktopEntry::execWord(places_.program);
    if (!exec)
        return std::unexpected(
            PlatformError{"autostart", 0,
                          "Desktops cannot open Wakeloft at login from a folder with such a "
                          "name: " +
                              places_.program.string()});
    DesktopEntry entry = present.value_or(DesktopEntry());
    if (!entry.value("Type"))
        entry.set("Type", "Application");
    if (!entry.value("Name"))
        entry.set("Name", "Wakeloft");
    if (!entry.value("Icon"))
        entry.set("Icon", places_.entry.stem().string());
    if (!starts(entry, places_.program))
        entry.set("Exec", *exec);
    entry.set(gnomeSwitch, "true");
    for (const char* key : {"Hidden", "TryExec"}) // either may keep it from being started
        entry.remove(key);
    return replaceEntry(entry);
}

std::expected<void, Error> XdgAutostartLoginItem::unregisterItem() {
    if (!places_.obstacle.empty())
        return std::unexpected(PlatformError{"autostart", 0, places_.obstacle});
    if (auto shared = sharedEntry(); shared && isOn(*shared)) {
        shared->set("Hidden", "true");
        return replaceEntry(*shared);
    }
    std::error_code error;
    fs::remove(places_.entry, error);
    if (error)
        return std::unexpected(busFailure("Cannot remove " + places_.entry.string(), -error.value()));
    return {};
}

std::optional<DesktopEntry> XdgAutostartLoginItem::sharedEntry() const {
    for (const auto& path : places_.shared)
        if (const auto entry = readEntry(path); entry && *entry)
            return *entry;
    return std::nullopt;
}

std::expected<void, Error> XdgAutostartLoginItem::replaceEntry(const DesktopEntry& entry) const {
    // Not through a link: it may lead to the entry that shows the program in the menu.
    auto replaced = replaceFile(places_.entry, entry.text(), AtLink::replaceIt);
    if (!replaced)
        return std::unexpected(replaced.error());
    return {};
}

} // namespace wakeloft

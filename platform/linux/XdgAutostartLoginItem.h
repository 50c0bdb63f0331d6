#pragma once

#include "preferences/LoginItem.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

class DesktopEntry;

/// Opens the app at login by an entry in the user's autostart folder, which every desktop reads. An entry
/// that the user or a settings program has edited keeps what it says beyond being on and starting this
/// program. Where the system has an entry for all users, switching off leaves a hidden one in the user's
/// folder.
class XdgAutostartLoginItem final : public LoginItem {
  public:
    struct Places {
        std::filesystem::path entry;                ///< the file in the user's autostart folder
        std::vector<std::filesystem::path> shared;  ///< the same for all users, the most important first
        std::filesystem::path program;              ///< what an entry starts
        std::vector<std::filesystem::path> folders; ///< of installed programs
        std::string obstacle;                       ///< why none of this would do anything; empty: it does
    };

    /// Those of the running program; `identifier` names its entry.
    static Places placesFor(const std::string& identifier);

    explicit XdgAutostartLoginItem(Places places);

    /// Never asks for approval. What cannot be read, a desktop cannot read either: it is off.
    [[nodiscard]] LoginItemState state() const override;
    [[nodiscard]] bool isAtStableLocation() const override;
    /// Writes only where something has to change.
    std::expected<void, Error> registerItem() override;
    std::expected<void, Error> unregisterItem() override;

  private:
    [[nodiscard]] std::optional<DesktopEntry> sharedEntry() const;
    std::expected<void, Error> replaceEntry(const DesktopEntry& entry) const;

    Places places_;
};

} // namespace wakeloft

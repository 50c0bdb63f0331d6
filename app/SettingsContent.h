#pragma once

#include "session/AwakeDuration.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// What a click in the settings menu asks for. A view hands it back unread.
enum class SettingsAction : std::uint8_t {
    none,
    choosePresets,
    showAbout,
    checkForUpdates,
    sendFeedback,
    quit
};

/// The popover on the settings button; one at a time.
enum class SettingsPopupKind : std::uint8_t { settings, about };

/// A line of the menu; no title: a separator.
struct SettingsMenuItem {
    std::string title;
    std::string keyEquivalent; ///< with the system's command key; empty: none
    SettingsAction action = SettingsAction::none;

    bool operator==(const SettingsMenuItem&) const = default;
};

/// The settings button, the menu that it opens with no line chosen, and which popover it shows.
struct SettingsMenuContent {
    static constexpr double buttonHeight = 22; ///< points; clicks count in its whole width
    static constexpr double minimumMenuWidth = 260;
    /// How far the menu's corner is from the button's: below it, and towards the start of the line.
    static constexpr double menuInset = 14;

    struct Place {
        double x = 0;
        double y = 0;

        bool operator==(const Place&) const = default;
    };
    /// That corner of the menu, from the lower left one of a button of that width; y grows upwards.
    [[nodiscard]] Place menuPlace(double buttonWidth) const {
        return {isRightToLeft ? buttonWidth + menuInset : -menuInset, -menuInset};
    }

    std::string title;
    std::string symbol;         ///< before the title
    std::string trailingSymbol; ///< at the end of the row
    std::vector<SettingsMenuItem> items;
    std::optional<SettingsPopupKind> popup;
    std::string failure; ///< what went wrong with the last command, for a warning below; empty: nothing
    bool isRightToLeft = false;

    bool operator==(const SettingsMenuContent&) const = default;
};

/// A length that can be starred: a toggle behind a star.
struct PresetRow {
    AwakeDuration duration;
    std::string label;
    std::string spokenLabel;
    std::string symbol; ///< of the star
    bool isStarred = false;
    bool isEnabled = true;

    bool operator==(const PresetRow&) const = default;
};

/// The popover that chooses the preset durations, top to bottom.
struct SettingsPopupContent {
    static constexpr double rowSpacing = 6; ///< points

    std::string title;
    std::vector<PresetRow> rows;
    std::string hint;
    bool isRightToLeft = false;

    bool operator==(const SettingsPopupContent&) const = default;
};

/// The popover about the program, centred, top to bottom.
struct AboutPopupContent {
    static constexpr double glyphPoints = 26; ///< of the app's glyph on top; grows with the large title

    std::string title;
    std::string version; ///< empty where the build has none
    std::string copyright;
    bool isRightToLeft = false;

    bool operator==(const AboutPopupContent&) const = default;
};

} // namespace wakeloft

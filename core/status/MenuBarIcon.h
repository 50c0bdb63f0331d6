#pragma once

#include "status/AwakeGlyph.h"
#include "support/Date.h"
#include "support/LayoutDirection.h"

#include <optional>

namespace wakeloft {

/// What the icon in the menu bar or tray shows.
struct MenuBarIcon {
    bool isOn = false;
    bool showsTimerBadge = false;
    bool keepsLidClosedAwake = false;

    /// The icon's state in words, for a screen reader.
    enum class SpokenLabel { off, on, onWithTimerRunning, onWithLidClosed, onWithLidClosedAndTimerRunning };

    static MenuBarIcon current(bool isOn, std::optional<Date> activeUntil, bool lidClosed);
    [[nodiscard]] SpokenLabel spokenLabel() const;

    [[nodiscard]] AwakeGlyph glyph() const;
    /// The glyph for a menu bar, with the badge beside it on the side where the line ends.
    [[nodiscard]] TemplateImage image(LayoutDirection direction) const;

    bool operator==(const MenuBarIcon&) const = default;
};

} // namespace wakeloft

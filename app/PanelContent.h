#pragma once

#include "status/MenuBarIcon.h"
#include "support/Date.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wakeloft {

/// What a click asks for. A view hands it back unread.
struct PanelAction {
    enum class Kind {
        none,
        openPanel,
        toggle,
        startSession,
        stayAwakeWithoutTimer,
        turnOff,
        dontRetry,
        deepwakeOn,
        deepwakeOff,
        acknowledgeHeatWarning,
        openAtLogin,
        dontOpenAtLogin,
        openLoginItemsSettings,
        quit
    };

    Kind kind = Kind::none;
    Seconds seconds = 0; ///< of `startSession`: how long

    bool operator==(const PanelAction&) const = default;
};

struct PanelButton {
    std::string title;
    std::string spokenLabel; ///< the accessible name; empty: the title
    PanelAction action;

    bool operator==(const PanelButton&) const = default;
};

/// A switch beside its title, with a footnote below.
struct PanelSwitch {
    std::string title;
    std::string footnote; ///< empty: none
    bool isOn = false;
    bool isEnabled = true;
    PanelAction action; ///< what flipping it asks for

    bool operator==(const PanelSwitch&) const = default;
};

/// A footnote behind a symbol, with a link-styled button below it where there is something to do.
struct PanelNotice {
    enum class Symbol { information, warning, failure, heat };

    Symbol symbol = Symbol::information;
    std::string text; ///< empty: only the link
    std::optional<PanelButton> link;

    bool operator==(const PanelNotice&) const = default;
};

/// "info.circle": the symbol by its name.
std::string_view symbolName(PanelNotice::Symbol symbol);

/// Everything that the panel shows above the settings button, top to bottom. A view draws it and holds no
/// rule and no text.
struct PanelContent {
    static constexpr double width = 260;            ///< points
    static constexpr double blockSpacing = 14;      ///< from one block to the next
    static constexpr double captionSpacing = 6;     ///< below the caption of the session buttons
    static constexpr double noticeSymbolWidth = 12; ///< what a notice's text is set off by, beside a gap

    MenuBarIcon icon;
    std::string title;
    std::string spokenStatus; ///< the accessible name of the whole header
    std::string statusLine;
    std::string explanation;
    PanelButton mainButton;
    std::string sessionCaption; ///< above the session buttons; empty: none
    std::vector<PanelButton> sessionButtons;
    PanelSwitch deepwake;
    std::vector<PanelNotice> deepwakeNotices;
    std::vector<PanelNotice> notices;
    PanelSwitch openAtLogin; ///< below a divider
    std::vector<PanelNotice> loginNotices;
    bool isRightToLeft = false;

    bool operator==(const PanelContent&) const = default;
};

/// A line of the tray item's menu; no title: a separator.
struct TrayMenuEntry {
    std::string title;
    PanelAction action;
    std::optional<bool> isChecked = std::nullopt; ///< none: a plain command
    bool isEnabled = true;

    bool operator==(const TrayMenuEntry&) const = default;
};

/// Everything that the tray item shows.
struct TrayContent {
    MenuBarIcon icon;
    std::string spokenLabel;
    std::string toolTipTitle;
    std::string toolTipText;
    std::vector<TrayMenuEntry> menu;
    bool isRightToLeft = false;

    bool operator==(const TrayContent&) const = default;
};

} // namespace wakeloft

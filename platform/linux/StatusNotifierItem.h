#pragma once

#include "Bus.h"
#include "support/MainRunLoop.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// A picture for a tray host: rows of 32-bit ARGB (not premultiplied), each pixel in network byte order.
/// `bytes` holds all `width * height` pixels.
struct TrayPixmap {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;

    bool operator==(const TrayPixmap&) const = default;
};

/// A line of the tray menu. `id` is the caller's own, positive and unique; a host's click may be older than
/// the last change of the menu, so an id must not come to mean something else.
struct TrayMenuLine {
    std::int32_t id = 0;
    std::string label;
    bool isSeparator = false;
    bool isEnabled = true;
    std::optional<bool> isChecked = std::nullopt; ///< none: a plain command

    bool operator==(const TrayMenuLine&) const = default;
};

/// Everything that a tray host shows.
struct TrayItemFace {
    std::string iconName; ///< empty: the host draws the pixmaps
    std::string iconThemePath;
    std::vector<TrayPixmap> pixmaps;
    std::string title; ///< the accessible title, in words
    std::string toolTipTitle;
    std::string toolTipText; ///< plain, not markup
    std::vector<TrayMenuLine> menu;
    bool isRightToLeft = false;

    bool operator==(const TrayItemFace&) const = default;
};

/// A status notifier item with its menu (org.kde.StatusNotifierItem, com.canonical.dbusmenu) on the session
/// bus. Registers with the host's watcher whenever one appears, also late or again, and starts none. Main
/// thread; needs a running sd-event loop; nothing runs while nothing changes.
class StatusNotifierItem {
  public:
    /// Told from the event loop, never from within a call of the item's; each may call `show` or end the
    /// item, and none comes after its end. Any may be empty.
    struct Events {
        /// The user pressed the item. Screen coordinates as the host gave them (some hosts are wrong), and
        /// the activation token that came just before, empty if none.
        std::function<void(int x, int y, std::string activationToken)> activated;
        /// The user chose a line that is in the menu and enabled.
        std::function<void(std::int32_t id)> menuChosen;
        /// Whether a host shows the item now: a watcher accepted it, and has a host as far as it tells. Told
        /// on each change, and once with false when none is there at start.
        std::function<void(bool isHosted)> hostChanged;
        /// A host that is there refused the item, or could not be told of a change.
        std::function<void(PlatformError)> failed;
    };

    /// `bus` must be attached to an event loop and outlive the item; a connection has at most one item. `id`
    /// is the same in every session, such as the application's name.
    static std::expected<std::unique_ptr<StatusNotifierItem>, PlatformError>
    create(sd_bus* bus, MainRunLoop& loop, std::string id, TrayItemFace face, Events events);
    /// Asks hosts to hide the item. They forget it only when `bus` closes.
    ~StatusNotifierItem();
    StatusNotifierItem(const StatusNotifierItem&) = delete;
    StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;

    /// Shows `face`, telling the host only what differs.
    void show(TrayItemFace face);

  private:
    struct Implementation;
    explicit StatusNotifierItem(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> implementation_;
};

} // namespace wakeloft

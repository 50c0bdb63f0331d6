#pragma once

#include "StatusNotifierItem.h"
#include "TrayMenuLayout.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace wakeloft {

/// The tray item's menu as an object on the bus (com.canonical.dbusmenu): a flat list of lines below the
/// root. Main thread.
class TrayMenu {
  public:
    struct Events {
        /// A click reached a line that can be chosen now. Called from within a bus handler, which must not
        /// end the menu.
        std::function<void(std::int32_t id)> chosen;
        /// Hosts could not be told of a change.
        std::function<void(PlatformError)> failed;
    };

    /// `bus` must outlive the menu.
    static std::expected<std::unique_ptr<TrayMenu>, PlatformError> create(sd_bus* bus, const char* objectPath,
                                                                          std::vector<TrayMenuLine> lines,
                                                                          bool isRightToLeft, Events events);
    TrayMenu(const TrayMenu&) = delete;
    TrayMenu& operator=(const TrayMenu&) = delete;
    ~TrayMenu() = default;

    /// Tells hosts the changed properties while the lines stay the same ones, otherwise to read the layout
    /// again.
    void show(std::vector<TrayMenuLine> lines, bool isRightToLeft);

    /// Is there a line with `id` that can be clicked?
    bool canChoose(std::int32_t id) const;

  private:
    struct Table;

    TrayMenu(sd_bus* bus, const char* objectPath, std::vector<TrayMenuLine> lines, bool isRightToLeft,
             Events events);
    bool has(std::int32_t id) const;
    void receive(std::int32_t id, std::string_view event);
    int emitChanges(const std::vector<TrayMenuLine>& previous);

    sd_bus* bus_;
    const char* objectPath_;
    std::vector<TrayMenuLine> lines_;
    bool isRightToLeft_;
    Events events_;
    std::uint32_t revision_ = 1;
    BusSlot object_;
};

} // namespace wakeloft

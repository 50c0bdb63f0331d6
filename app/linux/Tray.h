#pragma once

#include "AwakePanel.h"
#include "StatusNotifierItem.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace wakeloft {

/// Shows the panel's state as a tray item and hands the user's presses on. Main thread.
class Tray {
  public:
    /// Told from the event loop of the buses.
    struct Events {
        /// The item was pressed, where the host said.
        std::function<void(int x, int y, std::string activationToken)> pressed;
        /// No host shows it, for so long that none is to be expected; or it cannot be shown at all.
        std::function<void()> isMissing;
    };

    /// All but `events` must outlive the tray.
    Tray(sd_bus* sessionBus, MainRunLoop& loop, AwakePanel& panel, Events events);

    /// Shows what has changed.
    void refresh();

  private:
    void hostChanged(bool isHosted);
    void failed(const PlatformError& error);
    void chosen(std::int32_t id);
    [[nodiscard]] TrayItemFace face(const TrayContent& content);
    std::int32_t idOf(const PanelAction& action);

    MainRunLoop& loop_;
    AwakePanel& panel_;
    Events events_;
    TrayContent content_;
    std::vector<PanelAction> menuActions_; ///< by the id of their line less one
    int hostChanges_ = 0;
    std::unique_ptr<StatusNotifierItem> item_;
    Lifetime lifetime_;
};

} // namespace wakeloft

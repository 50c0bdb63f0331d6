#pragma once

#include "AwakePanel.h"
#include "StatusNotifierItem.h"
#include "XEmbedTray.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace wakeloft {

/// Shows the panel's state as a tray item and hands the user's presses on: as a status notifier item, or in
/// an old tray while no host shows that. Main thread.
class Tray {
  public:
    /// Told from the event loop of the buses.
    struct Events {
        /// The item was pressed, where the host said.
        std::function<void(int x, int y, std::string activationToken)> pressed;
        /// Nothing shows it, for so long that nothing is to be expected; or it cannot be shown at all.
        std::function<void()> isMissing;
    };

    /// All but `events` must outlive the tray.
    Tray(sd_bus* sessionBus, MainRunLoop& loop, AwakePanel& panel, Events events);

    /// Shows what has changed.
    void refresh();

  private:
    void hostChanged(bool isHosted);
    void lookForOldTray();
    void shownChanged();
    [[nodiscard]] bool isShown() const { return isHosted_ || (oldTray_ && oldTray_->isShown()); }
    void failed(const PlatformError& error);
    void chosen(std::int32_t id);
    [[nodiscard]] TrayItemFace face(const TrayContent& content);
    std::int32_t idOf(const PanelAction& action);

    MainRunLoop& loop_;
    AwakePanel& panel_;
    Events events_;
    TrayContent content_;
    std::vector<PanelAction> menuActions_; ///< by the id of their line less one
    bool isHosted_ = false;
    int shownChanges_ = 0; ///< and of the host
    std::unique_ptr<StatusNotifierItem> item_;
    std::unique_ptr<XEmbedTray> oldTray_; ///< null while a host is there
    Lifetime lifetime_;
};

} // namespace wakeloft

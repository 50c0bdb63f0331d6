#pragma once

#include "StatusNotifierItem.h"
#include "Xcb.h"
#include "status/MenuBarIcon.h"

#include <QAbstractButton>
#include <QImage>

#include <cstdint>
#include <functional>

namespace wakeloft {

/// The icon as a window of its own that an old tray embeds (_NET_SYSTEM_TRAY_OPCODE, XEmbed). X11 only, main
/// thread.
///
/// Not QSystemTrayIcon, which would speak the same protocol: it settles once, for the life of the program, on
/// status notifier items wherever somebody watches for them, be it without a host to show them; and it tells
/// neither when a tray takes it nor when the tray goes.
class XEmbedIcon : public QAbstractButton {
  public:
    struct Events {
        /// Its middle, in X11's device pixels.
        std::function<void(int x, int y)> pressed;
        std::function<void(std::int32_t id)> menuChosen;
    };

    /// Asks `tray`, the owner of the trays' selection, to embed it. To be shown when the tray has told the
    /// window so: a window that is mapped as it is embedded confuses some trays about its size.
    XEmbedIcon(xcb_window_t tray, Events events);

    /// Shows `icon`, and of `face` the words and the menu.
    void setFace(const MenuBarIcon& icon, const TrayItemFace& face);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void tellPress();
    [[nodiscard]] QImage trayBehind();

    Events events_;
    MenuBarIcon icon_;
    TrayItemFace face_;
};

} // namespace wakeloft

#pragma once

#include "XEmbedIcon.h"

#include <QAbstractNativeEventFilter>

#include <functional>
#include <memory>

namespace wakeloft {

/// Keeps the icon in the old tray of an X11 display (the owner of _NET_SYSTEM_TRAY_Sn): in the one that is
/// there, one that comes late, and each that takes its place. Shows nothing elsewhere than on X11. Main
/// thread.
class XEmbedTray : private QAbstractNativeEventFilter {
  public:
    struct Events {
        XEmbedIcon::Events icon;
        /// `isShown()` is another. Must not end this object.
        std::function<void()> changed;
    };

    XEmbedTray(const MenuBarIcon& icon, TrayItemFace face, Events events);
    XEmbedTray(const XEmbedTray&) = delete;
    XEmbedTray& operator=(const XEmbedTray&) = delete;
    ~XEmbedTray() override;

    void show(const MenuBarIcon& icon, TrayItemFace face);
    /// A tray has embedded the icon.
    [[nodiscard]] bool isShown() const { return button_ != nullptr && button_->isVisible(); }

  private:
    struct DeleteLater {
        void operator()(XEmbedIcon* icon) const { icon->deleteLater(); }
    };

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void moveTo(xcb_window_t tray);
    void take(const xcb_client_message_event_t& message);

    xcb_atom_t selection_ = XCB_ATOM_NONE;
    xcb_atom_t managerCame_ = XCB_ATOM_NONE;
    xcb_atom_t embedding_ = XCB_ATOM_NONE;
    MenuBarIcon icon_;
    TrayItemFace face_;
    Events events_;
    xcb_window_t tray_ = XCB_WINDOW_NONE;
    std::unique_ptr<XEmbedIcon, DeleteLater> button_; ///< may be in an event of its own as it goes
};

} // namespace wakeloft

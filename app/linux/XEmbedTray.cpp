#include "XEmbedTray.h"

#include <QCoreApplication>

#include <utility>

namespace wakeloft {

namespace {

/// The owner of `selection`, whose end will be told. It may end while it is asked for.
xcb_window_t followedOwner(xcb_connection_t* x, xcb_atom_t selection) {
    xcb_window_t owner = xcbSelectionOwner(x, selection);
    xcb_window_t before = XCB_WINDOW_NONE;
    while (owner != before) {
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        if (owner != XCB_WINDOW_NONE)
            xcb_change_window_attributes(x, owner, XCB_CW_EVENT_MASK, &mask);
        before = std::exchange(owner, xcbSelectionOwner(x, selection));
    }
    return owner;
}

} // namespace

XEmbedTray::XEmbedTray(const MenuBarIcon& icon, TrayItemFace face, Events events)
    : icon_(icon), face_(std::move(face)), events_(std::move(events)) {
    xcb_connection_t* x = xcbConnection();
    if (x == nullptr)
        return;
    selection_ = xcbScreenSelection(x, "_NET_SYSTEM_TRAY_S");
    managerCame_ = xcbAtom(x, "MANAGER");
    embedding_ = xcbAtom(x, "_XEMBED");
    QCoreApplication::instance()->installNativeEventFilter(this); // Qt hears what the root window is told
    moveTo(followedOwner(x, selection_));
}

XEmbedTray::~XEmbedTray() = default;

void XEmbedTray::show(const MenuBarIcon& icon, TrayItemFace face) {
    icon_ = icon;
    face_ = std::move(face);
    if (button_ != nullptr)
        button_->setFace(icon_, face_);
}

void XEmbedTray::moveTo(xcb_window_t tray) {
    const bool wasShown = isShown();
    tray_ = tray;
    button_.reset();
    if (tray_ != XCB_WINDOW_NONE) {
        button_.reset(new XEmbedIcon(tray_, events_.icon));
        button_->setFace(icon_, face_);
    }
    if (wasShown)
        events_.changed();
}

void XEmbedTray::take(const xcb_client_message_event_t& message) {
    constexpr std::uint32_t embeddedNotify = 0;
    const std::uint32_t what = message.data.data32[1];
    if (message.type == managerCame_ && what == selection_) {
        if (const auto owner = followedOwner(xcbConnection(), selection_); owner != tray_)
            moveTo(owner);
    } else if (message.type == embedding_ && what == embeddedNotify && button_ != nullptr &&
               message.window == button_->winId() && !isShown()) {
        button_->show();
        events_.changed();
    }
}

bool XEmbedTray::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    constexpr std::uint8_t sentByAnother = 0x80;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & ~sentByAnother;
    if (type == XCB_CLIENT_MESSAGE)
        take(*reinterpret_cast<const xcb_client_message_event_t*>(event));
    else if (type == XCB_DESTROY_NOTIFY &&
             reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == tray_)
        moveTo(followedOwner(xcbConnection(), selection_)); // a new one may have the same number
    return false;
}

} // namespace wakeloft

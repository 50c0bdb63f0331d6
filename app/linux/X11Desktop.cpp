#include "X11Desktop.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace wakeloft {

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

xcb_connection_t* connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* x, const std::string& name) {
    const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

bool isX11() {
    return connection() != nullptr;
}

bool isWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool hasCompositor() {
    xcb_connection_t* x = connection();
    if (x == nullptr)
        return isWayland();
    int screen = 0;
    int display = 0;
    char* host = nullptr;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0)
        std::free(host);
    const xcb_atom_t selection = atom(x, "_NET_WM_CM_S" + std::to_string(screen));
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void declareShadow(QWindow& window, QMargins margins) {
    xcb_connection_t* x = connection();
    if (x == nullptr)
        return;
    const auto native = [&](int logical) {
        return static_cast<std::uint32_t>(qRound(logical * window.devicePixelRatio()));
    };
    const std::array<std::uint32_t, 4> extents{native(margins.left()), native(margins.right()),
                                               native(margins.top()), native(margins.bottom())};
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        atom(x, "_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, extents.size(), extents.data());
}

} // namespace wakeloft

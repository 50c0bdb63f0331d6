#include "X11Desktop.h"

#include "Xcb.h"

#include <QGuiApplication>
#include <QWindow>

#include <array>
#include <cstdint>

namespace wakeloft {

bool isX11() {
    return xcbConnection() != nullptr;
}

bool isWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool hasCompositor() {
    xcb_connection_t* x = xcbConnection();
    if (x == nullptr)
        return isWayland();
    return xcbSelectionOwner(x, xcbScreenSelection(x, "_NET_WM_CM_S")) != XCB_WINDOW_NONE;
}

void declareShadow(QWindow& window, QMargins margins) {
    xcb_connection_t* x = xcbConnection();
    if (x == nullptr)
        return;
    const auto native = [&](int logical) {
        return static_cast<std::uint32_t>(qRound(logical * window.devicePixelRatio()));
    };
    const std::array<std::uint32_t, 4> extents{native(margins.left()), native(margins.right()),
                                               native(margins.top()), native(margins.bottom())};
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        xcbAtom(x, "_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, extents.size(),
                        extents.data());
}

void listInTaskbars(QWindow& window, bool isListed) {
    xcb_connection_t* x = xcbConnection();
    if (x == nullptr)
        return;
    const std::array<xcb_atom_t, 2> states{xcbAtom(x, "_NET_WM_STATE_SKIP_TASKBAR"),
                                           xcbAtom(x, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        xcbAtom(x, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32,
                        isListed ? 0 : static_cast<std::uint32_t>(states.size()), states.data());
}

} // namespace wakeloft

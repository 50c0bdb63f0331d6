#pragma once

#include <QMargins>

class QWindow;

namespace wakeloft {

bool isX11();
bool isWayland();

/// Whether translucent windows blend with what is behind them: always on Wayland, on X11 while a compositor
/// runs.
bool hasCompositor();

/// X11: tells the window manager that the outermost `margins`, in logical pixels, are only shadow, so that it
/// places the window by what is inside them. Before the window is shown; elsewhere it does nothing.
void declareShadow(QWindow& window, QMargins margins);

/// X11: whether bars and pagers list the window among the open ones. Before the window is shown; elsewhere it
/// does nothing.
void listInTaskbars(QWindow& window, bool isListed);

} // namespace wakeloft

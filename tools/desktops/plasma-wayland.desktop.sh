# Packages: plasma-workspace plasma-workspace-wayland plasma-desktop kwin-wayland kded5 breeze-icon-theme
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
settle=2
appEnvironment=(XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5 XDG_SESSION_TYPE=wayland)
startDesktop() {
    export XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5
    export QT_QUICK_BACKEND=software LIBGL_ALWAYS_SOFTWARE=1
    # Where the program may give itself priority, it may not run in a namespace; a copy has no such right.
    cp /usr/bin/kwin_wayland "$work"
    startDaemon "$work/windows.log" env KWIN_COMPOSE=Q "$work/kwin_wayland" --x11-display "$DISPLAY" \
        --width 1280 --height 800 --socket wayland-plasma
    waitUntil 20 test -S "$XDG_RUNTIME_DIR/wayland-plasma" || return
    export WAYLAND_DISPLAY=wayland-plasma XDG_SESSION_TYPE=wayland
    unset DISPLAY
    startDaemon "$work/services.log" env QT_QPA_PLATFORM=wayland kded5
    startDaemon "$work/panel.log" env QT_QPA_PLATFORM=wayland plasmashell
    gdbus wait --session --timeout 40 org.kde.StatusNotifierWatcher
    sleep 10
}

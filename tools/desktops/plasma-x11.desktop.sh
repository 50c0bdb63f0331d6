# Packages: plasma-workspace plasma-desktop kwin-x11 kded5 breeze-icon-theme
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
settle=2
appEnvironment=(XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5)
startDesktop() {
    export XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5
    export QT_QUICK_BACKEND=software LIBGL_ALWAYS_SOFTWARE=1
    startDaemon "$work/windows.log" kwin_x11
    startDaemon "$work/services.log" kded5
    startDaemon "$work/panel.log" plasmashell
    gdbus wait --session --timeout 40 org.kde.StatusNotifierWatcher
    sleep 8
}

# Packages: lxqt-panel lxqt-themes openbox hsetroot breeze-icon-theme
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
settle=1
appEnvironment=(XDG_CURRENT_DESKTOP=LXQt)
startDesktop() {
    export XDG_CURRENT_DESKTOP=LXQt
    mkdir -p "$XDG_CONFIG_HOME/lxqt"
    printf '[General]\nicon_theme=breeze\ntheme=light\n' >"$XDG_CONFIG_HOME/lxqt/lxqt.conf"
    cat >"$XDG_CONFIG_HOME/lxqt/panel.conf" <<END
panels=panel1

[panel1]
plugins=mainmenu,taskbar,statusnotifier,tray
position=Bottom

[mainmenu]
type=mainmenu

[taskbar]
type=taskbar

[statusnotifier]
alignment=Right
type=statusnotifier

[tray]
type=tray
END
    hsetroot -add '#3f6184' -add '#9db7cd' -gradient 165 >/dev/null
    startDaemon "$work/windows.log" openbox
    sleep 1
    startDaemon "$work/panel.log" lxqt-panel
    gdbus wait --session --timeout 30 org.kde.StatusNotifierWatcher
}

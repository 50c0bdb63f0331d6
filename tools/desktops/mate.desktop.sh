# Packages: mate-panel mate-settings-daemon-common mate-desktop-common marco dconf-cli dconf-gsettings-backend hsetroot adwaita-icon-theme librsvg2-common
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
settle=1
appEnvironment=(XDG_CURRENT_DESKTOP=MATE)
startDesktop() {
    export XDG_CURRENT_DESKTOP=MATE
    hsetroot -add '#3f6184' -add '#9db7cd' -gradient 165 >/dev/null
    gsettings set org.mate.panel object-id-list "['tray']"
    gsettings set org.mate.panel toplevel-id-list "['top']"
    local tray=/org/mate/panel/objects/tray/ top=/org/mate/panel/toplevels/top/
    dconf write ${top}orientation "'top'"
    dconf write ${top}size 28
    dconf write ${top}expand true
    dconf write ${tray}object-type "'applet'"
    dconf write ${tray}applet-iid "'NotificationAreaAppletFactory::NotificationArea'"
    dconf write ${tray}toplevel-id "'top'"
    dconf write ${tray}panel-right-stick true
    dconf write ${tray}position 20
    startDaemon "$work/windows.log" marco --composite
    sleep 1
    startDaemon "$work/panel.log" mate-panel
    gdbus wait --session --timeout 30 org.kde.StatusNotifierWatcher
}

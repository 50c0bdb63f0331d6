# Packages: xfce4-panel xfwm4 xfconf hsetroot adwaita-icon-theme librsvg2-common
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
settle=1
startDesktop() {
    local settings=$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml
    mkdir -p "$settings"
    cp "$root"/rig/desktop/*.xml "$settings"
    hsetroot -add '#3f6184' -add '#9db7cd' -gradient 165 >/dev/null
    startDaemon "$work/windows.log" xfwm4
    sleep 1
    startDaemon "$work/panel.log" xfce4-panel
    gdbus wait --session --timeout 30 org.kde.StatusNotifierWatcher
}

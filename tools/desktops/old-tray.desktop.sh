# A bar of a plain window manager that knows the old tray alone.
# Packages: openbox tint2 hsetroot
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
settle=1
startDesktop() {
    hsetroot -add '#3f6184' -add '#9db7cd' -gradient 165 >/dev/null
    startDaemon "$work/windows.log" openbox
    sleep 1
    startDaemon "$work/panel.log" tint2
}

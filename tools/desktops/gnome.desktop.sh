# No tray at all.
# Packages: gnome-shell xwayland
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
settle=4
appEnvironment=(XDG_CURRENT_DESKTOP=GNOME XDG_SESSION_TYPE=wayland)
extensions='[]'
startDesktop() {
    export XDG_CURRENT_DESKTOP=GNOME XDG_SESSION_TYPE=wayland
    gsettings set org.gnome.shell enabled-extensions "$extensions"
    gsettings set org.gnome.shell welcome-dialog-last-shown-version 99
    gsettings set org.gnome.desktop.interface enable-animations false
    startDaemon "$work/windows.log" env LIBGL_ALWAYS_SOFTWARE=1 MUTTER_DEBUG_DUMMY_MODE_SPECS=1280x800 \
        gnome-shell --nested --wayland --wayland-display=wayland-gnome
    waitUntil 30 test -S "$XDG_RUNTIME_DIR/wayland-gnome" || return
    export WAYLAND_DISPLAY=wayland-gnome
    unset DISPLAY
    person mousemove 640 500
    for _ in 1 2 3 4; do
        sleep 4
        person key Escape # out of the overview that it begins with, as soon as it is there
    done
}

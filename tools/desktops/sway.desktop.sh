# Packages: sway waybar xwayland fonts-noto-core
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
settle=1
appEnvironment=(XDG_CURRENT_DESKTOP=sway XDG_SESSION_TYPE=wayland)
startDesktop() {
    mkdir -p "$XDG_CONFIG_HOME"/{sway,waybar}
    cat >"$XDG_CONFIG_HOME/sway/config" <<END
output * bg #3f6184 solid_color
output X11-1 mode --custom 1280x800
xwayland disable
bar swaybar_command waybar
END
    echo '{"layer": "top", "modules-left": ["sway/workspaces"], "modules-right": ["tray"], "tray": {"icon-size": 18, "spacing": 8}}' \
        >"$XDG_CONFIG_HOME/waybar/config"
    cp /etc/xdg/waybar/style.css "$XDG_CONFIG_HOME/waybar"
    export XDG_CURRENT_DESKTOP=sway
    startDaemon "$work/windows.log" env WLR_BACKENDS=x11 WLR_RENDERER=pixman LIBGL_ALWAYS_SOFTWARE=1 sway
    waitUntil 15 waylandIsThere || return
    gdbus wait --session --timeout 30 org.kde.StatusNotifierWatcher
    unset DISPLAY
}
waylandIsThere() {
    local socket
    for socket in "$XDG_RUNTIME_DIR"/wayland-[0-9]; do
        [ -S "$socket" ] && export WAYLAND_DISPLAY=${socket##*/} && return
    done
    return 1
}

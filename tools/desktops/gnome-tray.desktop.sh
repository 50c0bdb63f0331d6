# Packages: gnome-shell gnome-shell-extension-appindicator xwayland
# shellcheck shell=bash disable=SC2034,SC2154 # what it shares with the journey
. "$root/tools/desktops/gnome.desktop.sh"
extensions="['ubuntu-appindicators@ubuntu.com']"
# One press opens the menu there, two open the panel.
pressIcon() {
    local times=(click 1)
    [ "$1" != 1 ] || times=(click --repeat 2 --delay 120 1)
    person mousemove $((iconX + iconWidth / 2)) $((iconY + iconHeight / 2)) sleep 0.3 "${times[@]}"
}
# The pointer is drawn, so that the screen changes in more than the menu.
chooseThirdLine() { person key Down sleep 0.2 key Down sleep 0.2 key Down sleep 0.2 key Return; }

# shellcheck shell=sh
# What stops the program is told in a window as well: started from a menu, it has no terminal.
stop() {
    printf 'kurbelbuch: %s\n' "$1" >&2
    if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
        if command -v zenity; then
            zenity --error --no-markup --title=Kurbelbuch --text="$1"
        elif command -v kdialog; then
            kdialog --title Kurbelbuch --error "$1"
        elif command -v xmessage; then
            xmessage -center -title Kurbelbuch "$1"
        elif command -v notify-send; then
            notify-send Kurbelbuch "$1"
        fi >/dev/null 2>&1
    fi
    exit 1
}

# shellcheck shell=bash disable=SC2034,SC2154  # read by the scripts; pids and title are virtual_display.sh's
# Using the running program like a rider, by pointer and keys, and taking pictures of it. For scripts
# that have started a virtual display. A wait in vain leaves a picture of the screen.

# The program's process, the window that was found last, and where pictures of failures go.
program_pid=
window=
failure_picture=

driving_packages=(imagemagick xdotool)

# start_in_background LOG COMMAND...: the program, ended with the display if not before.
start_in_background() {
    local log=$1
    shift
    ("$@") >"$log" 2>&1 </dev/null &
    program_pid=$!
    virtual_pids+=("$program_pid")
}

# wait_for WHAT COMMAND...: at most a minute, and only while the program runs.
wait_for() {
    local what=$1 tries
    shift
    for ((tries = 0; tries < 300; tries++)); do
        if "$@"; then
            return 0
        fi
        program_ended && fail "the program ended while waiting for $what"
        sleep 0.2
    done
    import -window root "$failure_picture" || true
    fail "waited in vain for $what; see $failure_picture"
}

program_ended() {
    [[ ! -e /proc/$program_pid/stat ]] || [[ $(<"/proc/$program_pid/stat") == *') Z '* ]]
}

# Sets `window` to the newest of that name, a pattern.
window_named() {
    window=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1) && [[ -n $window ]]
}

no_window_named() {
    ! window_named "$1"
}

wait_for_window() {
    wait_for "the window $1" window_named "$1"
    xdotool windowfocus --sync "$window"
}

# Escape in the main window: asks nothing and saves nothing.
end_program() {
    local status=0 tries
    wait_for_window "$window_title"
    xdotool key Escape
    for ((tries = 0; tries < 300; tries++)); do
        program_ended && break
        sleep 0.2
    done
    program_ended || fail 'the program does not end'
    wait "$program_pid" || status=$?
    ((status == 0)) || fail "the program ended with exit code $status"
    unset 'virtual_pids[-1]'
}

# picture_of WINDOW FILE: an id, or root for the screen; taken when it no longer changes.
picture_of() {
    local before=$2.before tries
    import -window "$1" "png:$before"
    for ((tries = 0; tries < 40; tries++)); do
        sleep 0.5
        import -window "$1" "png:$2"
        if same_picture "$before" "$2"; then
            rm -f -- "$before"
            return 0
        fi
        mv -- "$2" "$before"
    done
    fail 'the window does not come to rest'
}

same_picture() {
    [[ $(compare -metric AE "png:$1" "png:$2" null: 2>&1) == 0 ]]
}

# open_menu KEY...: the first menu of the main window, and from there by keys.
open_menu() {
    wait_for_window "$window_title"
    xdotool mousemove --window "$window" 30 10 click 1
    sleep 0.5
    press "$@"
}

# One after the other, with the time that a menu takes to open.
press() {
    local key
    for key in "$@"; do
        xdotool key "$key"
        sleep 0.15
    done
}

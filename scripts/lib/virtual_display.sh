# shellcheck shell=bash disable=SC2034  # read by the scripts
# Running the program where there is no display: in a virtual X server, for one screenshot. Every
# process started here is ended again by its own id.

virtual_display_packages=(xvfb openbox scrot xdotool)
virtual_screen=1280x800x24
window_title='^Kurbelbuch$'
# More options of the X server; -ac lets other users' programs in.
virtual_server_options=()

# What runs, in order of starting, and where its odds and ends are.
virtual_pids=()
virtual_directory=

has_display() {
    [[ -n ${DISPLAY:-} || -n ${WAYLAND_DISPLAY:-} ]]
}

# The newest first, so that nobody loses its display before it was asked to end.
end_virtual_display() {
    local index pid tries
    for ((index = ${#virtual_pids[@]} - 1; index >= 0; index--)); do
        pid=${virtual_pids[index]}
        kill "$pid" 2>/dev/null || true
        for ((tries = 0; tries < 50; tries++)); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -KILL "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    virtual_pids=()
    if [[ -n $virtual_directory ]]; then
        rm -rf -- "$virtual_directory"
        virtual_directory=
    fi
}

# Starts X and a window manager; sets DISPLAY.
start_virtual_display() {
    virtual_directory=$(mktemp -d)
    trap end_virtual_display EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM

    # The server picks a free number itself and writes it down, when it is ready for clients.
    : >"$virtual_directory/display"
    Xvfb -displayfd 9 -screen 0 "$virtual_screen" -nolisten tcp -noreset "${virtual_server_options[@]}" \
        9>"$virtual_directory/display" >"$virtual_directory/xvfb.log" 2>&1 </dev/null &
    virtual_pids+=($!)
    local tries number=
    for ((tries = 0; tries < 300; tries++)); do
        # A line end shows that the number is complete.
        if read -r number <"$virtual_directory/display"; then
            break
        fi
        number=
        if ! kill -0 "${virtual_pids[0]}" 2>/dev/null; then
            break
        fi
        sleep 0.1
    done
    if [[ -z $number ]]; then
        cat -- "$virtual_directory/xvfb.log" >&2
        fail 'the virtual X server did not start'
    fi

    export DISPLAY=:$number
    unset WAYLAND_DISPLAY
    # Whatever the caller prefers elsewhere, this display is X.
    export QT_QPA_PLATFORM=xcb
    if [[ -z ${XDG_RUNTIME_DIR:-} ]]; then
        mkdir -m 700 -- "$virtual_directory/runtime"
        export XDG_RUNTIME_DIR=$virtual_directory/runtime
    fi
    # A window that comes before its manager would have no frame, and perhaps never the focus. The
    # manager answers questions a little before it manages, so it leaves a sign when it does.
    local managing=$virtual_directory/managing
    openbox --sm-disable --startup "touch $managing" >"$virtual_directory/openbox.log" 2>&1 </dev/null &
    virtual_pids+=($!)
    for ((tries = 0; tries < 100; tries++)); do
        if [[ -e $managing ]]; then
            return 0
        fi
        sleep 0.1
    done
    cat -- "$virtual_directory/openbox.log" >&2
    fail 'the window manager did not start'
}

require_program_runs() {
    local pid=$1 status=0
    if kill -0 "$pid" 2>/dev/null; then
        return 0
    fi
    wait "$pid" || status=$?
    fail "the program ended before its screenshot (exit code $status)"
}

# Drawing is over when the program waits and the screen does not change. The state follows the
# program's name, which stands in parentheses and may hold anything.
program_waits() {
    local stat
    stat=$(cat "/proc/$1/stat" 2>/dev/null) || return 1
    [[ ${stat##*) } == S* ]]
}

# screenshot_program DIRECTORY FILE PROGRAM: starts the program in DIRECTORY, waits for its window and
# saves a picture of the whole screen.
screenshot_program() {
    local directory=$1 file=$2 program=$3
    local pid tries waits_before waits_now
    start_virtual_display

    (cd -- "$directory" && exec "$program") </dev/null &
    pid=$!
    virtual_pids+=("$pid")
    for ((tries = 0; tries < 300; tries++)); do
        require_program_runs "$pid"
        if xdotool search --onlyvisible --name "$window_title" >/dev/null 2>&1; then
            break
        fi
        sleep 0.2
    done
    if ((tries == 300)); then
        fail 'the window did not appear within a minute'
    fi

    # A blinking cursor, as in a requester's line, never rests; hence the limit.
    local before=$virtual_directory/before.png now=$virtual_directory/now.png
    local end=$((SECONDS + 15))
    scrot --overwrite "$before"
    waits_before=no
    while ((SECONDS < end)); do
        sleep 0.5
        require_program_runs "$pid"
        waits_now=no
        if program_waits "$pid"; then
            waits_now=yes
        fi
        scrot --overwrite "$now"
        if [[ $waits_before$waits_now == yesyes ]] && cmp -s -- "$before" "$now"; then
            break
        fi
        waits_before=$waits_now
        mv -- "$now" "$before"
    done
    require_program_runs "$pid"
    mv -- "$before" "$file"
    end_virtual_display
}

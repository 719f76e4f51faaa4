# shellcheck shell=bash disable=SC2154  # root is common.sh's
# The demo card in build/demo and the start settings that lie on it.

# Latin-1, as the program reads and writes them; \xF6 and \xFC are its "ö" and "ü". An item's number
# is the value's, plus 100 for bars, 300 for circles, 600 for the mean and 700 for the trend: KJoule
# (16) as bars, Watt (3) as circles with mean and trend.
write_demo_settings() {
    printf '%b' \
        '[Programmeinstellungen]\n' \
        'WindowBreite = 1100\n' \
        'WindowH\xF6he = 650\n' \
        '[Men\xFCvorwahl]\n' \
        'Menu 303 = 1\n' \
        'Menu 603 = 1\n' \
        'Menu 703 = 1\n' \
        'Menu 116 = 1\n' \
        >"$1/Einstellungen.dat"
}

# Made once: what was changed on it since then is kept. It grows aside, so that an interrupted run
# does not leave half a card.
make_demo_card() {
    local card=$root/build/demo
    if [[ -d $card ]]; then
        return 0
    fi
    heading "Making a demo card in $card"
    rm -rf -- "$card.part"
    mkdir -p -- "$card.part"
    "$root/build/release/demo_card" "$card.part"
    write_demo_settings "$card.part"
    mv -- "$card.part" "$card"
}

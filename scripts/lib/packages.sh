# shellcheck shell=bash
# Installing what is missing, and only that, from the distribution. Nothing here asks a question, but
# for sudo's password, and that only when there is something to install.

# What building and testing takes. The German texts of Qt become part of the program, so the program
# needs them at build time.
# shellcheck disable=SC2034  # read by the scripts
build_packages=(cmake ninja-build g++ qt6-base-dev qt6-translations-l10n libgtest-dev python3)

# What tests look at: the font of a desktop whose figures are not all of one width.
# shellcheck disable=SC2034  # read by the scripts
test_packages=(fonts-dejavu-core fonts-cantarell)

# What the journeys drive the program with: a display, a window manager, keys and pointer, the
# accessibility bus, and Python's access to that bus and to pictures.
# shellcheck disable=SC2034  # read by the scripts
journey_packages=(xvfb openbox xdotool libxtst6 dbus-daemon at-spi2-core python3-gi python3-pil)

# Those of the named packages that are not installed, one per line.
missing_packages() {
    local installed package
    # Asked once for all, because each asking reads the whole package database. It fails when a name
    # is unknown, which is just one way of not being installed.
    # shellcheck disable=SC2016  # the braces are dpkg-query's
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        case $'\n'$installed$'\n' in
            *$'\n'"installed $package"$'\n'*) ;;
            *) printf '%s\n' "$package" ;;
        esac
    done
}

install_packages() {
    local -a missing as_root=()
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        printf 'No apt here; these Debian packages, or what matches them, are needed: %s\n' "$*"
        return 0
    fi
    mapfile -t missing < <(missing_packages "$@")
    if ((${#missing[@]} == 0)); then
        return 0
    fi

    heading "Installing ${missing[*]}"
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            fail "these packages are missing, and installing them takes root or sudo;" \
                "as root: apt-get install ${missing[*]}"
        fi
        as_root=(sudo)
    fi
    # The environment goes in through env, because sudo drops it.
    as_root+=(env DEBIAN_FRONTEND=noninteractive)
    local -a apt=("${as_root[@]}" apt-get -q -o DPkg::Lock::Timeout=300)
    # One unreachable source is no reason to give up: whether the packages can be had decides.
    "${apt[@]}" update </dev/null || printf 'Some package lists are out of date.\n' >&2
    "${apt[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null ||
        fail "could not install ${missing[*]}"
}

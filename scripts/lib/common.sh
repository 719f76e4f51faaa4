# shellcheck shell=bash disable=SC2034  # read by the scripts
# For every script here: sourced after `set -euo pipefail`. Sets `root`, the checkout, and leaves the
# caller's working directory alone, so that paths given by the caller keep their meaning.

# A CDPATH of the caller's would send `cd` elsewhere and make it print.
unset CDPATH

root=$(cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../.." && pwd -P)

heading() {
    printf '\n== %s\n' "$*"
}

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# shellcheck shell=bash disable=SC2154  # root is common.sh's
# Configuring and building by the presets of CMakePresets.json, in build/<preset>.

# Does nothing when the preset is configured already: the build itself notices changed CMakeLists.
configure_preset() {
    local preset=$1
    local directory=$root/build/$preset
    local -a fresh=()
    if [[ -f $directory/CMakeCache.txt ]]; then
        local home
        home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$directory/CMakeCache.txt")
        if [[ ! $home -ef $root ]]; then
            fresh=(--fresh)  # the checkout was moved or copied: every path in there is wrong
        elif [[ -f $directory/build.ninja && ! $root/CMakePresets.json -nt $directory/build.ninja ]]; then
            return 0
        fi
    fi
    heading "Configuring $preset"
    (cd -- "$root" && cmake "${fresh[@]}" --preset "$preset")
}

# build_preset PRESET [TARGET...]; everything without a target.
build_preset() {
    local preset=$1
    shift
    local -a targets=()
    if (($# > 0)); then
        targets=(--target "$@")
    fi
    heading "Building $preset"
    (cd -- "$root" && cmake --build --preset "$preset" "${targets[@]}")
}

# test_preset PRESET [ARGUMENT OF CTEST...]
test_preset() {
    local preset=$1
    shift
    heading "Testing $preset"
    (cd -- "$root" && ctest --preset "$preset" --parallel "$(nproc)" "$@")
}

# shellcheck shell=bash disable=SC2034,SC2154  # read by the scripts; root is common.sh's
# Making the packages; for scripts/package, scripts/portable and their tests.

# Making and checking: what dpkg-shlibdeps and strip are in, and the tools that look at the result.
packaging_packages=(
    dpkg-dev binutils file git gzip
    desktop-file-utils appstream mandoc lintian reuse librsvg2-bin optipng imagemagick
)

# Every time inside a package is that of the newest entry of its changelog.
set_source_date() {
    SOURCE_DATE_EPOCH=$(cd -- "$root" &&
        dpkg-parsechangelog -l packaging/debian/changelog --show-field Timestamp)
    export SOURCE_DATE_EPOCH
}

# make_debian_package CHECKOUT DIRECTORY: packs build/release of the checkout, which must be built;
# afterwards the directory holds the package and nothing else.
make_debian_package() {
    local checkout=$1 directory=$2
    rm -rf -- "$directory"
    mkdir -p -- "$directory"
    heading "Packing into $directory"
    set_source_date
    # The access rights of what the checkout holds go into the package; the umask is not to matter.
    (umask 022 && cd -- "$checkout/build/release" && cpack -G DEB -B "$directory")
    rm -rf -- "$directory/_CPack_Packages"
}

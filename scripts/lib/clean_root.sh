# shellcheck shell=bash disable=SC2034,SC2154  # read by the scripts; root is common.sh's
# Clean Debian systems in directories, to try packages in: made by debootstrap, entered by chroot.
# Takes root. Whatever is mounted in them is unmounted again.

clean_root_packages=(debootstrap mount)
clean_root_user=anna

# What is mounted in the systems that are in use, in the order of mounting.
clean_root_mounts=()

leave_clean_roots() {
    local index mount
    for ((index = ${#clean_root_mounts[@]} - 1; index >= 0; index--)); do
        mount=${clean_root_mounts[index]}
        umount -- "$mount" || umount --lazy -- "$mount" || true
    done
    clean_root_mounts=()
}

# make_clean_root BASE DIRECTORY [CODENAME]: a smallest Debian, this one's release or the named one, with
# one user. BASE is such a system made before, or is made now.
make_clean_root() {
    local base=$1 directory=$2 own codename mirror
    # shellcheck source=/dev/null disable=SC1091
    own=$(. /etc/os-release && echo "$VERSION_CODENAME")
    codename=${3:-$own}
    if [[ ! -f $base/etc/debian_version ]]; then
        heading "Making a clean system in $base"
        rm -rf -- "$base.part"
        mkdir -p -- "$base.part"
        # From where this system has its own packages.
        # shellcheck disable=SC2016  # expanded by apt-get
        mirror=$(apt-get indextargets --format '$(REPO_URI)' "Codename: $own" \
            'Created-By: Packages' | head -n 1)
        debootstrap --variant=minbase "$codename" "$base.part" ${mirror:+"$mirror"} \
            >"$base.log" 2>&1 || { cat -- "$base.log"; return 1; }
        mv -- "$base.part" "$base"
    fi
    rm -rf --one-file-system -- "$directory"
    cp -a -- "$base" "$directory"
    clean_root_mounts+=("$directory/proc")
    mount -t proc proc "$directory/proc"
    in_clean_root "$directory" useradd --create-home "$clean_root_user"
}

# in_clean_root DIRECTORY COMMAND...: as root, with nothing of the caller's environment.
in_clean_root() {
    local directory=$1
    shift
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        chroot "$directory" "$@" </dev/null
}

# install_in_clean_root DIRECTORY PACKAGE...: names, or paths inside.
install_in_clean_root() {
    local directory=$1
    shift
    in_clean_root "$directory" apt-get -qq update &&
        in_clean_root "$directory" apt-get -qq -o Dpkg::Use-Pty=0 install -y --no-install-recommends "$@"
}

# as_user_in_clean_root DIRECTORY WHERE COMMAND...: the user's, started in WHERE, on this DISPLAY.
as_user_in_clean_root() {
    local directory=$1 where=$2
    shift 2
    # Execs, so that the process started in the background is the command itself.
    # shellcheck disable=SC2016  # expanded by the inner shell
    exec chroot --userspec="$clean_root_user" "$directory" \
        env -i PATH=/usr/bin:/bin HOME="/home/$clean_root_user" LANG=C.UTF-8 DISPLAY="$DISPLAY" \
        sh -c 'cd "$1" && shift && exec "$@"' sh "$where" "$@" </dev/null
}

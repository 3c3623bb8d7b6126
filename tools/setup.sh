# Sourced by the scripts of the repository, before they look at anything else: for --help it prints
# how the script is used and ends it. All other messages go to stderr, because standard output may
# belong to a chess GUI.

say() { printf 'orvelin: %s\n' "$*" >&2; }

fail() {
    say "$*"
    exit 1
}

# The comment at the head of the script that was started tells how it is used.
print_usage() { sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"; }

# usage_error TEXT...: says what is wrong with the arguments, and how they should be.
usage_error() {
    say "$*"
    print_usage >&2
    exit 2
}

for argument in "$@"; do
    if [ "$argument" = --help ]; then
        print_usage
        exit 0
    fi
done
unset argument

packages_lock=${TMPDIR:-/tmp}/orvelin-packages.$(id -u)

# while_nothing_is_installed COMMAND...: what must not happen in the midst of an installation.
while_nothing_is_installed() { (flock 8 && "$@") 8>"$packages_lock"; }

# install_packages PACKAGE...: installs those Debian packages that are missing. One process at a
# time: the package manager waits for no other.
install_packages() {
    local missing=() package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    while_nothing_is_installed install_now "${missing[@]}" || exit 1
}

install_now() {
    local missing=("$@")
    command -v apt-get >/dev/null || fail "these packages are missing and there is no apt-get to install them: ${missing[*]}"
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "these packages are missing; install them as root: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    say "installing ${missing[*]}"
    if ! "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" </dev/null >&2; then
        # The package lists of a fresh machine may be absent or old.
        "${as_root[@]}" apt-get update </dev/null >&2 || fail "apt-get update failed"
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" </dev/null >&2 ||
            fail "could not install: ${missing[*]}"
    fi
}

# source_date: sets SOURCE_DATE_EPOCH, the time of all that is packed, unless it is set: the one that the
# package of the sources tells, or that of the last commit, or of the last entry of Debian's changelog.
# To be called in the root.
source_date() {
    SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(cat SOURCE_DATE 2>/dev/null || git log -1 --format=%ct 2>/dev/null ||
        dpkg-parsechangelog -l packaging/debian/changelog -S Timestamp)}
    export SOURCE_DATE_EPOCH
}

# settle_folder FOLDER: the files in it get the time of all that is packed, and the rights that files have
# for most people, whatever those of whoever makes it are.
settle_folder() {
    chmod -R u=rwX,go=rX "$1"
    find "$1" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
}

# tar_folder PLACE NAME...: these files and folders in PLACE as an archive, on standard output. Owners,
# rights and times do not depend on who makes it.
tar_folder() {
    LC_ALL=C tar -C "$1" --format=gnu --sort=name --owner=0 --group=0 --numeric-owner --mode=u=rwX,go=rX \
        --mtime="@$SOURCE_DATE_EPOCH" -cf - "${@:2}"
}

# pack_folder PLACE NAME...: the same as a tarball.
pack_folder() { tar_folder "$@" | gzip -9n; }

# built_version FOLDER: the version of what is built in a build folder.
built_version() { sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$1/CMakeCache.txt"; }

build_packages=(cmake ninja-build g++)
# What the tools need beside these.
tool_packages=(libcli11-dev rapidjson-dev libsqlite3-dev)
# What the programs for other systems are built with, tools among them.
arm64_packages=("${build_packages[@]}" g++-aarch64-linux-gnu qemu-user-static libcli11-dev rapidjson-dev dpkg-dev)
windows_packages=("${build_packages[@]}" g++-mingw-w64-x86-64-posix libcli11-dev rapidjson-dev nsis zip dpkg-dev)

# set_up_native TARGET...: builds for this machine what another system's programs are compared with,
# and puts the folder into PLATFORM_NATIVE; unless that names one already.
set_up_native() {
    [ -z "${PLATFORM_NATIVE-}" ] || return 0
    install_packages "${build_packages[@]}" libgtest-dev libcli11-dev rapidjson-dev libsqlite3-dev
    [ -f build/check/CMakeCache.txt ] || cmake --preset check >&2
    cmake --build --preset check --target "$@" >&2
    PLATFORM_NATIVE=$PWD/build/check
}

# test_platform FOLDER RUNNER PATTERN: the tests of tests/platforms on the programs of a build folder.
test_platform() {
    PLATFORM_FOLDER=$PWD/$1 PLATFORM_RUNNER=$2 PLATFORM_NATIVE=$PLATFORM_NATIVE \
        PLATFORM_BOOK=$PLATFORM_NATIVE/Orvelin.bin PLATFORM_DATA=$PWD/tests/data \
        python3 -B "$PWD/tests/support/run_tests.py" "$PWD/tests/platforms" "$3"
}

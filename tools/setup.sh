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
    (
        flock 8 && install_now "${missing[@]}"
    ) 8>"${TMPDIR:-/tmp}/orvelin-packages.$(id -u)" || exit 1
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

build_packages=(cmake ninja-build g++)

# Sourced by the scripts at the root of the repository. All messages go to stderr, because
# standard output may belong to a chess interface.

say() { printf 'orvelin: %s\n' "$*" >&2; }

fail() {
    say "$*"
    exit 1
}

# install_packages PACKAGE...: installs those Debian packages that are missing.
install_packages() {
    local missing=() package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
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

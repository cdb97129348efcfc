# Sourced by ./run and ./test: installs what is missing and configures a preset.

# What a build and the tests need beyond a bare Debian 12.
PACKAGES=(
    g++ cmake ninja-build ccache
    qt6-base-dev qt6-tools-dev qt6-l10n-tools
    libboost-regex-dev libpcre2-dev libicu-dev libxxhash-dev pkg-config libgtest-dev libgmock-dev
    clang libclang-rt-14-dev
    xvfb xauth openbox xdotool attr
    dbus at-spi2-core
    desktop-file-utils appstream
    e2fsprogs xfsprogs btrfs-progs
    git
)

# The block matcher. Both provide it and exclude each other: what is there stays. Hyperscan is for Intel processors only.
if [ "$(uname -m)" != x86_64 ] ||
    dpkg-query -W -f='${Status}' libvectorscan-dev 2>/dev/null | grep -q '^install ok installed$'; then
    PACKAGES+=(libvectorscan-dev)
else
    PACKAGES+=(libhyperscan-dev)
fi

say() { printf '%s\n' "$*" >&2; }

missing_packages() {
    local package
    for package in "${PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || echo "$package"
    done
}

install_missing() {
    if ! command -v apt-get >/dev/null; then
        if command -v cmake >/dev/null && command -v ninja >/dev/null; then
            return # another system, set up by hand: let the build tell what it lacks
        fi
        say "There is no apt here. Please install these, by your system's own names, and try again:"
        say "  ${PACKAGES[*]}"
        exit 1
    fi
    local missing as_root=()
    mapfile -t missing < <(missing_packages)
    [ "${#missing[@]}" -eq 0 ] && return
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            say "These packages are missing, and neither root nor sudo is at hand to install them:"
            say "  ${missing[*]}"
            exit 1
        fi
        as_root=(sudo)
    fi
    say "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

build_preset() { # preset [target...]
    local preset=$1
    shift
    local log
    log=$(mktemp)
    if ! cmake --preset "$preset" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        exit 1
    fi
    rm -f "$log"
    if [ $# -gt 0 ]; then
        cmake --build --preset "$preset" --target "$@" >&2
    else
        cmake --build --preset "$preset" >&2
    fi
}

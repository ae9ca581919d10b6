# Sourced by run and test: the Debian 12 packages that each of them needs, and how missing ones are installed.
# shellcheck shell=bash

# To build the program and to show it. libqt6svg6 holds the plugins that draw the pictures, and comes with its -dev.
# shellcheck disable=SC2034  # used by the scripts that source this file
build_packages=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev libgl-dev
    libsqlite3-dev libutf8proc-dev
    fonts-dejavu-core
)

# A screen where there is none.
# shellcheck disable=SC2034
virtual_display_packages=(xvfb openbox xauth)

# To run the tests: the frameworks; tools that make discs and pictures; packages whose files are old and new
# executables with resources in them; a display; the second compiler for the fuzz targets; what the checks call.
# shellcheck disable=SC2034
test_packages=(
    libgtest-dev libgmock-dev
    xorriso genisoimage icoutils pev
    grub-rescue-pc memtest86+ nsis-common
    xvfb xauth openbox xdotool imagemagick
    clang libclang-rt-14-dev clang-format clang-tidy
    python3 universal-ctags shellcheck git sqlite3 procps
)

# For the benchmarks, which ./test builds and nobody runs but by hand.
# shellcheck disable=SC2034
bench_packages=(libbenchmark-dev)

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null | cut -c1-2)" = ii ]
}

missing_packages() {
    local package
    for package in "$@"; do
        is_installed "$package" || printf '%s\n' "$package"
    done
}

# Runs a command with root rights, and says so where that asks for a password.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        note "root rights are needed for this alone: asking sudo"
        if [ "${CI:-}" = true ]; then sudo -n "$@"; else sudo "$@"; fi
    elif [ "${CI:-}" != true ] && command -v su >/dev/null; then
        note "root rights are needed for this alone: asking su for root's password"
        su root -c "$(printf '%q ' "$@")"
    else
        die "root rights are needed to run: $*"
    fi
}

# install_packages NAME...: installs those that are missing; says what it does, and does nothing when none is.
install_packages() {
    step "Looking for missing packages"
    if ! command -v dpkg-query >/dev/null; then
        note "this is not a Debian system; these Debian 12 packages, or what they stand for, are needed:"
        note "$*"
        return
    fi
    local missing
    mapfile -t missing < <(missing_packages "$@")
    if [ "${#missing[@]}" -eq 0 ]; then
        note "all $# are installed"
        return
    fi
    step "Installing ${missing[*]}"
    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300)
    as_root "${apt[@]}" update
    as_root "${apt[@]}" install -y --no-install-recommends "${missing[@]}"
    mapfile -t missing < <(missing_packages "${missing[@]}")
    [ "${#missing[@]}" -eq 0 ] || die "still missing: ${missing[*]}"
}

# Sourced by run and test: says what is being done, and which step failed.
# shellcheck shell=bash

program_name=${0##*/}
current_step="starting"

step() {
    current_step=$1
    printf '==> %s\n' "$1"
}

note() {
    printf '    %s\n' "$1"
}

die() {
    trap - ERR
    printf '%s: %s\n' "$program_name" "$1" >&2
    exit 1
}

report_failure() {
    local status=$?
    printf '\n%s: FAILED (exit %d) while: %s\n' "$program_name" "$status" "$current_step" >&2
    exit "$status"
}
trap report_failure ERR

# configure PRESET, from the project's folder. A build folder that was made for the tree at another place is made
# anew, because its cache names the old place in every line.
configure() {
    local cache=build/$1/CMakeCache.txt
    local fresh=()
    if [ -f "$cache" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$cache"; then
        note "the build folder belongs to another place: starting it afresh"
        fresh=(--fresh)
    fi
    cmake --preset "$1" "${fresh[@]}"
}

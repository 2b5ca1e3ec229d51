# Shared by the scripts of this folder; sourced, not run.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# step TEXT COMMAND...: runs the command with its output in a log; says what was done and how long it
# took, or what failed and where the log is.
step() {
    local text=$1 log started
    shift
    mkdir -p "$logs"
    log="$logs/$(printf '%s' "${text,,}" | tr -cs 'a-z0-9' '-').log"
    started=$SECONDS
    if "$@" >"$log" 2>&1; then
        printf '%-38s %4d s\n' "$text" $((SECONDS - started))
        return
    fi
    printf '%s: FAILED\n\n' "$text" >&2
    { grep -E -A6 'error|Error|FAILED|CMake Error' "$log" || tail -n 30 "$log"; } | tail -n 40 >&2
    printf '\nThe whole log: %s\n' "$log" >&2
    exit 1
}

# configure_and_build PRESET
configure_and_build() {
    logs="build/$1/logs"
    step "Configuring ($1)" cmake --preset "$1"
    step "Building ($1)" cmake --build --preset "$1"
}

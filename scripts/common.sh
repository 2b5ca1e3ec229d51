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

# configure_and_build PRESET [TARGET...]
configure_and_build() {
    local preset=$1
    shift
    logs="build/$preset/logs"
    step "Configuring ($preset)" cmake --preset "$preset"
    step "Building ($preset)" cmake --build --preset "$preset" ${1:+--target "$@"}
}

qt_windows_cache=${XDG_CACHE_HOME:-~/.cache}/vell/qt-windows

# find_qt_windows: VELL_QT_WINDOWS is then the folder of a Qt for Windows: the given one, a given archive
# unpacked, or our own, which is built when there is none.
find_qt_windows() {
    local given=${VELL_QT_WINDOWS:-$qt_windows_cache}
    [[ $given = /* ]] || given=$OLDPWD/$given # as the caller means it
    if [ -f "$given" ]; then
        logs=build/logs
        rm -rf build/qt-windows
        mkdir -p build/qt-windows
        step "Unpacking Qt for Windows" tar -xf "$given" -C build/qt-windows --strip-components=1
        given=$PWD/build/qt-windows
    elif [ -z "${VELL_QT_WINDOWS:-}" ] && [ ! -e "$given" ]; then
        scripts/build-qt-windows
    fi
    [ -e "$given/lib/cmake/Qt5/Qt5Config.cmake" ] \
        || fail "$given is neither the folder of a Qt 5 for Windows nor an archive of one"
    export VELL_QT_WINDOWS=$given
}

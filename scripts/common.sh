# Shared by the scripts of this folder; sourced, not run.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# step TEXT COMMAND...: runs the command with its output in a log; prints the text and the time, or
# the errors and the path of the log.
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

windows_cache=${XDG_CACHE_HOME:-~/.cache}/vell

# find_for_windows VARIABLE NAME FILE SCRIPT: sets the variable to the folder of a library for Windows: the folder in
# it, the unpacked archive in it, or the default folder, which the script builds if it is missing.
find_for_windows() {
    local variable=$1 name=$2 file=$3 script=$4
    local given=${!variable:-$windows_cache/$name}
    [[ $given = /* ]] || given=$OLDPWD/$given # as the caller means it
    if [ -f "$given" ]; then
        logs=build/logs
        rm -rf "build/$name"
        mkdir -p "build/$name"
        step "Unpacking $name" tar -xf "$given" -C "build/$name" --strip-components=1
        given=$PWD/build/$name
    elif [ -z "${!variable:-}" ] && [ ! -e "$given" ]; then
        "$script"
    fi
    [ -e "$given/$file" ] || fail "$given is neither a folder with $file nor an archive of one"
    export "$variable=$given"
}

# find_windows_libraries: Qt and libcurl for Windows.
find_windows_libraries() {
    find_for_windows VELL_QT_WINDOWS qt-windows lib/cmake/Qt5/Qt5Config.cmake scripts/build-qt-windows
    find_for_windows VELL_CURL_WINDOWS curl-windows lib/cmake/CURL/CURLConfig.cmake scripts/build-curl-windows
}

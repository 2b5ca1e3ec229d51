#!/usr/bin/env bash
# Runs a Windows program under Wine, without a desktop.
#   wine-run.sh [--dlls FOLDER]... [--through PROGRAM] PROGRAM.exe [ARGUMENTS]
#     --dlls FOLDER      Windows finds DLLs there; those beside the program it finds anyway
#     --through PROGRAM  a program of this system, which is given the command line of Wine to run
# Environment:
#   VELL_WINEPREFIX  Wine's folder, by default ~/.cache/vell/wine; made on first use (15 s, 700 MB)
#   QT_...           handed on to the program
set -euo pipefail

# winname PATH: as a Windows program names it. Z: is the root.
winname() {
    local path
    path=$(readlink -m -- "$1")
    printf 'Z:%s' "${path//\//\\}"
}

folders=
through=()
while [ $# -gt 0 ]; do
    case $1 in
        --dlls) folders+=${folders:+;}$(winname "$2"); shift 2 ;;
        --through) through=("$2"); shift 2 ;;
        *) break ;;
    esac
done
[ $# -gt 0 ] || { sed -n '2,8s/^# \?//p' "$0" >&2; exit 2; }

export WINEPATH=$folders
# Not WINEPREFIX: the settings below are not for a Wine that somebody works with.
export WINEPREFIX=${VELL_WINEPREFIX:-${XDG_CACHE_HOME:-~/.cache}/vell/wine}
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# No questions about Mono and Gecko.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}

# Without a console Qt writes to the debugger instead of the standard error.
: "${QT_ASSUME_STDERR_HAS_CONSOLE=1}" "${QT_QPA_PLATFORM=offscreen}"
# The offscreen platform reads fonts from a folder, and Qt ships none.
: "${QT_QPA_FONTDIR=$(winname /usr/share/fonts/truetype/dejavu)}"
# Wine keeps QT_X of this system from the program, but hands WINEQT_X on as QT_X.
for name in ${!QT_*}; do
    export "WINE$name=${!name}"
done

# Debian has no wine64 in PATH, and its wine asks for the 32-bit one.
wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
server=$(command -v wineserver64 || echo /usr/lib/wine/wineserver64)
[ -x "$wine" ] && [ -x "$server" ] || {
    echo "wine-run.sh: Wine is missing; scripts/setup windows installs it" >&2
    exit 127
}

make_prefix() {
    "$wine" wineboot -i || return
    # Without 32-bit Wine it starts as Windows 7.
    "$wine" winecfg -v win10 || true
    # With the usual driver and no X server Wine now and then refuses even the invisible window of Qt's event
    # loop, which then hangs. This one needs no X server.
    "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f || return
    "$server" -w || true # until it is on the disk
    touch "$WINEPREFIX/.ready"
}

# The first program of a session also starts Wine's own background programs, and those keep its output
# open: who reads that through a pipe, as CTest does, would wait for the end of the session. So they
# are started beforehand, away from our output.
session() {
    flock 9
    # 9 stays with this shell, or the background programs would hold the lock.
    [ -e "$WINEPREFIX/.ready" ] || make_prefix 9>&- || return
    if ! "$server" -k0 9>&-; then
        "$server" -p20 9>&- || true # seconds that the session outlives its last program
        "$wine" cmd /c exit 9>&- || return
    fi
}
mkdir -p "$(dirname "$WINEPREFIX")"
session 9>"$WINEPREFIX.lock" </dev/null >"$WINEPREFIX.log" 2>&1 || {
    echo "wine-run.sh: Wine does not start in $WINEPREFIX; see $WINEPREFIX.log" >&2
    exit 127
}

# With addresses at random about one program in ten thousand does not start under Wine ("Internal error"); a
# sandbox may not let us fix them.
fixed=()
! setarch -R true 2>/dev/null || fixed=(setarch -R)
exec "${fixed[@]}" "${through[@]}" "$wine" "$@"

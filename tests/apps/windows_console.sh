#!/usr/bin/env bash
# velldoc in a console of Windows: Wine draws one on a pseudo-terminal.
#   windows_console.sh SOURCE SERVICE COMMAND...     the command that runs velldoc
set -euo pipefail
source "$1/tests/support/with_service.sh"
service=$2 velldoc=("${@:3}")

# on_console ARGUMENTS...: what stands in the console at the end. Wine erases a cell and steps over it for a blank.
on_console() {
    script -qec "$(printf '%q ' "${velldoc[@]}" --url "$address" "$@")" /dev/null </dev/null \
        | tr -d '\r' | sed -E 's/\x1b\[1C/ /g; s/\x1b\[[0-9;?]*[A-Za-z]//g'
}

start_service "$service"
"${velldoc[@]}" --url "$address" mkdir -p '/图纸 R&D 100%/😀'

shown=$(on_console ls /)
[ "$shown" = "图纸 R&D 100%/" ] || fail "the console showed: $shown"

shown=$(on_console ls -l /)
grep -q '^Kind  ' <<<"$shown" || fail "colours are not understood there, but came: $shown"
grep -q '  图纸 R&D 100%/$' <<<"$shown" || fail "the table was: $shown"

# Through a pipe it is UTF-8 with plain line ends.
bytes=$("${velldoc[@]}" --url "$address" ls -R | od -An -tx1 | tr -d ' \n')
expected=$(printf '/:\n图纸 R&D 100%%/\n\n/图纸 R&D 100%%:\n😀/\n\n/图纸 R&D 100%%/😀:\n' | od -An -tx1 | tr -d ' \n')
[ "$bytes" = "$expected" ] || fail "the pipe got $bytes"
echo "PASS   : texts are whole in a console and in a pipe"

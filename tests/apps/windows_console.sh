#!/usr/bin/env bash
# velldoc in a console of Windows: Wine draws one on a pseudo-terminal.
#   windows_console.sh SOURCE SERVICE COMMAND...     the command that runs velldoc
set -euo pipefail
source "$1/tests/support/with_service.sh"
service=$2 velldoc=("${@:3}")

# on_console ARGUMENTS...: what is printed in the console; the standard input has the keys that are pressed. Wine
# erases a cell and steps over it for a blank.
on_console() {
    script -qec "$(printf '%q ' "${velldoc[@]}" --url "$address" "$@")" /dev/null \
        | tr -d '\r' | sed -E 's/\x1b\[1C/ /g; s/\x1b\[[0-9;?]*[A-Za-z]//g'
}

start_service "$service" --access-log "$work/access.log" \
    --fault slow=500,verb=POST,path=/base-service/largefiles,times=0
"${velldoc[@]}" --url "$address" mkdir -p '/图纸 R&D 100%/😀'

shown=$(on_console ls / </dev/null)
[ "$shown" = "图纸 R&D 100%/" ] || fail "the console showed: $shown"

shown=$(on_console ls -l / </dev/null)
grep -q '^Type  ' <<<"$shown" || fail "colours are not understood there, but came: $shown"
grep -q '  图纸 R&D 100%/$' <<<"$shown" || fail "the table was: $shown"

# Through a pipe it is UTF-8 with plain line ends.
bytes=$("${velldoc[@]}" --url "$address" ls -R | od -An -tx1 | tr -d ' \n')
expected=$(printf '/:\n图纸 R&D 100%%/\n\n/图纸 R&D 100%%:\n😀/\n\n/图纸 R&D 100%%/😀:\n' | od -An -tx1 | tr -d ' \n')
[ "$bytes" = "$expected" ] || fail "the pipe got $bytes"
# Ctrl-C while the file goes up.
head -c 60000000 /dev/zero >"$work/scan.zip"
press_when_sending() {
    until grep -qs 'POST /base-service/largefiles 200' "$work/access.log"; do sleep 0.1; done
    printf '\003'
}
code=0
shown=$(on_console put "$work/scan.zip" / < <(press_when_sending)) || code=$?
[ "$code" = 130 ] || fail "Ctrl-C ended it with $code: $shown"
grep -q 'The same command continues from here' <<<"$shown" || fail "Ctrl-C left: $shown"
chunks=$(grep -c 'POST /base-service/largefiles 200' "$work/access.log")
[ "$chunks" -lt 15 ] || fail "Ctrl-C came after all $chunks chunks"

echo "PASS   : texts are whole in a console and in a pipe, and Ctrl-C ends an upload"

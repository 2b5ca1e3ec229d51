#!/usr/bin/env bash
# Runs examples/console_upload against a service.
#   examples.sh SOURCE CONSOLE_UPLOAD VELL_SERVICE VELLDOC
set -euo pipefail
source=$1 console_upload=$2 service=$3 velldoc=$4
source "$source/tests/support/with_service.sh"

start_service "$service"
mkdir -p "$work/plans/old"
echo one >"$work/plans/a.dwg"
echo two >"$work/plans/old/b.dwg"

output=$("$console_upload" "$address" example "" "$work/plans" "$work/plans/a.dwg" 2>&1) \
    || fail "the upload failed: $output"
listed=$("$velldoc" --url "$address" --project example tree /)
for name in plans a.dwg old b.dwg; do
    grep -q "$name" <<<"$listed" || fail "$name was not uploaded: $listed"
done

# A failure tells why, and is in the exit code.
if output=$("$console_upload" "$address" example "" "$work/missing" 2>&1); then
    fail "a missing file was uploaded"
fi
[ -n "$output" ] || fail "the upload failed without a word"
if output=$("$console_upload" http://127.0.0.1:9/ example "" "$work/plans" 2>&1); then
    fail "the upload succeeded without a service"
fi
[ -n "$output" ] || fail "the upload failed without a word"
echo "PASS   : the example uploads, and tells what fails"

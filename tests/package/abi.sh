#!/usr/bin/env bash
# The interface of the built libraries is the one that packaging/abi describes, or has more: programs that were linked
# with it still work.
#   abi.sh SOURCE BUILD [--renew]
# --renew describes the libraries as they are now. The build needs its debug information.
set -euo pipefail
source=$(realpath "$1") build=$(realpath "$2") renew=${3:-}
kept=$source/packaging/abi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/installed" --component Development >"$work/install.log"
describe() {
    abidw --exported-interfaces-only --type-id-style hash --short-locs --no-parameter-names --no-corpus-path \
        --no-comp-dir-path --no-elf-needed --no-write-default-sizes "$1" \
        | python3 "$source/tests/package/own_interface.py" "$work/installed/include" >"$2"
}

broken=0
for library in VellNetwork VellPublicFun VellSoftBase VellDocumentData VellClient; do
    describe "$build/lib/lib$library.so" "$work/$library.abi"
    if [ "$renew" = --renew ]; then
        mkdir -p "$kept"
        cp "$work/$library.abi" "$kept"
    # What is new breaks nobody.
    elif ! abidiff --no-added-syms "$kept/$library.abi" "$work/$library.abi" >"$work/difference"; then
        printf '%s:\n%s\n' "$library" "$(<"$work/difference")"
        broken=1
    fi
done
if [ $broken -ne 0 ]; then
    echo "FAIL!  : programs that were linked with the library would break. CONTRIBUTING.md says what to do"
    exit 1
fi
echo "PASS   : $(du -ch "$work"/*.abi | tail -n 1 | cut -f1) of interface"

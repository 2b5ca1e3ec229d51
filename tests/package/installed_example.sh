#!/usr/bin/env bash
# Installs the build to a new prefix, builds examples/minimal against it from outside, and runs it
# against the service.
#   installed_example.sh SOURCE BUILD SERVICE CXX_FLAGS
set -euo pipefail
source=$1 build=$2 service=$3 flags=$4
source "$source/tests/support/with_service.sh"

cmake --install "$build" --prefix "$work/prefix" >"$work/install.log"
cp -r "$source/examples/minimal" "$work/minimal" # so that nothing is found beside it
cmake -G Ninja -S "$work/minimal" -B "$work/minimal/build" -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="$flags" >"$work/configure.log"
cmake --build "$work/minimal/build"

# The installed headers name nothing of the tree that they came from.
! grep -rlE "$source|$build" "$work/prefix/include" "$work/prefix/lib"*/cmake 2>/dev/null \
    || fail "an installed header or CMake file holds a path of the source tree"

start_service "$service"
minimal="$work/minimal/build/minimal"
export LD_LIBRARY_PATH=$(dirname "$(find "$work/prefix" -name 'libVellDocumentData.so' | head -n 1)")
output=$("$minimal" "$address" example) || fail "the example failed: $output"
[ "$output" = "dir Drawings" ] || fail "the example printed: $output"

# A failure tells why.
if message=$("$minimal" http://127.0.0.1:9/ example 2>&1 >/dev/null); then
    fail "the example succeeded without a service"
fi
[ -n "$message" ] || fail "the example failed without a word"
echo "PASS   : the installed library was found, linked and used"

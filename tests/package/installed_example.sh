#!/usr/bin/env bash
# Installs the build, moves the installed tree elsewhere, builds examples/minimal and examples/console_upload against it from outside, with
# CMake and with pkg-config, and runs all programs with no variable set that would help them to find their libraries.
#   installed_example.sh SOURCE BUILD [CXX_FLAGS]
set -euo pipefail
source=$1 build=$2 flags=${3:-}
unset LD_LIBRARY_PATH LD_PRELOAD
source "$source/tests/support/with_service.sh"

cmake --install "$build" --prefix "$work/installed" >"$work/install.log"
mv "$work/installed" "$work/prefix"
cp -r "$source/examples/minimal" "$work/minimal" # so that nothing is found beside it
cmake -G Ninja -S "$work/minimal" -B "$work/minimal/build" -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="$flags" >"$work/configure.log"
cmake --build "$work/minimal/build"

# The client layer is a component of the package.
mkdir "$work/upload"
cp "$source/examples/console_upload/main.cpp" "$work/upload"
cat >"$work/upload/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.21)
project(upload LANGUAGES CXX)
find_package(VellDocumentData REQUIRED COMPONENTS Client)
add_executable(upload main.cpp)
target_link_libraries(upload PRIVATE Vell::Client)
END
cmake -G Ninja -S "$work/upload" -B "$work/upload/build" -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="$flags" >"$work/configure.log"
cmake --build "$work/upload/build"

# by_hand SOURCE PROGRAM PACKAGE: compiles with what pkg-config tells and nothing else.
export PKG_CONFIG_PATH=$work/prefix/lib/pkgconfig
by_hand() {
    local libraries
    libraries=$(pkg-config --variable=libdir "$3")
    # shellcheck disable=SC2046,SC2086 # words are what they give
    c++ -std=c++17 -fPIC $flags -o "$2" "$1" $(pkg-config --cflags --libs "$3") "-Wl,-rpath,$libraries"
}
by_hand "$source/examples/minimal/main.cpp" "$work/minimal-by-hand" VellDocumentData
by_hand "$source/examples/console_upload/main.cpp" "$work/upload-by-hand" VellClient
for header in VellNetwork/NetworkManager.h VellPublicFun/VellPub.h VellSoftBase/VellSoftCache.h; do
    printf '#include <%s>\nint main() {}\n' "$header" >"$work/alone.cpp"
    by_hand "$work/alone.cpp" "$work/alone" "${header%/*}"
done

# The installed headers name nothing of the tree that they came from.
! grep -rlE "$source|$build" "$work/prefix/include" "$work/prefix/lib"*/{cmake,pkgconfig} 2>/dev/null \
    || fail "an installed header or package file holds a path of the source tree"

start_service "$work/prefix/bin/vell-service"
minimal="$work/minimal/build/minimal"
for program in "$minimal" "$work/minimal-by-hand"; do
    output=$("$program" "$address" "$(basename "$program")") || fail "the example failed: $output"
    [ "$output" = "dir Drawings" ] || fail "the example printed: $output"
done

echo content >"$work/plan.dwg"
"$work/upload/build/upload" "$address" minimal "" "$work/plan.dwg" 2>"$work/upload.log" \
    || fail "the client layer did not upload: $(cat "$work/upload.log")"
"$work/upload-by-hand" "$address" minimal-by-hand "" "$work/plan.dwg" 2>"$work/upload.log" \
    || fail "the client layer did not upload: $(cat "$work/upload.log")"

# A failure tells why.
if message=$("$minimal" http://127.0.0.1:9/ example 2>&1 >/dev/null); then
    fail "the example succeeded without a service"
fi
[ -n "$message" ] || fail "the example failed without a word"

# Neither depends on the tree that was built.
for binary in "$work/prefix/bin"/* "$work/prefix/lib"*/libVell*.so; do
    ldd "$binary" >"$work/ldd.log"
    ! grep -E 'not found' "$work/ldd.log" || fail "$binary does not find all libraries"
    ! grep -E 'libVell' "$work/ldd.log" | grep -vF "$work/prefix/" \
        || fail "$binary uses a library from outside of the installed tree"
done
"$work/prefix/bin/velldoc" --url "$address" --project minimal ls >"$work/ls.log"
grep -q plan.dwg "$work/ls.log" || fail "the installed velldoc does not see the uploaded file"
grep -q Drawings "$work/ls.log" || fail "the installed velldoc does not see the folder"
echo "PASS   : the installed library was found, linked and used"

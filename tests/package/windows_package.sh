#!/usr/bin/env bash
# The zip for Windows, unpacked elsewhere: velldoc.exe runs from it with nothing but what is in it, and
# examples/minimal is built against it and runs beside its DLLs.
#   windows_package.sh SOURCE BUILD QT CURL SERVICE TOOLCHAIN WINE_RUN
set -euo pipefail
source "$1/tests/support/with_service.sh"
source=$1 build=$2 qt=$3 curl=$4 service=$5 toolchain=$6 wine_run=$7

"$source/packaging/windows/pack.sh" "$source" "$build" "$qt" "$curl" "$work/VellDocumentData.zip" >"$work/pack.log"
mkdir "$work/里 elsewhere"
(cd "$work/里 elsewhere" && unzip -q "$work/VellDocumentData.zip")
package=$(echo "$work/里 elsewhere/"*)
[ "$(basename "$package")" = VellDocumentData ] || fail "the folder is $package"
for file in README.txt bin/{VellDocumentData,VellNetwork,VellPublicFun,VellSoftBase,Qt5Core,libcurl,libstdc++-6}.dll \
    bin/velldoc.exe bin/platforms/qwindows.dll lib/libVellDocumentData.dll.a \
    include/VellDocumentData/document_service/VellDocumentData.h include/VellPlatform/VellNetwork/NetworkManager.h \
    share/VellDocumentData/translations/VellDocumentData_en.qm licenses/Qt/LICENSE.LGPL3 \
    licenses/libcurl.txt; do
    [ -s "$package/$file" ] || fail "$file is missing: $(find "$package" -type f)"
done
! grep -rlE "$(realpath "$source")|$(realpath "$build")" "$package" \
    || fail "a file holds a path of the source tree"

start_service "$service"
velldoc=("$wine_run" "$package/bin/velldoc.exe" --url "$address")
"${velldoc[@]}" mkdir -p '/Drawings'
"${velldoc[@]}" put "Z:${package//\//\\}\\README.txt" /Drawings 2>"$work/said"
grep -q '^1 file stored' "$work/said" || fail "velldoc put said: $(cat "$work/said")"
"${velldoc[@]}" get /Drawings/README.txt - | cmp - "$package/README.txt" || fail "it came back changed"

cp -r "$source/examples/minimal" "$work/minimal" # so that nothing is found beside it
VELL_QT_WINDOWS="$qt" VELL_CURL_WINDOWS="$curl" cmake -G Ninja -S "$work/minimal" -B "$work/minimal/build" \
    -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_PREFIX_PATH="$package" -DCMAKE_BUILD_TYPE=Release \
    >"$work/configure.log" || fail "$(tail -n 20 "$work/configure.log")"
cmake --build "$work/minimal/build"
cp "$work/minimal/build/minimal.exe" "$package/bin"
output=$("$wine_run" "$package/bin/minimal.exe" "$address" example | tr -d '\r')
[ "$output" = "dir Drawings" ] || fail "the example printed: $output"
echo "PASS   : unpacked, run and built against ($(du -h "$work/VellDocumentData.zip" | cut -f1))"

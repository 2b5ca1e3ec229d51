#!/usr/bin/env bash
# Makes the zip for Windows from a build of the preset "windows".
#   pack.sh SOURCE BUILD QT CURL ZIP
# Everything is in one folder, which is named as the zip is: what the build installs, the DLLs of Qt, of libcurl and of
# the compiler that it needs, those of Qt's plugins that a program with windows needs, licences, a page to read first.
set -euo pipefail
source=$(realpath "$1") build=$(realpath "$2") qt=$(realpath "$3") curl=$(realpath "$4") zip=$(realpath -m "$5")
objdump=x86_64-w64-mingw32-objdump

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
name=$(basename "$zip" .zip)
top=$work/$name

cmake --install "$build" --prefix "$top" --strip

# Found beside a program without any setting.
for plugin in platforms/qwindows styles/qwindowsvistastyle imageformats/{qgif,qico,qjpeg}; do
    install -D -t "$top/bin/$(dirname $plugin)" "$qt/plugins/$plugin.dll"
done

# add_needed FILE: the DLLs of Qt, libcurl and the compiler that FILE needs, and those that they need.
add_needed() {
    local dll folder
    for dll in $("$objdump" --private-headers "$1" | sed -n 's/^[[:space:]]*DLL Name: //p'); do
        for folder in "$qt/bin" "$curl/bin"; do
            if [ -e "$folder/$dll" ] && [ ! -e "$top/bin/$dll" ]; then
                cp "$folder/$dll" "$top/bin"
                add_needed "$folder/$dll"
            fi
        done
    done
}
while read -r file; do
    add_needed "$file"
done < <(find "$top/bin" -name '*.dll' -o -name '*.exe')

mkdir "$top/licenses"
cp -r "$qt/licenses" "$top/licenses/Qt"
cp /usr/share/doc/libqt5core5a/copyright "$top/licenses/Qt/copyright.txt"
cp "$curl/COPYING" "$top/licenses/libcurl.txt"
cp /usr/share/doc/gcc-mingw-w64-base/copyright "$top/licenses/GCC runtime.txt"
cp /usr/share/doc/mingw-w64-x86-64-dev/copyright "$top/licenses/MinGW-w64 runtime.txt"
# Where an editor of Windows shows it as it is.
sed 's/$/\r/' "$source/packaging/windows/README.txt" >"$top/README.txt"

rm -f "$zip"
(cd "$work" && zip --quiet --recurse-paths -9 "$zip" "$name")

#!/usr/bin/env bash
# Makes what Windows users get of a build: dist.sh BUILD LIBRARIES
# BUILD/dist gets Zelk-VERSION/ with all that the programs need, the same as Zelk-VERSION-win64.zip, and an installer.
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
build="$(realpath "$1")"
prefix="$(realpath "$2")/prefix"
triple=x86_64-w64-mingw32
version="$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")"
name="Zelk-$version"
dist="$build/dist"
folder="$dist/$name"

rm -rf "$dist"
mkdir -p "$folder/licences"

# --- the programs and every DLL that one of the files here asks for and Windows does not have ------------------------------

places=("$prefix/bin" "$(dirname "$("$triple-g++-posix" -print-file-name=libstdc++-6.dll)")" "/usr/$triple/lib")

dlls_of() { # FILE...
    "$triple-objdump" -p "$@" | sed -n 's/^\s*DLL Name: //p' | sort -u
}

take() { # FILE TO
    "$triple-strip" -o "$2" "$1"
}

take "$build/bin/zelk.exe" "$folder/zelk.exe"
take "$build/bin/zelkc.exe" "$folder/zelkc.exe"
for plugin in platforms/qwindows styles/qwindowsvistastyle; do
    mkdir -p "$folder/$(dirname "$plugin")"
    take "$prefix/plugins/$plugin.dll" "$folder/$plugin.dll"
done
before=-1
while [ "$before" -ne "$(find "$folder" -type f | wc -l)" ]; do
    before="$(find "$folder" -type f | wc -l)"
    for dll in $(find "$folder" -name '*.exe' -o -name '*.dll' | while read -r file; do dlls_of "$file"; done | sort -u); do
        [ ! -f "$folder/$dll" ] || continue
        for place in "${places[@]}"; do
            if [ -f "$place/$dll" ]; then take "$place/$dll" "$folder/$dll" && break; fi
        done
    done
done

# --- licences ---------------------------------------------------------------------------------------------------------------

text() { sed 's/$/\r/' "$1"; } # as the editor of Windows wants it
text "$here/../../LICENSE" >"$folder/LICENSE.txt"
for licence in "$prefix"/licences/*; do
    text "$licence" >"$folder/licences/$(basename "$licence").txt"
done
text /usr/share/doc/g++-mingw-w64-x86-64-posix/copyright >"$folder/licences/gcc.txt"
text /usr/share/doc/mingw-w64-x86-64-dev/copyright >"$folder/licences/mingw-w64.txt"
text /usr/share/doc/libz-mingw-w64-dev/copyright >"$folder/licences/zlib.txt"
{
    echo "Zelk stands on these libraries. Their sources are those of the packages of Debian, http://deb.debian.org/debian,"
    echo "built as packaging/windows/libraries.sh in Zelk's sources says. You may put DLLs of your own in the place of these."
    echo
    find "$prefix/built" -type f -printf '%f\n' | sed 's/-[0-9a-f]*$//' | LC_ALL=C sort
} | sed 's/$/\r/' >"$folder/licences/README.txt"

# --- zip and installer ------------------------------------------------------------------------------------------------------

(cd "$folder" && find . -type f -printf 'Delete "$INSTDIR/%P"\n' | LC_ALL=C sort && find . -mindepth 1 -depth -type d -printf 'RMDir "$INSTDIR/%P"\n') | tr / '\\' >"$build/installed.nsh"
(cd "$dist" && cmake -E tar cf "$name-win64.zip" --format=zip "$name")
makensis -V2 -NOCD -DVERSION="$version" -DFOLDER="$folder" -DFILES="$build/installed.nsh" -DICON="$build/icons/zelk.ico" \
    -DOUTPUT="$dist/$name-setup.exe" "$here/zelk.nsi"
du -sh "$folder" "$dist"/*.zip "$dist"/*.exe >&2

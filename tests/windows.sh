#!/usr/bin/env bash
# What the Windows build of zelkc does with names, streams and existing files: windows.sh SAMPLE COMMAND...
# COMMAND runs zelkc.exe, here by way of Wine.
set -euo pipefail

sample="$(realpath "$1")"
shift
zelkc=("$@")
temp="$(mktemp -d)"
trap 'rm -rf "$temp"' EXIT
cd "$temp"
checks=0

expect() { # STATUS ARGS...: what it writes goes to out and err
    local wanted="$1" status=0
    shift
    "${zelkc[@]}" "$@" <in >out 2>err || status=$?
    checks=$((checks + 1))
    if [ "$status" -ne "$wanted" ]; then
        echo "windows: zelkc $*: exit status $status instead of $wanted"
        cat err
        exit 1
    fi
}

same() { # FILE FILE
    checks=$((checks + 1))
    cmp "$1" "$2" || { echo "windows: $1 and $2 differ"; exit 1; }
}

: >in
expect 0 --version
expect 2 convert one.swf
expect 1 info none.swf
grep -q 'Unable to open none.swf' err

# Both ways, over an existing file, under names that the code page cannot hold.
expect 0 convert "$(realpath --relative-to . "$sample")" movie.swf
echo old >'Жук 日本 🎬.xml'
expect 0 convert movie.swf 'Жук 日本 🎬.xml'
expect 0 convert 'Жук 日本 🎬.xml' 'ä.swf'
same movie.swf 'ä.swf'
expect 0 compare movie.swf 'Жук 日本 🎬.xml'
expect 1 info 'ö.swf'
grep -q 'Unable to open ö.swf' err
if grep -q $'\r' 'Жук 日本 🎬.xml'; then
    echo "windows: the XML has carriage returns"
    exit 1
fi

# Streams are binary: a movie holds bytes that text mode would change.
cp movie.swf in
expect 0 convert --from swf --to xml - -
same out 'Жук 日本 🎬.xml'
cp out in
expect 0 convert --from xml --to swf - -
same out movie.swf
: >in

# A failed conversion leaves the target and no other file.
echo '<Movie' >bad.xml
cp movie.swf old.swf
expect 1 convert bad.xml old.swf
same movie.swf old.swf
chmod a-w old.swf
expect 1 convert movie.swf old.swf
same movie.swf old.swf
[ -z "$(find . -name '*.tmp')" ]

# Projects are archives with the text.
expect 0 convert 'Жук 日本 🎬.xml' 'ä.zelk'
expect 0 convert 'ä.zelk' back.xml
same back.xml 'Жук 日本 🎬.xml'

# A path of more than 260 characters.
far="$(printf 'папка-%.0s' {1..10})"
far="$far/$far/$far/$far/$far"
mkdir -p "$far"
expect 0 convert movie.swf "$far/фильм.xml"
expect 0 convert "$far/фильм.xml" "$far/фильм.swf"
expect 0 convert "$far/фильм.xml" "$far/фильм.swf" # replaced
same "$far/фильм.swf" movie.swf

# Pictures out of a movie and into it again, under a name that the code page cannot hold.
expect 0 convert "$(realpath --relative-to . "$(dirname "$sample")/pictures.xml")" pictures.swf
expect 0 extract pictures.swf --out-dir 'картины'
expect 0 replace pictures.swf --tag 1 'картины/1-DefineBitsLossless2.png' again.swf
expect 0 compare pictures.swf again.swf
head -c 60 'картины/1-DefineBitsLossless2.png' >cut.png
expect 1 replace pictures.swf --tag 1 cut.png bad.swf
grep -q 'PNG: ' err
[ ! -e bad.swf ]

# Many files, the names expanded by zelkc itself; one file under two spellings is one.
mkdir many
for i in 1 2 3 4 5; do cp movie.swf "many/$i.swf"; done
expect 0 convert --out-dir 'made\deep' --to xml 'many\*.swf'
for i in 1 2 3 4 5; do same "made/deep/$i.xml" 'Жук 日本 🎬.xml'; done
expect 1 convert --out-dir Many --to swf many/1.swf
same many/1.swf movie.swf

# Nesting up to the limits fits the stack of Windows.
{
    echo '<Movie>'
    for ((i = 0; i < 255; i++)); do echo "<DefineSprite Id=\"$i\">"; done
    for ((i = 0; i < 255; i++)); do echo '</DefineSprite>'; done
    echo '</Movie>'
} >deep.xml
expect 0 convert --quiet deep.xml deep.swf
expect 0 convert --quiet deep.swf deep2.xml
expect 0 compare deep.swf deep2.xml

echo "windows: $checks checks of zelkc passed"

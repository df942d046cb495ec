#!/usr/bin/env bash
# Makes pictures of drawings where Qt cannot draw them: icons.sh FOLDER DRAWING.svg...
# FOLDER gets NAME-SIZE.png, icons.qrc with all of them, and zelk.ico.
set -euo pipefail

folder="$1"
shift
sizes=(16 20 24 32 40 48 64) # as IconPictures.cpp knows them
rm -rf "$folder"
mkdir -p "$folder"
cd "$folder"
for drawing in "$@"; do
    for size in "${sizes[@]}"; do
        rsvg-convert -w "$size" -h "$size" -o "$(basename "$drawing" .svg)-$size.png" "$drawing"
    done
done
{
    echo '<RCC><qresource prefix="/icons">'
    printf '<file>%s</file>\n' ./*.png | sed 's:\./::'
    echo '</qresource></RCC>'
} >icons.qrc
rsvg-convert -w 256 -h 256 -o big.png "$(printf '%s\n' "$@" | grep '/zelk\.svg$')"
icotool -c -o zelk.ico zelk-16.png zelk-24.png zelk-32.png zelk-48.png zelk-64.png -r big.png

#!/usr/bin/env bash
# The schema of a form accepts what zelkc writes in it, and only that: schema.sh ZELKC FORM SCHEMA FOLDER...
set -euo pipefail

zelkc="$1" form="$2" schema="$3"
shift 3
temp="$(mktemp -d)"
trap 'rm -rf "$temp"' EXIT

"$zelkc" schema --form "$form" | diff - "$schema" >"$temp/changes" || {
    head -n 20 "$temp/changes"
    echo "schema: write it anew: zelkc schema --form $form > docs/${schema##*/}"
    exit 1
}

validate() { # FILE...
    xmllint --huge --noout --schema "$schema" "$@" 2>&1
}

show() { # FILE TEXT
    case "$form $1" in
    classic\ *.xml) cp "$1" "$2" ;;
    *) "$zelkc" convert --quiet --form "$form" "$1" "$2" 2>/dev/null ;;
    esac
}

# Each expression spoils a sample: an element, an attribute, a name, a number, an order that no reader knows.
sample="$temp/sample.xml"
show "$(dirname "$schema")/../samples/animated-shape.xml" "$sample"
for spoil in 's/<ShowFrame/<ShowFrames/' 's/<ShowFrame/<Line/' 's/SetFill1 Index/SetFill1 Indices/' 's/Radial/Rectangular/' \
    's/ShapeId="1"/ShapeId="65536"/' 's/Move="true"/Move="maybe"/' 's/<Bounds[^>]*>//' 's/Color="4/Color="g/'; do
    sed "$spoil" "$sample" >"$temp/spoilt.xml"
    if cmp -s "$temp/spoilt.xml" "$sample" || validate "$temp/spoilt.xml" >"$temp/log"; then
        echo "schema: accepts a sample after $spoil"
        exit 1
    fi
done

count=0
while IFS= read -r -d '' file; do
    count=$((count + 1)) # names may be the same in several folders
    show "$file" "$temp/$count-${file##*/}.xml" || continue # broken on purpose
    # Names in a movie may be in another encoding, which makes no XML.
    iconv -f UTF-8 -t UTF-8 "$temp/$count-"* >/dev/null 2>&1 || rm "$temp/$count-"*
done < <(find "$@" -type f \( -name '*.swf' -o -name '*.xml' \) -print0 2>/dev/null)

validate "$temp"/[0-9]*.xml >"$temp/log" || {
    grep -v ' validates$' "$temp/log" | head -n 40
    exit 1
}
echo "schema: accepts $(grep -c ' validates$' "$temp/log") of $count texts"

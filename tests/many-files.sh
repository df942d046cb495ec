#!/usr/bin/env bash
# Converting many files at once gives what converting each alone gives: many-files.sh ZELKC FOLDER...
set -euo pipefail

zelkc="$1"
shift
temp="$(mktemp -d)"
trap 'rm -rf "$temp"' EXIT
cd "$temp"

# Converts every file of folder FROM into TO-each and TO-many. Files that are refused have no output in either.
compare_ways() { # FROM TO KIND
    local file failed=0 status=0
    mkdir "$2-each"
    for file in "$1"/*; do
        file="${file##*/}"
        "$zelkc" convert --quiet "$1/$file" "$2-each/${file%.*}.$3" 2>>log || failed=1
    done
    "$zelkc" convert --quiet --out-dir "$2-many" --to "$3" "$1"/* 2>errors || status=$?
    if [ "$status" -ne "$failed" ]; then # as it is when a sanitizer ends the program
        cat errors
        echo "many-files: $1 to $3: exit status $status instead of $failed"
        exit 1
    fi
    diff -r "$2-each" "$2-many"
    echo "many-files: $(find "$2-many" -type f | wc -l) of $(find "$1" -type f | wc -l) files to $3"
}

mkdir texts movies
count=0
while IFS= read -r -d '' file; do
    count=$((count + 1)) # names may be the same in several folders
    case "$file" in
    *.swf) cp "$file" "movies/$count.swf" ;;
    *.xml) cp "$file" "texts/$count.xml" ;;
    esac
done < <(find "$@" -type f -size -1024k \( -name '*.swf' -o -name '*.xml' \) -print0 2>/dev/null)

compare_ways texts made swf
cp made-many/* movies
compare_ways movies shown xml
compare_ways shown-many back swf

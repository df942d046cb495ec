#!/bin/sh
# Drives the installed editor by keys on a display of its own: drive-window.sh MOVIE
# Opens the movie, types a tag into it, saves it in place and plays it. Not for root, as whom the player does not run.
set -eu

movie="$1"
name="$(basename "$movie")"
HOME="$(mktemp -d)"
XDG_RUNTIME_DIR="$HOME"
DISPLAY=:7
QTWEBENGINE_CHROMIUM_FLAGS=--no-sandbox # which a chroot has no means for
export HOME XDG_RUNTIME_DIR DISPLAY QTWEBENGINE_CHROMIUM_FLAGS

frames() { zelkc convert "$movie" "$HOME/shown.xml" >/dev/null && grep -c '<ShowFrame' "$HOME/shown.xml" || true; }
window() { timeout 60 xdotool search --sync --onlyvisible --name "$1" | head -n 1; }
key() { xdotool key --clearmodifiers "$@" && sleep 0.5; }
fail() {
    echo "zelk: $*" >&2
    cat "$HOME/zelk.log" >&2
    exit 1
}

before="$(frames)"
Xvfb $DISPLAY -screen 0 1280x720x24 >/dev/null 2>&1 &
server=$!
trap 'kill $server 2>/dev/null' EXIT
for _ in $(seq 150); do
    xdotool getdisplaygeometry >/dev/null 2>&1 && break
    sleep 0.2
done
zelk "$movie" >"$HOME/zelk.log" 2>&1 &
trap 'kill $! $server 2>/dev/null' EXIT

editor="$(window "^$name - Zelk")"
[ -n "$editor" ] || fail "$name is not opened"
xdotool windowfocus "$editor"
key ctrl+End Home
xdotool type '<ShowFrame/>'
key Return ctrl+s
for _ in $(seq 60); do
    [ "$(frames)" = "$before" ] || break
    sleep 0.5
done
[ "$(frames)" = $((before + 1)) ] || fail "$name is not saved with the tag that was typed"
xdotool windowfocus "$editor"
key ctrl+Return
[ -n "$(window "^$name - Player")" ] || fail "$name is not played"

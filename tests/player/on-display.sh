#!/bin/sh
# Runs a program on an X server of its own; 77 without one. The engine's sandbox does not work as root.
command -v Xvfb >/dev/null && command -v xvfb-run >/dev/null || { echo "skipped: there is no Xvfb"; exit 77; }
[ "$(id -u)" -ne 0 ] || export QTWEBENGINE_DISABLE_SANDBOX=1
unset WAYLAND_DISPLAY
export QT_QPA_PLATFORM=xcb
exec xvfb-run -a -s "-screen 0 1280x720x24" "$@"

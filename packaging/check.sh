#!/usr/bin/env bash
# Checks the Debian packages that cpack has made: check.sh BUILD_FOLDER SAMPLES
# Installs them in a clean Debian, made once in BUILD_FOLDER/clean-root.tar; runs as root.
set -euo pipefail

build="$(cd "$1" && pwd)"
samples="$(cd "$2" && pwd)"
tools="$(cd "$(dirname "$0")/debian" && pwd)"
cd "$build/packages"
zelk="$(ls zelk_*.deb)"
dev="$(ls libzelk-dev_*.deb)"
root="$build/root"
mirror=http://deb.debian.org/debian

say() { echo "check: $*"; }
fail() {
    echo "check: $*" >&2
    exit 1
}
# With what a shell and a browser engine need of the system. The mounts are gone with the command.
in_root() {
    unshare --mount --propagation private sh -c 'root="$1" && shift && mount -t proc proc "$root/proc" &&
        mount --rbind /dev "$root/dev" && exec chroot "$root" env -i "$@"' sh "$root" \
        PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}

# --- the files alone -----------------------------------------------------------------------------------------------------

lintian --allow-root --fail-on error --tag-display-limit 0 "$zelk" "$dev" || fail "lintian has errors"

desktop="$build/desktop"
rm -rf "$desktop"
dpkg-deb -x "$zelk" "$desktop"
desktop-file-validate "$desktop/usr/share/applications/zelk.desktop"
appstreamcli validate --no-net "$desktop/usr/share/metainfo/org.orvane.zelk.metainfo.xml" >/dev/null
# A script starts it once for each of many files.
if ldd "$desktop/usr/bin/zelkc" | grep -E 'libjpeg|libpng|libgif|libmpg123|libstdc'; then
    fail "zelkc loads more than it needs at its start"
fi
rm -rf "$desktop"

mkdir -p twice
(cd "$build" && cpack -B "$build/packages/twice" >/dev/null)
for package in "$zelk" "$dev"; do
    cmp "$package" "$(find twice -name "$package" | head -n 1)" || fail "$package is not the same when it is packed again"
done
rm -rf twice

# --- in a clean Debian ---------------------------------------------------------------------------------------------------

rm -rf "$root"
mkdir -p "$root"
if [ ! -f "$build/clean-root.tar" ]; then
    say "making a clean Debian 12"
    debootstrap --variant=minbase bookworm "$root" "$mirror" >"$build/debootstrap.log"
    in_root apt-get clean
    tar -C "$root" -cf "$build/clean-root.tar.new" .
    mv "$build/clean-root.tar.new" "$build/clean-root.tar"
else
    tar -C "$root" -xf "$build/clean-root.tar"
fi
cp /etc/resolv.conf "$root/etc/resolv.conf"
echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/no-sync" # what is lost in a crash is made again
mkdir -p "$root/run/packages" "$root/run/work" "$root/run/tools"
cp "$zelk" "$dev" "$root/run/packages/"
cp "$samples"/*.xml "$root/run/work/"
cp "$tools"/complete.zsh "$tools"/drive-window.sh "$root/run/tools/"

say "installing"
in_root apt-get -q -y --no-install-recommends install "/run/packages/$zelk" "/run/packages/$dev" >"$build/install.log" 2>&1 ||
    { tail -n 20 "$build/install.log" && fail "the packages cannot be installed"; }
in_root sh -c 'dpkg -L zelk libzelk-dev | while read -r file; do [ -d "$file" ] || echo "$file"; done' >"$build/installed.txt"

say "zelkc, its manual page and its completion"
in_root sh -c 'cd /run/work && for sample in *.xml; do
    zelkc convert "$sample" movie.swf && zelkc convert movie.swf again.xml && zelkc compare "$sample" again.xml
done' >/dev/null
grep -q 'usr/share/man/man1/zelkc.1.gz' "$build/installed.txt"
completed() { # WORD...: what bash offers for the last one
    in_root bash -c 'source "/usr/share/bash-completion/completions/$1"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); "_$1"
        echo "${COMPREPLY[*]}"' bash "$@"
}
[ "$(completed zelkc con)" = convert ] || fail "bash does not complete zelkc con"
[ "$(completed zelkc schema --form c)" = classic ] || fail "bash does not complete zelkc schema --form c"
[ "$(completed zelkc info --js)" = "--json-lines --json" ] || fail "bash does not complete zelkc info --js"
[ "$(completed zelk --new)" = --new-window ] || fail "bash does not complete zelk --new"

in_root apt-get -q -y --no-install-recommends install zsh xvfb xdotool >>"$build/install.log" 2>&1
in_root zsh -f /run/tools/complete.zsh "zelkc con" "zelkc schema --form c" "zelk --new" </dev/null >"$build/zsh.txt"
for line in "zelkc convert" "zelkc schema --form classic" "zelk --new-window"; do
    grep -qF -e "$line" "$build/zsh.txt" || fail "zsh does not complete $line"
done

say "zelk opens, saves and plays"
in_root sh -ec 'useradd -m someone && chown -R someone /run/work
    su someone -c "/run/tools/drive-window.sh /run/work/movie.swf"' || fail "zelk does not work in a window"

say "a program on the installed libraries"
in_root apt-get -q -y --no-install-recommends install g++ cmake make pkg-config >>"$build/install.log" 2>&1
in_root sh -ec 'cp -r /usr/share/doc/libzelk-dev/examples /run/example && cd /run/example
    cmake -B build >/dev/null && cmake --build build >/dev/null && build/movie-info /run/work/movie.swf
    g++ -std=c++20 movie-info.cpp -o with-pkg-config $(pkg-config --cflags --libs zelk)
    ./with-pkg-config /run/work/movie.swf' || fail "the example does not build or run"

say "removing"
in_root apt-get -q -y purge zelk libzelk-dev >>"$build/install.log" 2>&1
while read -r file; do
    [ -z "$file" ] || [ ! -e "$root$file" ] || fail "$file is left behind"
done <"$build/installed.txt"
left="$(find "$root/etc" "$root/usr" "$root/var/lib" "$root/root" -iname '*zelk*' -print)"
[ -z "$left" ] || fail "left behind: $left"
rm -rf "$root"

for package in "$zelk" "$dev"; do
    say "$package: $(stat -c %s "$package") bytes, installed $(dpkg-deb -f "$package" Installed-Size) KB"
done

#!/usr/bin/env bash
# Builds what Zelk needs on Windows from Debian's source packages: libraries.sh FOLDER [JOBS [PACKAGE...]]
# FOLDER/prefix holds the results. A library is built again when Debian has a newer version or its recipe below changed;
# remove FOLDER/lists to ask Debian anew.
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
mkdir -p "$1"
folder="$(cd "$1" && pwd)"
jobs="${2:-$(nproc)}"
prefix="$folder/prefix"
shift $(($# < 2 ? $# : 2))
triple=x86_64-w64-mingw32

# Lowest first: minizip and libpng stand on zlib, which Debian has built for Windows; QScintilla stands on Qt.
packages=(libpng1.6 libjpeg-turbo giflib mpg123 xz-utils pcre2 minizip qt6-base qscintilla2)
[ $# -eq 0 ] || packages=("$@")

apt_sources() { # COMMAND ARGS...
    local command="$1"
    shift
    "$command" -q -o Dir::Etc::SourceList="$here/sources.list" -o Dir::Etc::SourceParts=- \
        -o Dir::State::Lists="$folder/lists" -o APT::Sandbox::User=root "$@"
}

version_of() { # PACKAGE
    apt_sources apt-cache showsrc --only-source "$1" | sed -n 's/^Version: //p' | sort -V | tail -n 1
}

cmake_build() { # CMAKE ARGS...: the sources are in .
    cmake -S . -B "$work/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$here/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache \
        -DCMAKE_FIND_ROOT_PATH="$prefix;/usr/$triple" -DCMAKE_INSTALL_PREFIX="$prefix" "$@"
    cmake --build "$work/build" -j "$jobs"
    cmake --install "$work/build" --strip
}

configure_build() { # CONFIGURE ARGS...: the sources are in .
    ./configure --host="$triple" --prefix="$prefix" --disable-shared --enable-static CC="$triple-gcc-posix" \
        CPPFLAGS="-I$prefix/include" LDFLAGS="-L$prefix/lib" "$@"
    make -j "$jobs"
    make install
}

# The tools of Qt that run while something is built are those of this machine.
host_qt=(-DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake)

# --- recipes: in the folder of the sources, into $prefix; static libraries, but for Qt and what stands on it -------------

build_libpng1_6() { configure_build --disable-tools --disable-tests; }

build_libjpeg_turbo() {
    cmake_build -DENABLE_SHARED=OFF -DWITH_TURBOJPEG=OFF -DWITH_SIMD=OFF
}

build_giflib() {
    "$triple-gcc-posix" -O2 -c dgif_lib.c egif_lib.c gifalloc.c gif_err.c gif_font.c gif_hash.c openbsd-reallocarray.c
    "$triple-ar" rcs libgif.a ./*.o
    install -m 644 -D libgif.a "$prefix/lib/libgif.a"
    install -m 644 -D gif_lib.h "$prefix/include/gif_lib.h"
}

build_mpg123() { configure_build --disable-components --enable-libmpg123 --with-cpu=x86-64; }

build_xz_utils() {
    configure_build --disable-xz --disable-xzdec --disable-lzmadec --disable-lzmainfo --disable-lzma-links \
        --disable-scripts --disable-doc --disable-nls --enable-threads=vista
}

build_pcre2() {
    cmake_build -DPCRE2_BUILD_PCRE2_8=ON -DPCRE2_BUILD_PCRE2_16=ON -DPCRE2_SUPPORT_JIT=ON \
        -DPCRE2_BUILD_PCRE2GREP=OFF -DPCRE2_BUILD_TESTS=OFF
}

build_minizip() {
    "$triple-gcc-posix" -O2 -I"$prefix/include" -DUNICODE -D_UNICODE -c ioapi.c iowin32.c unzip.c zip.c
    "$triple-ar" rcs libminizip.a ioapi.o iowin32.o unzip.o zip.o
    install -m 644 -D libminizip.a "$prefix/lib/libminizip.a"
    install -m 644 -D -t "$prefix/include/minizip" ioapi.h iowin32.h unzip.h zip.h
}

# Without what needs a graphics driver and what the compiler's headers lack; its own copies of small libraries.
build_qt6_base() {
    cmake_build -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake \
        -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DQT_BUILD_TOOLS_WHEN_CROSSCOMPILING=OFF -DBUILD_SHARED_LIBS=ON \
        -DFEATURE_dbus=OFF -DFEATURE_sql=OFF -DINPUT_opengl=no -DFEATURE_vulkan=OFF -DFEATURE_direct2d=OFF \
        -DFEATURE_directwrite=OFF -DFEATURE_tabletevent=OFF -DFEATURE_concurrent=OFF -DFEATURE_xml=OFF \
        -DFEATURE_pkg_config=OFF \
        -DFEATURE_ssl=OFF -DFEATURE_schannel=OFF -DFEATURE_http=OFF -DFEATURE_dnslookup=OFF -DFEATURE_topleveldomain=OFF \
        -DFEATURE_system_zlib=OFF -DFEATURE_system_pcre2=OFF -DFEATURE_system_png=OFF -DFEATURE_system_jpeg=OFF \
        -DFEATURE_system_freetype=OFF -DFEATURE_system_harfbuzz=OFF -DFEATURE_system_libb2=OFF
}

build_qscintilla2() {
    local source="$PWD"
    cd "$here/qscintilla2"
    cmake_build -DQSCINTILLA_SOURCE="$source" "${host_qt[@]}"
}

# --- one library after the other -----------------------------------------------------------------------------------------

[ -n "$(find "$folder/lists" -name '*Sources*' 2>/dev/null)" ] || {
    mkdir -p "$folder/lists/partial"
    apt_sources apt-get update >&2
}

mkdir -p "$prefix/built"
for package in "${packages[@]}"; do
    recipe="build_${package//[.-]/_}"
    recipe_sum="$({ declare -f "$recipe" && cat "$here/$package"/* 2>/dev/null || true; } | sha256sum | cut -c 1-12)"
    version="$(version_of "$package")"
    [ -n "$version" ] || { echo "libraries: Debian has no source package $package" >&2 && exit 1; }
    stamp="$prefix/built/$package-$version-$recipe_sum"
    [ ! -f "$stamp" ] || continue
    echo "libraries: building $package $version" >&2
    work="$folder/work/$package"
    rm -rf "$work"
    mkdir -p "$work"
    status=0
    set +e # or the recipe would go on after an error
    (
        set -e
        cd "$work"
        # A signature of the makers may be missing on the server; without anything else unpacking fails.
        apt_sources apt-get source --only-source --download-only "$package=$version" || true
        dpkg-source --no-check -x ./*.dsc source # a name without signs that patterns in build files trip over
        cd source
        install -m 644 -D debian/copyright "$prefix/licences/$package"
        "$recipe"
    ) >"$folder/$package.log" 2>&1
    status=$?
    set -e
    [ "$status" -eq 0 ] || { tail -n 30 "$folder/$package.log" >&2 && exit 1; }
    rm -rf "$work"
    rm -f "$prefix/built/$package-"[0-9]*
    touch "$stamp"
done

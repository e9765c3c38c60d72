#!/usr/bin/env bash
# The examples, copied out of the tree, build against the installed package by CMake and by
# pkg-config, and do what they say.
# Usage: check_consumers.sh CC CXX BUILD_DIR EXAMPLES_DIR
set -euo pipefail
cc=$1 cxx=$2 build_dir=$3 examples_dir=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

run_examples() { # DRAW_FRAME FLAT_INTERFACE OVERLAY_FRAMES OWN_PLATFORM
    rm -f "$work/frame.ppm" "$work/overlay.pgm"
    (cd "$work" && "$1")
    [ "$(head -c 14 "$work/frame.ppm")" = "P6 320 180 255" ]
    [ "$(tail -c +16 "$work/frame.ppm" | wc -c)" -eq $((320 * 180 * 3)) ]
    [ "$(tail -c +16 "$work/frame.ppm" | tr -d '\0' | wc -c)" -gt 1000 ]
    [ "$("$2")" = "a frame of 16384 bytes" ]
    (cd "$work" && "$3")
    [ "$(tail -c +16 "$work/overlay.pgm" | wc -c)" -eq $((720 * 576)) ]
    [ "$(tail -c +16 "$work/overlay.pgm" | tr -d '\200' | wc -c)" -gt 10000 ]
    [ "$("$4")" = "####...." ]
}

cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
cp -r "$examples_dir" "$work/examples"

cmake -S "$work/examples" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/build" >/dev/null
run_examples "$work/build/draw_frame" "$work/build/flat_interface" "$work/build/overlay_frames" \
    "$work/build/own_platform"
echo "CMake: all programs ran"

PKG_CONFIG_PATH=$(dirname "$(find "$work/prefix" -name zrdraw.pc)")
export PKG_CONFIG_PATH
read -ra flags <<<"$(pkg-config --cflags --libs zrdraw zrhost)"
flags+=("-Wl,-rpath,$(pkg-config --variable=libdir zrdraw)")
"$cxx" -std=c++20 "$work/examples/draw_frame.cpp" -o "$work/draw_frame" "${flags[@]}"
"$cc" -std=c11 "$work/examples/flat_interface.c" -o "$work/flat_interface" "${flags[@]}"
"$cxx" -std=c++20 "$work/examples/overlay_frames.cpp" -o "$work/overlay_frames" "${flags[@]}"
read -ra flags <<<"$(pkg-config --cflags --libs zrdraw)"
flags+=("-Wl,-rpath,$(pkg-config --variable=libdir zrdraw)")
"$cc" -std=c11 "$work/examples/own_platform.c" -o "$work/own_platform" "${flags[@]}"
run_examples "$work/draw_frame" "$work/flat_interface" "$work/overlay_frames" "$work/own_platform"
echo "pkg-config: all programs ran"

"$work/prefix/bin/zrdraw" --version

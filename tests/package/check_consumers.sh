#!/usr/bin/env bash
# The examples, copied out of the tree, build against the installed package by CMake and by
# pkg-config, and do what they say.
# Usage: check_consumers.sh CC CXX BUILD_DIR EXAMPLES_DIR
set -euo pipefail
cc=$1 cxx=$2 build_dir=$3 examples_dir=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

run_examples() { # DRAW_FRAME FLAT_INTERFACE
    rm -f "$work/frame.ppm"
    (cd "$work" && "$1")
    [ "$(head -c 14 "$work/frame.ppm")" = "P6 320 180 255" ]
    [ "$(tail -c +16 "$work/frame.ppm" | wc -c)" -eq $((320 * 180 * 3)) ]
    [ "$(tail -c +16 "$work/frame.ppm" | tr -d '\0' | wc -c)" -gt 1000 ]
    [ "$("$2")" = "a frame of 16384 bytes" ]
}

cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
cp -r "$examples_dir" "$work/examples"

cmake -S "$work/examples" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/build" >/dev/null
run_examples "$work/build/draw_frame" "$work/build/flat_interface"
echo "CMake: both programs ran"

PKG_CONFIG_PATH=$(dirname "$(find "$work/prefix" -name zrdraw.pc)")
export PKG_CONFIG_PATH
read -ra flags <<<"$(pkg-config --cflags --libs zrdraw zrhost)"
flags+=("-Wl,-rpath,$(pkg-config --variable=libdir zrdraw)")
"$cxx" -std=c++20 "$work/examples/draw_frame.cpp" -o "$work/draw_frame" "${flags[@]}"
"$cc" -std=c11 "$work/examples/flat_interface.c" -o "$work/flat_interface" "${flags[@]}"
run_examples "$work/draw_frame" "$work/flat_interface"
echo "pkg-config: both programs ran"

"$work/prefix/bin/zrdraw" --version

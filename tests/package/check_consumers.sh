#!/usr/bin/env bash
# The examples, copied out of the tree, build against the installed package by CMake and by
# pkg-config, and do what they say; the documents show their text.
# Usage: check_consumers.sh CC CXX BUILD_DIR EXAMPLES_DIR
set -euo pipefail
cc=$1 cxx=$2 build_dir=$3 examples_dir=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

block() { # LANGUAGE NUMBER PAGE: the text of a fenced block
    awk -v opening="\`\`\`$1" -v number="$2" '
        $0 == "```" { inside = 0 }
        inside
        $0 == opening && ++seen == number { inside = 1 }' "$examples_dir/../$3"
}
diff "$examples_dir/draw_frame.cpp" <(block cpp 1 README.md)
diff "$examples_dir/own_layout.cpp" <(block cpp 1 docs/extending.md)
diff "$examples_dir/own_wipe.cpp" <(block cpp 2 docs/extending.md)
threads=$(block c 1 docs/extending.md)
if [[ -z $threads || $(<"$examples_dir/own_platform.c") != *"$threads"* ]]; then
    echo "docs/extending.md: its lines of own_platform.c are not those of the example" >&2
    exit 1
fi
echo "documents: as the examples"

run_examples() { # DIRECTORY of the programs
    rm -f "$work/frame.ppm" "$work/overlay.pgm"
    (cd "$work" && "$1/draw_frame")
    [ "$(head -c 14 "$work/frame.ppm")" = "P6 320 180 255" ]
    [ "$(tail -c +16 "$work/frame.ppm" | wc -c)" -eq $((320 * 180 * 3)) ]
    [ "$(tail -c +16 "$work/frame.ppm" | tr -d '\0' | wc -c)" -gt 1000 ]
    [ "$("$1/flat_interface")" = "a frame of 16384 bytes" ]
    (cd "$work" && "$1/overlay_frames")
    [ "$(tail -c +16 "$work/overlay.pgm" | wc -c)" -eq $((720 * 576)) ]
    [ "$(tail -c +16 "$work/overlay.pgm" | tr -d '\200' | wc -c)" -gt 10000 ]
    diff <("$1/own_layout") - <<END
 ff ff ff ff ff ff ff ff
 ff 00 00 00 00 00 00 ff
 ff 00 80 80 80 80 00 ff
 ff 00 00 00 00 00 00 ff
 ff ff ff ff ff ff ff ff
END
    diff <("$1/own_wipe") - <<END
######..
#####...
####....
###.....
END
    [ "$("$1/own_platform")" = "####...." ]
}

cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
cp -r "$examples_dir" "$work/examples"

cmake -S "$work/examples" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/build" >/dev/null
run_examples "$work/build"
echo "CMake: all programs ran"

PKG_CONFIG_PATH=$(dirname "$(find "$work/prefix" -name zrdraw.pc)")
export PKG_CONFIG_PATH
mkdir "$work/programs"
build() { # PROGRAM COMPILER STANDARD PACKAGE...
    local flags
    read -ra flags <<<"$(pkg-config --cflags --libs "${@:4}")"
    "$2" "-std=$3" "$work/examples/$1" -o "$work/programs/${1%.*}" "${flags[@]}" \
        "-Wl,-rpath,$(pkg-config --variable=libdir zrdraw)"
}
for example in draw_frame overlay_frames own_layout own_wipe; do
    build $example.cpp "$cxx" c++20 zrdraw zrhost
done
build flat_interface.c "$cc" c11 zrdraw zrhost
build own_platform.c "$cc" c11 zrdraw
run_examples "$work/programs"
echo "pkg-config: all programs ran"

"$work/prefix/bin/zrdraw" --version

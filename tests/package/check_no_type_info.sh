#!/usr/bin/env bash
# A host that is built without run-time type information can derive from the drawing classes.
# Usage: check_no_type_info.sh CXX BUILD_DIR SOURCE_DIR
set -euo pipefail
cxx=$1 build_dir=$2 source_dir=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The line, the circle with its pixels twice, the run, the ink of the text, the whole canvas.
expected=$((10 + 16 + 10 + 22 + 64 * 64))
for compiler in "$cxx" clang++; do
    for level in -O0 -O2; do
        "$compiler" -std=c++17 -fno-rtti "$level" -I"$source_dir/include" \
            "$source_dir/tests/package/no_type_info.cpp" -o "$work/program" \
            -L"$build_dir/src" -L"$build_dir/host" -lzrdraw -lzrhost \
            -Wl,-rpath,"$build_dir/src:$build_dir/host"
        got=$("$work/program")
        echo "$compiler $level: $got pixels"
        [ "$got" -eq "$expected" ]
    done
done

#!/usr/bin/env bash
# Every public header compiles alone, without a warning, in the standards that its users may have;
# those for C in C as well.
# Usage: check_headers.sh CC CXX SOURCE_DIR BUILD_DIR
set -euo pipefail
cc=$1 cxx=$2 source_dir=$3 build_dir=$4
includes=(-I"$source_dir/include" -I"$build_dir/include")
warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fsyntax-only)

for header in "$source_dir"/include/zrdraw/*.h "$source_dir"/include/zrdraw/platform/*.h; do
    for standard in c++17 c++20; do
        "$cxx" -std=$standard "${warnings[@]}" "${includes[@]}" -x c++ "$header"
    done
    if ! grep -qE '^(class|constexpr|inline) ' "$header"; then
        for standard in c99 c11; do
            "$cc" -std=$standard "${warnings[@]}" "${includes[@]}" -x c "$header"
        done
        echo "C    $(basename "$header")"
    fi
    echo "C++  $(basename "$header")"
done

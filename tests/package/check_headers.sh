#!/usr/bin/env bash
# Every public header compiles alone, without a warning; those for C in C as well.
# Usage: check_headers.sh CC CXX SOURCE_DIR BUILD_DIR
set -euo pipefail
cc=$1 cxx=$2 source_dir=$3 build_dir=$4
includes=(-I"$source_dir/include" -I"$build_dir/include")
warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fsyntax-only)

for header in "$source_dir"/include/zrdraw/*.h "$source_dir"/include/zrdraw/platform/*.h; do
    "$cxx" -std=c++20 "${warnings[@]}" "${includes[@]}" -x c++ "$header"
    if ! grep -qE '^(class|constexpr|inline) ' "$header"; then
        "$cc" -std=c11 "${warnings[@]}" "${includes[@]}" -x c "$header"
        echo "C    $(basename "$header")"
    fi
    echo "C++  $(basename "$header")"
done

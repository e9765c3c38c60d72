#!/usr/bin/env bash
# The C++ of the documents compiles against the public headers, without a warning. A block that
# includes something begins a file, the blocks behind it go on with that.
# Usage: check_docs.sh CXX SOURCE_DIR BUILD_DIR DOCUMENT...
set -euo pipefail
cxx=$1 source_dir=$2 build_dir=$3
shift 3
includes=(-I"$source_dir/include" -I"$build_dir/include")
warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -fsyntax-only)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for document in "$@"; do
    rm -f "$work"/*
    awk -v work="$work" -v document="$document" '
        /^```/ && !inside {
            inside = ($0 == "```cpp")
            block = sprintf("#line %d \"%s\"\n", NR + 1, document)
            next
        }
        /^```/ {
            inside = 0
            units += block ~ /\n#include/
            if (!units) { print document ": the first block includes nothing"; exit 1 }
            printf "%s", block > (work "/" units ".cpp")
        }
        inside { block = block $0 "\n" }' "$source_dir/$document"
    for unit in "$work"/*.cpp; do
        "$cxx" -std=c++20 "${warnings[@]}" "${includes[@]}" "$unit"
        echo "$document: file $(basename "$unit" .cpp) compiles"
    done
done

#!/usr/bin/env bash
# The library exports what its headers declare and nothing else, and asks for nothing but the
# standard libraries and the platform operations.
# Usage: check_symbols.sh LIBRARY SOURCE_DIR
set -euo pipefail
library=$1
source_dir=$2
list=$source_dir/src/zrdraw.symbols
status=0

# "name@VERSION" is a symbol of a standard library; vtables and type infos may be weak.
exported=$(nm -D --defined-only --format=posix "$library" | awk '{print $1}' | LC_ALL=C sort)
if ! diff <(LC_ALL=C sort "$list") <(echo "$exported"); then
    echo "exports differ from $list: '<' is missing, '>' is not listed" >&2
    status=1
fi

# The plain name of each exported function or object stands in a public header.
names=$(echo "$exported" | c++filt | sed -E 's/^(vtable|VTT|typeinfo|typeinfo name) for //;
    s/^(virtual|non-virtual) thunk to //; s/^construction vtable for //; s/-in-.*//;
    s/\(.*//; s/.*:://; s/^~//' | sort -u)
for name in $names; do
    if ! grep -rqw -- "$name" "$source_dir"/include/zrdraw; then
        echo "exported, but in no public header: $name" >&2
        status=1
    fi
done

undefined=$(nm -D --undefined-only --format=posix "$library" | awk '{print $1}' | grep -v @ |
    grep -vE '^(__gmon_start__|_ITM_|__cxa_)' || true)
for name in $undefined; do
    if ! grep -rqw -- "$name" "$source_dir"/include/zrdraw/platform; then
        echo "undefined, but no platform operation: $name" >&2
        status=1
    fi
done
exit $status

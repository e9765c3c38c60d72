#!/usr/bin/env bash
# A library exports what its list names and its headers declare, under its version, and nothing
# else; it asks for nothing but the libraries it is linked to and the platform operations. It is
# hardened against overruns.
# Usage: check_symbols.sh LIBRARY LIST SOURCE_DIR
set -euo pipefail
library=$1 list=$2 source_dir=$3
version=ZRDRAW_1
status=0

exported=$(nm -D --defined-only --format=posix "$library" | awk '{print $1}' |
    grep -vx "$version" | LC_ALL=C sort)
if ! diff <(sed "s/$/@@$version/" "$list" | LC_ALL=C sort) <(echo "$exported"); then
    echo "exports differ from $list: '<' is missing, '>' is not listed" >&2
    status=1
fi

# The plain name of each exported function or object stands in a public header.
names=$(sed 's/@.*//' <<<"$exported" | c++filt | sed -E 's/^(vtable|VTT|typeinfo|typeinfo name) for //;
    s/^(virtual|non-virtual) thunk to //; s/^construction vtable for //; s/-in-.*//;
    s/\(.*//; s/.*:://; s/^~//' | sort -u)
for name in $names; do
    if ! grep -rqw -- "$name" "$source_dir"/include/zrdraw; then
        echo "exported, but in no public header: $name" >&2
        status=1
    fi
done

# "name@VERSION" is a symbol of another library; SQLite's have no version.
undefined=$(nm -D --undefined-only --format=posix "$library" | awk '{print $1}' | grep -v @ |
    grep -vE '^(__gmon_start__|_ITM_|__cxa_|sqlite3_)' || true)
for name in $undefined; do
    if ! grep -rqw -- "$name" "$source_dir"/include/zrdraw/platform; then
        echo "undefined, but no platform operation: $name" >&2
        status=1
    fi
done

facts=$(readelf -dlW --dyn-syms "$library")
for wanted in GNU_RELRO BIND_NOW 'GNU_STACK.* RW ' __stack_chk_fail; do
    if ! grep -q "$wanted" <<<"$facts"; then
        echo "not hardened: nothing like '$wanted' in $library" >&2
        status=1
    fi
done
exit $status

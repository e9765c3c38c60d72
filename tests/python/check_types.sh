#!/usr/bin/env bash
# The stubs are right for a checker, which finds what is wrong in a program and nothing in the
# example.
# Usage: check_types.sh PYTHON STUBS EXAMPLE
set -euo pipefail
python=$1 stubs=$2 example=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# On its own path mypy looks for a module and not for a stub package.
ln -s "$stubs" "$work/zrdraw"
check() {
    MYPYPATH=$work "$python" -m mypy --cache-dir "$work/cache" --check-untyped-defs \
        --ignore-missing-imports "$@"
}

check "$example"
cat >"$work/wrong.py" <<'END'
import zrdraw
draw = zrdraw.Draw(zrdraw.frame("bgra", 8, 8), "bgra")
draw.line("x", 1, 2, 3)
draw.lien(1, 2, 3, 4)
zrdraw.Overlay("bgra", 8, 8).texts[0].text = "text"
zrdraw.Overlay("bgra", 8, 8).audio_x = "left"
END
errors=$(check "$work/wrong.py" | grep -o 'wrong.py:[0-9]*: error' || true)
[ "$(tr '\n' ' ' <<<"$errors")" = 'wrong.py:3: error wrong.py:4: error wrong.py:6: error ' ] || {
    echo "expected errors in lines 3, 4 and 6, got: $errors" >&2
    exit 1
}

#!/usr/bin/env bash
# Writes the types of the built module as a stub package.
# Usage: make_stubs.sh PYTHON MODULE_DIR STUBS
set -euo pipefail
python=$1 module_dir=$2 stubs=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

(cd "$work" && PYTHONPATH=$module_dir "$python" -c 'from mypy.stubgen import main; main()' \
    --quiet --module zrdraw --output "$work" >/dev/null)
mkdir -p "$(dirname "$stubs")"
# The dots of Tuple[float, ...] are taken for a module.
sed '/^import \.\.$/d' "$work/zrdraw.pyi" >"$stubs"

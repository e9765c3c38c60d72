#!/usr/bin/env bash
# The component python beside that of the libraries is a module that works, with its types.
# Usage: check_install.sh PYTHON BUILD_DIR
set -euo pipefail
python=$1 build_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for component in runtime python; do
    cmake --install "$build_dir" --component "$component" --prefix "$work/prefix" >/dev/null
done
module=$(find "$work/prefix" -name 'zrdraw*.so' -path '*dist-packages*')
cd "$work"
PYTHONPATH=$(dirname "$module") "$python" - "$work/prefix" <<'END'
import os, sys
import zrdraw
draw = zrdraw.Draw(zrdraw.frame("bgra", 8, 8), "bgra")
assert draw.erase() and zrdraw.__file__.startswith(sys.argv[1])
libraries = [line.split()[-1] for line in open("/proc/self/maps") if "libzr" in line]
assert libraries and all(os.path.realpath(sys.argv[1]) in path for path in libraries), libraries
END
if [ -d "$build_dir/python/zrdraw-stubs" ]; then
    [ -s "$(dirname "$module")/zrdraw-stubs/__init__.pyi" ]
fi

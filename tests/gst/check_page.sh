#!/usr/bin/env bash
# Runs every sh and python block of docs/gstreamer.md as it stands, and shows that each made the
# files that it names.
# Usage: check_page.sh PAGE EXAMPLES PYTHON [FOLDER]   (FOLDER keeps the pictures)
set -euo pipefail
page=$1 EXAMPLES=$2 python=$3
export EXAMPLES
folder=${4:-$(mktemp -d)}
[ $# -ge 4 ] || trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder"

awk -v folder="$folder" '
    /^```(sh|python)$/ { block = sprintf("%s/block%02d.%s", folder, ++count, substr($0, 4)); next }
    /^```$/ { block = ""; next }
    block != "" { print > block }' "$page"
cd "$folder"
blocks=0
for block in block*; do
    echo "check_page: $block"
    case $block in
    *.sh) timeout 120 bash -euo pipefail "$block" ;;
    *.python) timeout 120 "$python" "$block" ;;
    esac
    while read -r file; do
        compgen -G "${file/\%0?d/*}" >/dev/null || { echo "$block made no $file" >&2; exit 1; }
    done < <(grep -o 'location=[a-z0-9%]*\.[a-z]*' "$block" | cut -d= -f2)
    blocks=$((blocks + 1))
done
[ "$blocks" -ge 8 ] || { echo "only $blocks blocks" >&2; exit 1; }

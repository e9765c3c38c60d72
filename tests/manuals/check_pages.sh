#!/usr/bin/env bash
# The manual pages are free of warnings and complete, name what the help names, and their examples
# work as they stand.
# Usage: check_pages.sh TOOL PAGES_DIR
set -euo pipefail
tool=$1 pages=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
fail() {
    echo "$*" >&2
    status=1
}

# A page for the tool and for each subcommand, and no other.
subcommands=$("$tool" --help | awk '/^[A-Z]/ { inside = $1 == "Subcommands:" } inside && /^  / { print $1 }')
diff <( (echo zrdraw.1; printf 'zrdraw-%s.1\n' $subcommands) | LC_ALL=C sort) \
    <(ls "$pages" | LC_ALL=C sort) || fail "the pages are not those of the subcommands"

# What stands to the left in a help: options, places, subcommands, and commands of scripts.
named() { # SUBCOMMAND...
    "$tool" "$@" --help | awk '/^  [^ ]/ { print $1 }' | tr , '\n'
}

for page in "$pages"/*.1; do
    name=$(basename "$page" .1)
    warnings=$(LC_ALL=C.UTF-8 MANWIDTH=200 man --warnings -E UTF-8 -l "$page" 2>&1 >"$work/text")
    [ -z "$warnings" ] || fail "$name: $warnings"
    col -b <"$work/text" >"$work/plain"
    for section in NAME SYNOPSIS DESCRIPTION OPTIONS 'EXIT STATUS' EXAMPLES 'SEE ALSO'; do
        grep -qx "$section" "$work/plain" || fail "$name: no section $section"
    done
    subcommand=${name#zrdraw}
    for word in $(named ${subcommand#-}); do
        pattern=$(sed 's/[][(){}.|*+?^$]/\\&/g' <<<"$word")
        grep -qE -- "^ .*(^|[^a-zA-Z-])$pattern([^a-zA-Z-]|\$)" "$work/plain" ||
            fail "$name: '$word' of the help is missing"
    done
    for other in $(grep -oE 'zrdraw-[a-z]+\(1\)' "$work/plain"); do
        [ -e "$pages/${other%(1)}.1" ] || fail "$name: there is no $other"
    done
done
[ $status -eq 0 ] && echo "pages: no warnings, all options"

# The examples, on clips and files of the names that they use, each page in a folder of its own.
mkdir "$work/bin" "$work/material"
ln -s "$tool" "$work/bin/zrdraw"
export PATH=$work/bin:$PATH ZRDRAW_STORE=$work/settings.db
(
    cd "$work/material"
    for clip in in a b; do
        ffmpeg -v error -f lavfi -i testsrc2=size=320x180:rate=25:duration=4 \
            -f lavfi -i sine=duration=4 -c:v mpeg4 -c:a pcm_s16le $clip.mov
    done
    ffmpeg -v error -i in.mov -frames:v 1 -vf scale=64:36 logo.png
    ffmpeg -v error -i in.mov -frames:v 1 -vf scale=64:36 -pix_fmt bgr24 deffont.bmp
    echo 'line 0 0 100 100' >marks.zrd
    echo 'function frame(d) d:circle(d.w / 2, d.h / 2, d.n) end' >ring.lua
)
for page in "$pages"/*.1; do
    name=$(basename "$page" .1)
    awk '/^\.RE/ { inside = 0; print "" } inside; /^\.RS 4/ { inside = 1 }' "$page" |
        sed "s/\\\\-/-/g; s/\\\\(aq/'/g; s/\\\\(ti/~/g; s/\\\\e/\\\\/g; s/^\\\\&//" >"$work/examples"
    grep -q zrdraw "$work/examples" || fail "$name: no examples"
    awk -v RS= -v work="$work" '{ print > (work "/example." NR) }' "$work/examples"
    for example in "$work"/example.*; do
        cp -r "$work/material" "$work/run"
        (cd "$work/run" && bash -euo pipefail "$example" >"$work/out") 2>"$work/errors" ||
            fail "$name: this fails: $(<"$example") $(<"$work/errors")"
        rm -rf "$work/run" "$example"
    done
done
[ $status -eq 0 ] && echo "examples: all of them work"
exit $status

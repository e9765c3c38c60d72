#!/usr/bin/env bash
# What bash offers is what the tool itself lists, and the place on the command line decides.
# Usage: check_completion.sh TOOL COMPLETION
set -euo pipefail
tool=$1
# shellcheck source=/dev/null
source "$2"
status=0
export ZRDRAW_STORE=/nonexistent/settings.db # so that none is read

# bash hands over its options to the running completion only.
compopt() { settings+=" $2"; }

sorted() { grep . | LC_ALL=C sort || true; }

# The words that bash would offer at the end of a line, and what it was told beside them.
offered() { # WORD... (the last one is what is being written; = and : apart, as bash has them)
    local settings=''
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    local written=${COMP_WORDS[COMP_CWORD]}
    _zrdraw zrdraw "$written" "${COMP_WORDS[COMP_CWORD - 1]}"
    printf '%s\n' "${COMPREPLY[@]}" $settings | sorted
}

expect() { # "expected words" WORD...
    local expected
    expected=$(tr ' ' '\n' <<<"$1" | sorted)
    shift
    if ! diff <(echo "$expected") <(echo "$(offered "$@")"); then
        echo "'$*': '<' was expected, '>' is offered" >&2
        status=1
    fi
}

column() { # NUMBER SUBCOMMAND...: of a list with a head
    local number=$1
    shift
    "$tool" "$@" | awk -v n="$number" 'NR > 1 { printf "%s ", $n }'
}
options() { # SUBCOMMAND...
    "$tool" "$@" --help |
        awk '/^[A-Z]/ { inside = $1 == "Options:" } inside && /^  -/ { printf "%s ", $1 }' | tr , ' '
}
subcommands() { # SUBCOMMAND...
    "$tool" "$@" --help |
        awk '/^[A-Z]/ { inside = $1 == "Subcommands:" } inside && /^  / { printf "%s ", $1 }'
}

expect "$(subcommands)" zrdraw ''
expect "$(subcommands config)" zrdraw config ''
for subcommand in $(subcommands); do
    expect "$(options $subcommand)" zrdraw $subcommand -
done
expect "$(options config export)" zrdraw config --settings-store s.db export -

layouts=$(column 3 types)
expect "$layouts" zrdraw draw --layout ''
expect "$layouts" zrdraw draw in out --layout = ''
expect "$(column 2 wipe --list)" zrdraw wipe --code ''
expect "$(column 1 mux --list)" zrdraw mux --mode ''
settings=$(ZRDRAW_STORE= XDG_CONFIG_HOME=/nonexistent column 1 config list)
expect "$settings" zrdraw config get ''
expect "${settings// /= } nospace" zrdraw overlay --set ''
expect "${settings// /= } nospace" zrdraw config set AudioX = 1 ''
expect "AudioEnable= nospace" zrdraw config set AudioE

expect "all av v" zrdraw draw --streams ''
expect "bgra uyvy v210" zrdraw overlay --layout ''
expect "a b both none" zrdraw mux --sound ''
expect "polyline polylineto nospace" zrdraw draw -e polyl

expect "default" zrdraw draw ''          # files
expect "default" zrdraw draw in.mov ''
expect "default" zrdraw draw --crf 18 ''
expect "dirnames" zrdraw gallery ''
expect "default" zrdraw overlay --watermark ''
expect "default" zrdraw overlay --watermark = lo
expect "$(options draw)" zrdraw draw in.mov out.mov ''
expect "nospace" zrdraw overlay --set AudioX = 1 # the number is the user's
expect "" zrdraw draw --crf ''
expect "" zrdraw draw --frames 1 : 2
exit $status

# A command with subcommands, whose names stand in the array `subcommands`.
# $1 is its function, before whose name those of the subcommands begin; then come its own options.
_zrdraw_subcommands() {
    local function=$1 curcontext=$curcontext state line
    typeset -A opt_args
    shift
    _arguments -C "$@" '1:subcommand:->name' '*::argument:->rest' && return
    case $state in
    name) _describe subcommand subcommands ;;
    rest) (($+functions[${function}_$line[1]])) && ${function}_$line[1] ;;
    esac
}

_zrdraw_command_zrdraw "$@"

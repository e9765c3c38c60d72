# The words of the command line up to the cursor, as the tool will see them: bash cuts them at the
# signs = and : too.
_zrdraw_split() {
    local i joins=
    words=()
    for ((i = 0; i <= COMP_CWORD; ++i)); do
        if [[ $i -gt 1 && ${COMP_WORDS[i]} == [=:]* ]]; then
            words[-1]+=${COMP_WORDS[i]}
            joins=1
        elif [[ $joins ]]; then
            words[-1]+=${COMP_WORDS[i]}
            joins=
        else
            words+=("${COMP_WORDS[i]}")
        fi
    done
}

# Sets the command, the option whose value comes next, and how many other words stand before that.
_zrdraw_read() {
    local word
    for word in "${words[@]:1:${#words[@]}-2}"; do
        if [[ $option ]]; then
            option=
        elif [[ $word == -?* ]]; then
            [[ ${_zrdraw_values[$command $word]-} ]] && option=$word
        elif [[ " ${_zrdraw_commands[$command]-} " == *" $word "* ]]; then
            command+=" $word"
        else
            ((++count))
        fi
    done
}

# The name of the value that stands at the next free place.
_zrdraw_place() {
    local places
    read -ra places <<<"${_zrdraw_places[$command]-}"
    [[ $count -gt 0 && ${places[*]} == *... ]] && count=0
    value=${places[count]-}
}

# What may stand for a value; `written` is what of it is there already.
_zrdraw_value() {
    case $value in
    FILE) compopt -o default ;;
    DIR) compopt -o dirnames ;;
    *)
        [[ ${_zrdraw_goes_on[$value]-} ]] && compopt -o nospace
        [[ $written == *=* ]] || choices=${_zrdraw_words[$value]-}
        ;;
    esac
}

_zrdraw() {
    local words command=zrdraw option='' count=0 value='' choices=''
    _zrdraw_split
    _zrdraw_read
    local written=${words[-1]} part=$2
    [[ $part == [=:] ]] && part=
    if [[ $option ]]; then
        value=${_zrdraw_values[$command $option]-}
        _zrdraw_value
    elif [[ $written == --*=* ]]; then
        value=${_zrdraw_values[$command ${written%%=*}]-} written=${written#*=}
        _zrdraw_value
    elif [[ $written == -* ]]; then
        choices=${_zrdraw_options[$command]-}
    else
        _zrdraw_place
        choices=${_zrdraw_commands[$command]-}
        if [[ $value ]]; then
            _zrdraw_value
        elif [[ ! $choices ]]; then
            choices=${_zrdraw_options[$command]-}
        fi
    fi
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$part")
}

complete -F _zrdraw zrdraw

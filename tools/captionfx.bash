# bash completion of captionfx. Commands and options come from the tool's own help, so that they are always its own.
# shellcheck shell=bash

_captionfx_options() {  # COMMAND...
    "$@" --help 2> /dev/null | grep --only-matching --extended-regexp -- '(^|[ ,])--?[a-z][a-z-]*' | tr --delete ' ,'
}

_captionfx() {
    local tool=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        [[ ${COMP_WORDS[i]} == -* ]] || { command=${COMP_WORDS[i]}; break; }
    done
    COMPREPLY=()
    local words
    case $before in
        --effect) words=$("$tool" effects 2> /dev/null | awk 'NR > 1 { print $1, $5 }') ;;
        --class) words=$("$tool" effects 2> /dev/null | awk 'NR > 1 { print $2 }' | sort --unique) ;;
        --format) words='animation bgra prores y4m' ;;
        --font)
            local name
            while IFS= read -r name; do
                [[ $name == "$word"* ]] && COMPREPLY+=("$(printf '%q' "$name")")
            done < <("$tool" fonts 2> /dev/null)
            return
            ;;
        *)
            if [[ -z $command ]]; then
                words=$("$tool" --help 2> /dev/null | awk '/^Subcommands:/ { on = 1; next } /^$/ { on = 0 } on { print $1 }')
                words+=" $(_captionfx_options "$tool")"
            elif [[ $word == -* ]]; then
                words=$(_captionfx_options "$tool" "$command")
            else
                compopt -o default 2> /dev/null  # files
                return
            fi
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F _captionfx captionfx

#!/usr/bin/env bash
# The manual page is well-formed and tells of every command and option that the tool's help has; bash completes them.
# Usage: tool_help.sh TOOL SOURCE_FOLDER
set -euo pipefail
tool=$1 source=$2
bad=0

page=$source/docs/captionfx.1
warnings=$(man --warnings --local-file "$page" 2>&1 > /dev/null) || bad=1
[[ -z $warnings ]] || { echo "$warnings"; bad=1; }
text=$(MANWIDTH=100 man --local-file "$page" | col -b)

# shellcheck source=tools/captionfx.bash
source "$source/tools/captionfx.bash"
complete_words() {  # WORD... : what bash offers for the last one
    COMP_WORDS=("$tool" "$@") COMP_CWORD=$# COMPREPLY=()
    _captionfx
    printf '%s\n' "${COMPREPLY[@]}"
}

mapfile -t commands < <("$tool" --help | awk '/^Subcommands:/ { on = 1; next } /^$/ { on = 0 } on { print $1 }')
((${#commands[@]} >= 5))
for command in "${commands[@]}"; do
    grep --quiet "^${command^^}" <<< "$text" || { echo "$page does not tell of '$command'"; bad=1; }
    grep --quiet --line-regexp "$command" <<< "$(complete_words "$command")" || { echo "'$command' is not completed"; bad=1; }
    help=$("$tool" "$command" --help)
    grep --quiet '^Example' <<< "$help" || { echo "'$command --help' has no example"; bad=1; }
    while read -r option; do
        grep --quiet --fixed-strings -- "$option" <<< "$text" || { echo "$page does not tell of '$option' of '$command'"; bad=1; }
        grep --quiet --line-regexp -- "$option" <<< "$(complete_words "$command" "${option:0:3}")" ||
            { echo "'$command $option' is not completed"; bad=1; }
    done < <(grep --only-matching --extended-regexp -- '--[a-z][a-z-]+' <<< "$help" | sort --unique)
done
[[ $(complete_words render --effect PATH_FAD) == PATH_FADE && $(complete_words render --effect fad) == fade ]] || { echo "effects are not completed"; bad=1; }
exit "$bad"

# Shared by the scripts of this folder, which source it: step headers with timings. It also moves to the top folder, so
# that every script works from anywhere.
# shellcheck shell=bash

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit

header() { printf '\n==> %s\n' "$1"; }

# step TITLE COMMAND...: runs the command under a header, times it, and ends the script where it fails. Inside a function
# that is given as the command `set -e` does not act, so it has to return its failures.
step() {
    local title=$1 started=$SECONDS status=0
    shift
    header "$title"
    "$@" || status=$?
    if ((status != 0)); then
        printf '==> FAILED after %d s: %s\n' $((SECONDS - started)) "$title" >&2
        exit 1
    fi
    printf '    %d s\n' $((SECONDS - started))
}

#!/usr/bin/env bash
# The DLL exports its two functions and nothing else, and needs no DLL that Windows does not have: a host copies one file.
# The tool needs the DLL besides.
# Usage: dll_tables.sh OBJDUMP DLL TOOL
set -euo pipefail
objdump=$1 dll=$2 tool=$3
bad=0

exported=$("$objdump" -p "$dll" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[ *[0-9]*\] \(.*\)/\1/p' | LC_ALL=C sort)
wanted=$'GetTitleHost\nReleaseTitleHost'
[[ $exported == "$wanted" ]] || { printf 'exported by %s:\n%s\n' "$dll" "$exported"; bad=1; }

# imports FILE PATTERN: every DLL that a file needs must match.
imports() {
    local imported foreign
    imported=$("$objdump" -p "$1" | sed -n 's/^\tDLL Name: //p' | tr '[:upper:]' '[:lower:]')
    foreign=$(grep --invert-match --line-regexp --extended-regexp "($2)\\.dll" <<< "$imported" || true)
    [[ -n $imported && -z $foreign ]] || { printf 'imported by %s and not of the system:\n%s\n' "$1" "$foreign"; bad=1; }
}
imports "$dll" 'kernel32|user32|gdi32|usp10|ole32|oleaut32|winmm|msvcrt'
imports "$tool" 'kernel32|user32|gdi32|ole32|oleaut32|shell32|msvcrt|captionfx'
exit "$bad"

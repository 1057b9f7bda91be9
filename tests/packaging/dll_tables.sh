#!/usr/bin/env bash
# The DLL exports its two functions and nothing else, and needs no DLL that Windows does not have: a host copies one file.
# Usage: dll_tables.sh OBJDUMP DLL
set -euo pipefail
objdump=$1 dll=$2

tables=$("$objdump" -p "$dll")
exported=$(sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[ *[0-9]*\] \(.*\)/\1/p' <<< "$tables" | LC_ALL=C sort)
wanted=$'GetTitleHost\nReleaseTitleHost'
imported=$(sed -n 's/^\tDLL Name: //p' <<< "$tables" | tr '[:upper:]' '[:lower:]')
foreign=$(grep --invert-match --line-regexp --extended-regexp \
    '(kernel32|user32|gdi32|usp10|ole32|oleaut32|winmm|msvcrt)\.dll' <<< "$imported" || true)

if [[ $exported != "$wanted" || -n $foreign || -z $imported ]]; then
    printf 'exported by %s:\n%s\nimported and not of the system:\n%s\n' "$dll" "$exported" "$foreign"
    exit 1
fi

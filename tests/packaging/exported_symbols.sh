#!/usr/bin/env bash
# The library exports its two functions and nothing else: every further name would be a promise to hosts.
# Usage: exported_symbols.sh NM LIBRARY
set -euo pipefail
nm=$1 library=$2

exported=$("$nm" -D --defined-only "$library" | awk '{ print $NF }' | LC_ALL=C sort)
wanted=$'GetTitleHost\nReleaseTitleHost'
if [[ $exported != "$wanted" ]]; then
    echo "exported by $library and not wanted (<), or wanted and missing (>):"
    diff <(echo "$exported") <(echo "$wanted") || true
    exit 1
fi

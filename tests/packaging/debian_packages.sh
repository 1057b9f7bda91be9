#!/usr/bin/env bash
# The packages hold what they should and ask for what they need; put together they run.
# Usage: debian_packages.sh CPACK BUILD_FOLDER
set -euo pipefail
cpack=$1 build=$2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$cpack" --config "$build/CPackConfig.cmake" -B "$scratch" > "$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }

# expect PACKAGE FIELD WORD...
expect() {
    local value word
    value=$(dpkg-deb --field "$scratch/$1"_*.deb "$2")
    for word in "${@:3}"; do
        [[ $value == *"$word"* ]] || { echo "$1: $2 lacks '$word': $value"; exit 1; }
    done
}
version=$(dpkg-deb --field "$scratch"/libcaptionfx0_*.deb Version)
expect libcaptionfx0 Depends libfreetype6 libfontconfig1 libxml2 libc6
expect libcaptionfx-dev Depends "libcaptionfx0 (= $version)"
expect captionfx Depends "libcaptionfx0 (= $version)" libavcodec59 libavformat59 libavfilter8 libswscale6 libpng16-16

for package in "$scratch"/*.deb; do dpkg-deb --extract "$package" "$scratch/root"; done
for file in bin/captionfx share/man/man1/captionfx.1 share/bash-completion/completions/captionfx include/captionfx/caption_fx.h \
    share/doc/captionfx/copyright; do
    [[ -f $scratch/root/usr/$file ]] || { echo "no package has usr/$file"; exit 1; }
done
"$scratch/root/usr/bin/captionfx" --version

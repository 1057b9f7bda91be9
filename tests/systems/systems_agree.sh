#!/usr/bin/env bash
# The same titles by the Linux library and by the Windows library under Wine, with the same fonts: drawn, saved, and loaded
# on the other system. The report and the pictures of what differs stay in the folder.
# Usage: systems_agree.sh LINUX_BIN WINDOWS_BIN WINE FOLDER
set -euo pipefail
linux=$1 windows=$2 wine=$3 folder=$4

if [[ ! -x $linux/captionfx_draw_scenes ]]; then
    echo "the Linux library is not built: cmake --build --preset release"
    exit 77
fi
rm -rf "$folder" && mkdir -p "$folder" && cd "$folder"
"$linux/captionfx_draw_scenes" linux
"$wine" "$windows/captionfx_draw_scenes.exe" windows
for origin in linux windows; do
    "$linux/captionfx_draw_scenes" "linux_from_$origin" "$origin"
    "$wine" "$windows/captionfx_draw_scenes.exe" "windows_from_$origin" "$origin"
done

failed=0
compare() { "$linux/captionfx_compare_scenes" "$@" >> report.txt || failed=1; }
compare "Drawn on Linux and on Windows" linux windows differences/drawn
# Files carry six decimals: a title that is loaded is compared with what the file gives on the system that saved it.
compare "Saved on Windows, loaded on both" linux_from_windows windows_from_windows differences/saved_on_windows
compare "Saved on Linux, loaded on both" linux_from_linux windows_from_linux differences/saved_on_linux
cat report.txt
exit "$failed"

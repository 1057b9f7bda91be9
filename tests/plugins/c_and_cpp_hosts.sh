#!/usr/bin/env bash
# The hosts of examples/hosts, built in a fresh folder against an installed library, and the commands of their page.
# Usage: c_and_cpp_hosts.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
# shellcheck source=tests/plugins/pages.sh
source "$(dirname "${BASH_SOURCE[0]}")/pages.sh"
enter_copy "$1" "$2"

run_page docs/host-in-c.md
expect_title_on out/film.mp4 out/titled.mp4 examples/titles/lower_third.xml 1280x720

# What the C host saved is drawn by the tool as the C host drew it: its sizes are parts of the em that the six decimals of
# a file hold to the last bit.
ffmpeg -loglevel error -i out/hello.pam -f rawvideo -pix_fmt bgra out/hello.raw
tool_frames out/hello.wanted out/hello.xml --frame 640x360 --from 0 --to 0.04 --fps 25
expect_equal "c_host" out/hello.raw out/hello.wanted

# Several strings that move, rest and leave, over a ground: all of them in every frame.
build/release/bin/captionfx convert examples/showcase.json out/showcase.xml
tool_frames out/wanted.raw out/showcase.xml --frame 320x180 --from 0 --to 4 --fps 25 --background 203048
head -c "$(stat --format %s out/wanted.raw)" /dev/zero | LC_ALL=C sed 's/\x00\x00\x00\x00/\x48\x30\x20\xff/g' > out/ground.raw
out/hosts/cpp_host out/showcase.xml 320x180 25 < out/ground.raw > out/drawn.raw
expect_equal "cpp_host" out/drawn.raw out/wanted.raw

head -c 1000 out/showcase.xml > out/damaged.xml
expect_failure 1 "cpp_host: missing.xml: cannot be read, or is no title" out/hosts/cpp_host missing.xml 64x36 25
expect_failure 1 "cpp_host: out/damaged.xml: cannot be read, or is no title" out/hosts/cpp_host out/damaged.xml 64x36 25
expect_failure 2 "usage: cpp_host" out/hosts/cpp_host out/showcase.xml 64by36 25
expect_failure 1 "c_host: the title cannot be saved" out/hosts/c_host no/such/folder.xml out/hello.pam

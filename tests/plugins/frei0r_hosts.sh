#!/usr/bin/env bash
# The frei0r plugins in FFmpeg and in melt, and the commands of their page. Both programs are lossless here, so all frames
# are the tool's to the byte.
# Usage: frei0r_hosts.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
# shellcheck source=tests/plugins/pages.sh
source "$(dirname "${BASH_SOURCE[0]}")/pages.sh"
enter_copy "$1" "$2"

run_page docs/frei0r.md
for titled in titled melted; do expect_title_on out/film.mp4 "out/$titled.mp4" examples/hello.json 320x180; done

export FREI0R_PATH=$PWD/out/captionfx/lib/frei0r-1
title=examples/showcase.json
for plugin in "$FREI0R_PATH"/*.so; do
    others=$(nm -D --defined-only "$plugin" | awk '$3 !~ /^f0r_/')
    [[ -z $others ]] || { echo "$plugin exports besides: $others"; exit 1; }
done

by_ffmpeg() { ffmpeg -loglevel error -y "${@:2}" -f rawvideo -pix_fmt bgra "$1"; }
by_ffmpeg out/film.raw -f lavfi -i testsrc2=size=160x96:rate=25:duration=4 -c:v ffv1 -pix_fmt bgra out/film.mkv
tool_frames out/film.titled "$title" --over out/film.mkv
tool_frames out/source.titled "$title" --frame 160x96 --from 0 --to 4 --fps 25

echo "FFmpeg"
by_ffmpeg out/filter.raw -i out/film.mkv -vf "frei0r=captionfx_overlay:$title"
expect_equal "filter" out/filter.raw out/film.titled
by_ffmpeg out/source.raw -f lavfi -i "frei0r_src=160x96:25:captionfx_title:$title" -t 4
expect_equal "source" out/source.raw out/source.titled
by_ffmpeg out/half_pace.raw -f lavfi -i "frei0r_src=160x96:25:captionfx_title:$title|0.0005" -t 4
tool_frames out/half_pace.titled "$title" --frame 160x96 --from 0 --to 2 --fps 50
expect_equal "half the pace" out/half_pace.raw out/half_pace.titled

echo "melt"
cat > out/profile << 'PROFILE'
description=a frame of square pixels
frame_rate_num=25
frame_rate_den=1
width=160
height=96
progressive=1
sample_aspect_num=1
sample_aspect_den=1
display_aspect_num=5
display_aspect_den=3
colorspace=601
PROFILE
# by_melt FILE ARGUMENT...: raw frames, drawn on two threads.
by_melt() {
    melt -silent -profile out/profile "${@:2}" -consumer avformat:out/melted.mkv vcodec=ffv1 pix_fmt=bgra an=1 \
        mlt_image_format=rgba real_time=-2 > /dev/null 2> out/melt.log
    by_ffmpeg "$1" -i out/melted.mkv
}
by_melt out/filter.raw out/film.mkv -filter frei0r.captionfx_overlay "0=$title"
expect_equal "filter" out/filter.raw out/film.titled
by_melt out/source.raw frei0r.captionfx_title "0=$title" out=99
expect_equal "source" out/source.raw out/source.titled
# Slices come to one title on several threads at once: what they show is no title, but they all come back.
by_melt out/slices.raw out/film.mkv -filter frei0r.captionfx_overlay "0=$title" threads=2
[[ $(stat --format %s out/slices.raw) == $(stat --format %s out/film.raw) ]] || { echo "slices are missing"; exit 1; }

echo "titles that cannot be read"
head -c 1000 examples/titles/opener.xml > out/damaged.xml
printf '{"strings": [{"text": "x", "face": "amber"}]}' > out/damaged.json
for damaged in out/missing.json out/damaged.xml out/damaged.json examples; do
    by_ffmpeg out/untitled.raw -i out/film.mkv -vf "frei0r=captionfx_overlay:$damaged" 2> out/errors
    expect_equal "$damaged" out/untitled.raw out/film.raw
    [[ $(wc -l < out/errors) == 1 && $(< out/errors) == "captionfx: $damaged:"* ]] || { cat out/errors; exit 1; }
    by_melt out/untitled.raw out/film.mkv -filter frei0r.captionfx_overlay "0=$damaged"
    expect_equal "$damaged" out/untitled.raw out/film.raw
    [[ $(grep --count '^captionfx: ' out/melt.log) == 1 ]] || { cat out/melt.log; exit 1; }
done
by_ffmpeg out/untitled.raw -i out/film.mkv -vf frei0r=captionfx_overlay
expect_equal "no title" out/untitled.raw out/film.raw

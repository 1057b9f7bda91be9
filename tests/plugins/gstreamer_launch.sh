#!/usr/bin/env bash
# The GStreamer element in pipelines of gst-launch-1.0, and the commands of its page. Raw frames are the tool's to the byte.
# Usage: gstreamer_launch.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
# shellcheck source=tests/plugins/pages.sh
source "$(dirname "${BASH_SOURCE[0]}")/pages.sh"
enter_copy "$1" "$2"
export GST_REGISTRY=$2/gstreamer.registry  # not the user's, and not read from all plugins each time

run_page docs/gstreamer.md
for titled in titled titled_yuv; do expect_title_on out/film.webm "out/$titled.webm" examples/hello.json 320x180; done

export GST_PLUGIN_PATH=$PWD/out/captionfx/lib/gstreamer-1.0
title=examples/showcase.json
others=$(nm -D --defined-only "$GST_PLUGIN_PATH"/libgstcaptionfx.so | awk '$3 !~ /^gst_plugin_captionfx_(get_desc|register)$/')
[[ -z $others ]] || { echo "exported besides: $others"; exit 1; }

quoted() { printf '"%s"' "$(sed 's/["\\]/\\&/g')"; }  # as the parser of launch lines wants it
source=(videotestsrc pattern=ball num-buffers=100 ! "video/x-raw,format=BGRA,width=160,height=90,framerate=25/1")
gst-launch-1.0 -q "${source[@]}" ! filesink location=out/film.raw
ffmpeg -loglevel error -f rawvideo -pix_fmt bgra -s 160x90 -r 25 -i out/film.raw -c:v ffv1 out/film.mkv
tool_frames out/titled.wanted "$title" --over out/film.mkv
gst-launch-1.0 -q "${source[@]}" ! captionfxoverlay "location=$title" ! filesink location=out/titled.raw
expect_equal "location" out/titled.raw out/titled.wanted
gst-launch-1.0 -q "${source[@]}" ! captionfxoverlay "script=$(quoted < "$title")" ! filesink location=out/titled.raw
expect_equal "script" out/titled.raw out/titled.wanted
gst-launch-1.0 -q "${source[@]}" ! captionfxoverlay ! filesink location=out/untitled.raw
expect_equal "no title" out/untitled.raw out/film.raw

# YUV there and back: the title's colours are those of the frames that were drawn in BGRA, but for rounding.
gst-launch-1.0 -q "${source[@]}" ! videoconvert ! video/x-raw,format=VUYA,colorimetry=bt601 ! captionfxoverlay "location=$title" ! \
    videoconvert ! video/x-raw,format=BGRA ! filesink location=out/yuv.raw
ffmpeg -loglevel error -f rawvideo -pix_fmt bgra -s 160x90 -r 25 -i out/yuv.raw -c:v ffv1 out/yuv.mkv
likeness=$(likeness out/yuv.mkv out/titled.wanted 160x90)
((likeness >= 40)) || { echo "VUYA frames differ: $likeness dB"; exit 1; }

head -c 1000 examples/titles/opener.xml > out/damaged.xml
fails() { expect_failure "$1" "$2" gst-launch-1.0 -q "${source[@]}" ! captionfxoverlay "${@:3}" ! fakesink; }
fails 255 "captionfxoverlay0: missing.json: cannot be opened: No such file or directory" location=missing.json
fails 255 "captionfxoverlay0: out/damaged.xml:" location=out/damaged.xml
fails 255 "captionfxoverlay0: 'location' and 'script' are both set" "location=$title" script=x
fails 255 "captionfxoverlay0: 1:1: the key 'strings' is missing" script={}
expect_failure 1 "captionfxoverlay0 can't handle caps" \
    gst-launch-1.0 -q videotestsrc ! video/x-raw,format=NV12 ! captionfxoverlay ! fakesink

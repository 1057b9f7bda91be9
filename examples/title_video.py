#!/usr/bin/env python3
"""Puts a title on every frame of a video, read and written with PyAV (Debian: python3-av). Sound is copied.

    title_video.py film.mp4 title.json titled.mp4
    title_video.py film.mkv title.json titled.mkv --codec ffv1
"""

import argparse
import sys

import av

import captionfx


def put_title_on_video(source: str, title_file: str, target: str, codec: str) -> None:
    with av.open(source) as film, av.open(target, "w") as output:
        pictures = film.streams.video[0]
        title = captionfx.Title.load(title_file, frame=(pictures.width, pictures.height))
        encoder = output.add_stream(codec, rate=pictures.average_rate, width=pictures.width, height=pictures.height)
        encoder.pix_fmt = "bgra" if codec == "ffv1" else "yuv420p"
        encoder.codec_context.time_base = pictures.time_base
        first = None  # films seldom begin at 0, titles do
        sounds = {sound.index: output.add_stream(template=sound) for sound in film.streams.audio}

        for packet in film.demux(pictures, *film.streams.audio):
            if packet.stream is not pictures:
                if packet.dts is not None:  # the last packet of a stream is empty
                    packet.stream = sounds[packet.stream.index]
                    output.mux(packet)
                continue
            for frame in packet.decode():
                pixels = frame.to_ndarray(format="bgra")
                first = frame.pts if first is None else first
                title.render(float((frame.pts - first) * frame.time_base), out=pixels)
                titled = av.VideoFrame.from_ndarray(pixels, format="bgra")
                titled.pts, titled.time_base = frame.pts, frame.time_base
                output.mux(encoder.encode(titled))
        output.mux(encoder.encode())


def main() -> int:
    parser = argparse.ArgumentParser(description="Puts a title on every frame of a video.")
    parser.add_argument("film")
    parser.add_argument("title", help="a title script, a title as XML, or subtitles")
    parser.add_argument("output")
    parser.add_argument("--codec", default="libx264", help="[libx264]; ffv1 loses nothing")
    options = parser.parse_args()
    try:
        put_title_on_video(options.film, options.title, options.output, options.codec)
    except (OSError, captionfx.TitleError) as error:
        print(f"title_video.py: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())

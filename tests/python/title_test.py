"""Titles in Python: the frames are the tool's, arrays are drawn onto in place, and faults are told as Python tells them."""

from __future__ import annotations

import ast
import dataclasses
import json
import subprocess
import sys
import threading
from pathlib import Path

import captionfx
import captionfx._captionfx
import numpy as np
import pytest
from captionfx import Border, Fill, Key, Passage, Run, Shadow, String, Style, Timeline, Title

from conftest import SOURCE, TOOL, draw_by_tool

FRAME = (160, 90)


def ground(frame: tuple[int, int], pixel: tuple[int, int, int, int] = (0x48, 0x30, 0x20, 255)) -> np.ndarray:
    width, height = frame
    return np.tile(np.array(pixel, np.uint8), (height, width, 1))


# ---- Frames ----


@pytest.mark.parametrize("time", [0.5, 3.6, 9.5])
def test_a_file_is_drawn_as_the_tool_draws_it(showcase: Path, time: float) -> None:
    title = Title.load(showcase, frame=FRAME)
    assert title.frame == FRAME
    # Twice each, and back: a frame depends on its time alone.
    for _ in range(2):
        np.testing.assert_array_equal(title.render(time), draw_by_tool(showcase, FRAME, time))
        drawn = title.render(time, out=ground(FRAME))
        np.testing.assert_array_equal(drawn, draw_by_tool(showcase, FRAME, time, "--background", "203048"))


def test_records_say_what_a_script_says(tmp_path: Path) -> None:
    label = Style(font="DejaVu Sans", size=20, shadow=Shadow("#000000", offset=(2, 3), blur=4, casts="face"))
    strings = [
        String(
            ["wrote the ", Run("program", Style(italic=True, face=Fill("#FFC857", to="#FF0000", gradient="right")))],
            style=dataclasses.replace(label, border=Border("#101018", size=3)),
            timeline=Timeline(start=0.25, enter=Passage("slide-left", 0.5), hold=1, leave=Passage("fade")),
            anchor="bottom-left",
            margin=(6, 8),
        ),
        String("one\ntwo", style=label, position=(40, 5), line_space=np.float32(2), rotate=5),
        String("keys", timeline=Timeline(keys=[Key(0, "swirl", 0), Key(1, "swirl", 1)]), width_limit="80%"),
    ]
    script = tmp_path / "same.json"
    script.write_text(
        """{
          "frame": "160x90", "styles": {"label": {"font": "DejaVu Sans", "size": 20,
              "shadow": {"color": "#000000", "offset": [2, 3], "blur": 4, "casts": "face"}}},
          "strings": [
            {"runs": ["wrote the ", {"text": "program", "italic": true,
                                     "face": {"color": "#FFC857", "to": "#FF0000", "gradient": "right"}}],
             "style": "label", "border": {"color": "#101018", "size": 3}, "anchor": "bottom-left", "margin": [6, 8],
             "start": 0.25, "in": {"effect": "slide-left", "seconds": 0.5}, "hold": 1, "out": {"effect": "fade"}},
            {"text": "one\\ntwo", "style": "label", "position": [40, 5], "lineSpace": 2, "rotate": 5},
            {"text": "keys", "widthLimit": "80%", "keys": [{"time": 0, "effect": "swirl", "progress": 0},
                                                           {"time": 1, "effect": "swirl", "progress": 1}]}]}"""
    )
    title = Title(strings, frame=FRAME)
    assert title.duration == 0.25 + 0.5 + 1 + 1
    assert title.texts == ["wrote the program", "one\r\ntwo", "keys"]
    left, top, width, height = title.boxes[1]
    assert (left, top) == (40, 5) and width > 20 and height > 40  # two lines of size 20
    for time in (0.4, 0.9, 2.5):
        np.testing.assert_array_equal(title.render(time), draw_by_tool(script, FRAME, time))
    for same in (script.read_text(), json.loads(script.read_text())):
        np.testing.assert_array_equal(title.render(0.6), Title.from_script(same).render(0.6))


def test_what_is_saved_holds_all_strings(tmp_path: Path) -> None:
    # More than a frame holds at a time: the others must be in the file too, whatever was drawn before.
    strings = [String(f"{i}", timeline=Timeline(start=i, enter=Passage("fade", 1), hold=1)) for i in range(20)]
    title = Title(strings, frame=FRAME)
    title.render(3.5)
    title.save(tmp_path / "saved.xml")
    again = Title.load(tmp_path / "saved.xml", frame=FRAME)
    assert again.texts == title.texts == [str(i) for i in range(20)]
    np.testing.assert_array_equal(again.render(17.5), title.render(17.5))


def test_yuv_frames_are_the_same_colours(showcase: Path) -> None:
    yuv = Title.load(showcase, frame=FRAME, pixels="vuya")
    background = (0x48, 0x30, 0x20)  # blue, green, red; by BT.601 in studio range:
    b, g, r = background
    pixel = (
        round(128 + 0.439 * r - 0.368 * g - 0.071 * b),
        round(128 - 0.148 * r - 0.291 * g + 0.439 * b),
        round(16 + 0.257 * r + 0.504 * g + 0.098 * b),
        255,
    )
    v, u, y, _ = np.moveaxis(yuv.render(3.6, out=ground(FRAME, pixel)).astype(float), -1, 0)
    v, u, y = v - 128, u - 128, 1.164 * (y - 16)
    blue_green_red = np.stack([y + 2.017 * u, y - 0.813 * v - 0.391 * u, y + 1.596 * v], axis=-1)
    wanted = Title.load(showcase, frame=FRAME).render(3.6, out=ground(FRAME))[..., :3].astype(float)
    assert (wanted != background).any()
    assert np.abs(blue_green_red - wanted).mean() < 2


# ---- Arrays ----


def test_a_view_is_drawn_onto_in_place(showcase: Path) -> None:
    title = Title.load(showcase, frame=FRAME)
    wanted = title.render(3.6, out=ground(FRAME))
    canvas = ground((200, 100))
    view = canvas[7:97, 11:171]
    assert title.render(3.6, out=view) is view
    np.testing.assert_array_equal(view, wanted)
    view[:] = ground(FRAME)
    np.testing.assert_array_equal(canvas, ground((200, 100)))  # nothing beside it

    upside_down = ground(FRAME)
    title.render(3.6, out=upside_down[::-1])
    np.testing.assert_array_equal(upside_down[::-1], wanted)


@pytest.mark.parametrize(
    ("out", "kind", "says"),
    [
        (np.zeros((90, 160, 4), np.float32), TypeError, "must be of uint8, not dtype('float32')"),
        (np.zeros((160, 90, 4), np.uint8), ValueError, "shape must be (90, 160, 4), not (160, 90, 4)"),
        (np.zeros((90, 160, 3), np.uint8), ValueError, "shape must be (90, 160, 4), not (90, 160, 3)"),
        (np.zeros((4, 90, 160), np.uint8).transpose(1, 2, 0), ValueError, "must lie together"),
        (np.broadcast_to(np.uint8(0), (90, 160, 4)), ValueError, "read-only"),
    ],
)
def test_an_array_that_does_not_fit_is_refused(out: np.ndarray, kind: type[Exception], says: str) -> None:
    title = Title([String("x")], frame=FRAME)
    with pytest.raises(kind) as raised:
        title.render(0, out=out)
    assert says in str(raised.value)


# ---- Threads ----


def test_the_interpreter_runs_while_a_frame_is_drawn() -> None:
    title = Title([String("many letters " * 40, style=Style(size=60, shadow=Shadow(blur=9)), width_limit="90%",
                          effect="swirl", progress=0.5)], frame=(1920, 1080))
    out = np.zeros((1080, 1920, 4), np.uint8)
    ticks, ended = 0, threading.Event()

    def tick() -> None:
        nonlocal ticks
        while not ended.wait(0.0001):
            ticks += 1

    former = sys.getswitchinterval()
    other = threading.Thread(target=tick)
    other.start()
    sys.setswitchinterval(1000)  # nobody gives the lock away but who waits or draws
    try:
        before = ticks
        title.render(0, out=out)
        during = ticks - before
    finally:
        sys.setswitchinterval(former)
        ended.set()
        other.join()
    assert during > 0


def test_threads_share_a_title(showcase: Path) -> None:
    title = Title.load(showcase, frame=FRAME)
    times = [0.3 * i for i in range(24)]
    wanted = [title.render(time) for time in times]
    drawn: dict[int, np.ndarray] = {}

    def draw(numbers: range) -> None:
        for number in numbers:
            drawn[number] = title.render(times[number])

    threads = [threading.Thread(target=draw, args=(range(first, 24, 4),)) for first in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for number, frame in enumerate(wanted):
        np.testing.assert_array_equal(drawn[number], frame)


# ---- Faults ----


def test_files_that_cannot_be_read(tmp_path: Path) -> None:
    with pytest.raises(FileNotFoundError, match="missing.json"):
        Title.load(tmp_path / "missing.json")
    with pytest.raises(IsADirectoryError):
        Title.load(tmp_path)
    damaged = {
        "empty.json": ("", "is empty"),
        "cut.xml": ('<?xml version="1.0"?><CCaptionFx><StringList><Meta', "cut.xml:1:"),
        "other.xml": ("<html/>", "its root is not CCaptionFx"),
        "color.json": ('{"strings": [{"text": "x",\n "face": {"color": "amber"}}]}', "color.json:2:20: strings[0].face.color"),
    }
    for name, (text, says) in damaged.items():
        (tmp_path / name).write_text(text)
        with pytest.raises(captionfx.TitleError) as raised:
            Title.load(tmp_path / name)
        assert says in str(raised.value)
        assert "\n" not in str(raised.value)
    title = Title([String("x")])
    with pytest.raises(OSError, match="no/such"):
        title.save(tmp_path / "no/such/folder.xml")


@pytest.mark.parametrize(
    ("make", "says"),
    [
        (lambda: Title([String("x", style=Style(face="amber"))]), "strings[0].face"),
        (lambda: Title([String("x"), String("y", anchor="middle")]), "strings[1].anchor"),
        (lambda: Title([String("x", timeline=Timeline(enter=Passage("slide-lefd")))]), "slide-left"),
        (lambda: Title([String("x")], frame=(0, 90)), "frame"),
        (lambda: Title.from_script("{}", frame=(99999, 90)), "frame"),
        (lambda: Title.from_script({"strings": []}, scale=float("nan")), "scale"),
        (lambda: Title([String("x")], pixels="rgba"), "pixels"),
        (lambda: Title([String("x")]).render(float("inf")), "time"),
    ],
)
def test_faults_name_their_place(make, says: str) -> None:
    with pytest.raises(ValueError) as raised:
        make()
    assert says in str(raised.value)
    assert not str(raised.value)[0].isdigit()  # no line of a text that nobody wrote


# ---- The package ----


def test_the_stub_names_what_is_there() -> None:
    stub = ast.parse((Path(captionfx.__file__).parent / "_captionfx.pyi").read_text())
    module = captionfx._captionfx
    declared = {node.name: node for node in stub.body if isinstance(node, (ast.ClassDef, ast.FunctionDef))}
    assert set(declared) == {name for name in dir(module) if not name.startswith("_")}
    core = {node.name for node in declared["TitleCore"].body if isinstance(node, ast.FunctionDef)}
    assert core == {name for name in vars(module.TitleCore) if not name.startswith("_")}
    assert "slide-left" in captionfx.effects()


def test_the_example_titles_a_video(tmp_path: Path) -> None:
    pytest.importorskip("av")
    film, titled, title = tmp_path / "film.mkv", tmp_path / "titled.mkv", SOURCE / "examples" / "hello.json"
    lavfi = ["-f", "lavfi", "-i", "testsrc2=size=160x90:rate=10:duration=1.5", "-f", "lavfi", "-i", "sine=duration=1.5"]
    ffmpeg = ["ffmpeg", "-loglevel", "error"]
    subprocess.run([*ffmpeg, *lavfi, "-pix_fmt", "bgra", "-c:v", "ffv1", "-c:a", "flac", film], check=True)
    example = [sys.executable, SOURCE / "examples" / "title_video.py"]
    subprocess.run([*example, film, title, titled, "--codec", "ffv1"], check=True)

    def decoded(path: Path, kind: str, *options: str) -> bytes:
        command = [*ffmpeg, "-i", path, "-f", kind, *options, "-"]
        return subprocess.run(command, check=True, capture_output=True).stdout

    over = [TOOL, "render", title, "--over", film, "--format", "bgra", "--quiet", "-o", "-"]
    wanted = subprocess.run(over, check=True, capture_output=True).stdout
    assert len(wanted) == 15 * 160 * 90 * 4
    assert decoded(titled, "rawvideo", "-pix_fmt", "bgra") == wanted
    assert decoded(titled, "s16le", "-vn") == decoded(film, "s16le", "-vn")

    missing = subprocess.run([*example, film, tmp_path / "no.json", titled], capture_output=True, text=True)
    assert missing.returncode == 1
    assert missing.stderr.count("\n") == 1 and "No such file or directory" in missing.stderr

"""Titles: made of strings, read from files, drawn onto arrays."""

from __future__ import annotations

import json
import os
import re
from collections.abc import Iterable, Mapping
from typing import Any

import numpy as np
import numpy.typing as npt

from ._captionfx import TitleCore, TitleError
from ._records import String, script_of


def _plain(value: Any) -> Any:
    """NumPy's numbers are numbers too."""
    if isinstance(value, np.generic):
        return value.item()
    raise TypeError(f"{value!r} is nothing that a title can hold")


class Title:
    """A title that does not change. Threads may share it: its frames are drawn one at a time, without the
    interpreter's lock. Different titles are drawn at once."""

    _core: TitleCore

    def __init__(
        self,
        strings: Iterable[String],
        *,
        frame: tuple[int, int] = (1280, 720),
        scale: float = 1.0,
        duration: float | None = None,
        pixels: str = "bgra",
    ) -> None:
        """A title of strings; later ones lie on top.

        frame     width and height in pixels
        scale     pixels to a document unit
        duration  seconds; without it the title ends with its last string
        pixels    the order of bytes: "bgra", or "vuya" (studio range, BT.601)

        Raises TitleError, which is a ValueError, with the place and the reason.
        """
        width, height = frame
        script: dict[str, Any] = {
            "frame": {"width": width, "height": height},
            "scale": scale,
            "strings": script_of(list(strings)),
        }
        if duration is not None:
            script["duration"] = duration
        self._core = _core_of_script(script, None, 1.0, pixels)

    @classmethod
    def load(
        cls,
        path: str | os.PathLike[str],
        *,
        frame: tuple[int, int] | None = None,
        scale: float = 1.0,
        pixels: str = "bgra",
    ) -> Title:
        """A title from a file: XML, a title script (JSON), or subtitles (SubRip, WebVTT).

        frame  width and height in pixels, into which the frame of the file is fitted; without it that of the file, or
               (1280, 720) where it names none
        scale  enlarges the title about the frame's upper left corner

        Raises OSError for a file that cannot be opened, TitleError for what is no title.
        """
        with open(path, "rb"):
            pass
        return cls._of(TitleCore.from_file(path, frame, scale, _is_vuya(pixels)))

    @classmethod
    def from_script(
        cls,
        script: Mapping[str, Any] | str,
        *,
        frame: tuple[int, int] | None = None,
        scale: float = 1.0,
        pixels: str = "bgra",
    ) -> Title:
        """A title from a title script: its text, or the same as a dictionary. The rest is as for load."""
        if isinstance(script, str):
            return cls._of(TitleCore.from_script(script, frame, scale, _is_vuya(pixels)))
        return cls._of(_core_of_script(script, frame, scale, pixels))

    @classmethod
    def _of(cls, core: TitleCore) -> Title:
        title = cls.__new__(cls)
        title._core = core
        return title

    @property
    def frame(self) -> tuple[int, int]:
        """Width and height in pixels."""
        return self._core.frame

    @property
    def duration(self) -> float:
        """Seconds, those that were given or to the end of the last string; 0.0 for a still."""
        return self._core.duration

    @property
    def texts(self) -> list[str]:
        """The text of each string. Paragraphs are separated by CR LF."""
        return self._core.texts

    @property
    def boxes(self) -> list[tuple[float, float, float, float]]:
        """Of each string left, top, width and height in pixels, before its rotation."""
        return self._core.boxes

    def render(self, time: float = 0.0, out: npt.NDArray[np.uint8] | None = None) -> npt.NDArray[np.uint8]:
        """Draws the title as it is at `time`, in seconds, and returns the array.

        out  an array of shape (height, width, 4) and type uint8 that is drawn onto in place; its rows may be padded, so
             that a view of a larger array will do. Its alpha is straight; where all of it is 255 it stays so. Without
             it, a new and transparent one.

        The last axis is blue, green, red, alpha, or V, U, Y, alpha in a title of "vuya" pixels.
        Raises TypeError or ValueError for an array that does not fit.
        """
        return self._core.render(time, out)

    def save(self, path: str | os.PathLike[str]) -> None:
        """Writes the title as XML, which holds neither frame nor scale. Raises OSError."""
        self._core.save(path)

    def __repr__(self) -> str:
        width, height = self.frame
        return f"<captionfx.Title {width}x{height}, {len(self.texts)} strings, {self.duration:g} s>"


def _is_vuya(pixels: str) -> bool:
    if pixels not in ("bgra", "vuya"):
        raise ValueError(f"pixels: must be 'bgra' or 'vuya', not {pixels!r}")
    return pixels == "vuya"


def _core_of_script(
    script: Mapping[str, Any], frame: tuple[int, int] | None, scale: float, pixels: str
) -> TitleCore:
    text = json.dumps(script, default=_plain)
    try:
        return TitleCore.from_script(text, frame, scale, _is_vuya(pixels))
    except TitleError as error:
        # Line and column are those of a text that nobody has seen.
        raise TitleError(re.sub(r"^\d+:\d+: ", "", str(error))) from None

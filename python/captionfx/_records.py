"""What a title is made of. Records do not change: dataclasses.replace makes a changed copy. A field that is None is not
said, and what nobody says has the plain look: white DejaVu Sans of size 64, no border, no shadow."""

from __future__ import annotations

import dataclasses
from collections.abc import Sequence
from dataclasses import dataclass
from typing import Any


@dataclass(frozen=True)
class Fill:
    """The fill of letters: one colour, or a gradient between two."""

    color: str | None = None
    """"#RRGGBB"."""
    to: str | None = None
    """The second colour of a gradient."""
    gradient: str | None = None
    """Where it goes: "down", "up", "left", "right", "up-left", "up-right", "down-left", "down-right"."""
    opacity: float | None = None
    """0 to 1."""
    blur: float | None = None
    """10 is one eighth of the font's size."""


@dataclass(frozen=True)
class Border(Fill):
    """The outline around letters."""

    size: float | None = None
    """Thickness; 10 is one eighth of the font's size."""


@dataclass(frozen=True)
class Shadow(Fill):
    """The shadow under letters."""

    offset: tuple[float, float] | None = None
    """Right and down, document units."""
    extrude: bool | None = None
    """Drawn all the way along its offset, so that letters stand out as blocks."""
    casts: str | None = None
    """"both", "face" or "border"."""


@dataclass(frozen=True)
class Style:
    """How text looks. A colour stands for a fill of that colour, "none" switches off."""

    font: str | None = None
    """Font family."""
    size: float | None = None
    """Of the em, document units, up to 1638."""
    bold: bool | None = None
    italic: bool | None = None
    stretch: float | None = None
    """Horizontal stretch, 1 for none."""
    spacing: float | None = None
    """Added after each character, document units."""
    face: Fill | str | None = None
    border: Border | str | None = None
    shadow: Shadow | str | None = None


@dataclass(frozen=True)
class Passage:
    """An effect that brings a string in or takes it away. captionfx.effects() has the names."""

    effect: str
    seconds: float = 1.0


@dataclass(frozen=True)
class Key:
    """A keyframe: from `time` on, in seconds, the effect holds; between two of one effect its progress runs."""

    time: float
    effect: str
    progress: float
    """0 not there yet, 1 at rest."""


@dataclass(frozen=True)
class Timeline:
    """When a string is seen: it enters, holds and leaves, or follows keys. Without any of it, all the time."""

    start: float | None = None
    """Seconds at which the entrance begins."""
    enter: Passage | None = None
    hold: float | None = None
    """Seconds between; without it until the title ends."""
    leave: Passage | None = None
    keys: Sequence[Key] | None = None
    """In the place of all the others."""


@dataclass(frozen=True)
class Run:
    """Part of a string's text with a look of its own, laid over that of the string."""

    text: str
    style: Style = Style()


@dataclass(frozen=True)
class String:
    """A text with its place, look and time."""

    text: str | Sequence[str | Run]
    """A line feed begins a paragraph."""
    style: Style = Style()
    timeline: Timeline = Timeline()
    anchor: str | None = None
    """"top-left", "top", "top-right", "left", "center", "right", "bottom-left", "bottom", "bottom-right"."""
    margin: float | tuple[float, float] | None = None
    """Room to the anchored edges in percent of the frame: one number, or across and down."""
    position: tuple[float, float] | None = None
    """The upper left corner, in the place of anchor and margin."""
    width_limit: float | str | None = None
    """Where lines wrap: document units, or percent of the frame such as "80%"."""
    align: str | None = None
    """Of the lines: "left", "center", "right"; in vertical text "top", "middle", "bottom"."""
    rotate: float | None = None
    """Degrees, clockwise."""
    vertical: bool | None = None
    """Columns from right to left."""
    line_space: float | None = None
    before_space: float | None = None
    after_space: float | None = None
    left_indent: float | None = None
    right_indent: float | None = None
    effect: str | None = None
    """Shown in the middle of an effect, without a timeline."""
    progress: float | None = None


_KEYS = {"enter": "in", "leave": "out"}


def _key_of(name: str) -> str:
    first, *others = name.split("_")
    return _KEYS.get(name, first + "".join(word.capitalize() for word in others))


def script_of(record: Any) -> Any:
    """A record, or what holds records, as a title script has it. Styles and timelines are part of their text there."""
    if isinstance(record, (list, tuple)):
        return [script_of(item) for item in record]
    if not dataclasses.is_dataclass(record):
        return record
    members: dict[str, Any] = {}
    for field in dataclasses.fields(record):
        value = getattr(record, field.name)
        if isinstance(value, (Style, Timeline)):
            members.update(script_of(value))
        elif field.name == "text" and not isinstance(value, str):
            members["runs"] = script_of(list(value))
        elif value is not None:
            members[_key_of(field.name)] = script_of(value)
    return members

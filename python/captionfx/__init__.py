"""Animated text titles, drawn onto NumPy arrays.

    import captionfx

    title = captionfx.Title([
        captionfx.String(
            "Hello",
            style=captionfx.Style(size=160, face=captionfx.Fill("#FFE9A8", to="#FF8A00")),
            timeline=captionfx.Timeline(enter=captionfx.Passage("slide-left"), hold=2),
        ),
    ], frame=(1280, 720))
    picture = title.render(0.5)      # (720, 1280, 4), uint8: blue, green, red, alpha
    title.render(0.5, out=picture)   # onto a picture that is there

Times are seconds. Lengths are document units, which are pixels in a title of scale 1. Colours are "#RRGGBB".
"""

from ._captionfx import TitleError, effects
from ._records import Border, Fill, Key, Passage, Run, Shadow, String, Style, Timeline
from ._title import Title

__all__ = [
    "Border",
    "Fill",
    "Key",
    "Passage",
    "Run",
    "Shadow",
    "String",
    "Style",
    "Timeline",
    "Title",
    "TitleError",
    "effects",
]

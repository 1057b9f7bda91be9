import os

import numpy as np
import numpy.typing as npt

class TitleError(ValueError):
    """A title that cannot be read: one line with the place and the reason."""

class TitleCore:
    @staticmethod
    def from_file(
        path: str | os.PathLike[str], frame: tuple[int, int] | None, scale: float, vuya: bool
    ) -> TitleCore: ...
    @staticmethod
    def from_script(text: str, frame: tuple[int, int] | None, scale: float, vuya: bool) -> TitleCore: ...
    @property
    def frame(self) -> tuple[int, int]: ...
    @property
    def duration(self) -> float: ...
    @property
    def texts(self) -> list[str]: ...
    @property
    def boxes(self) -> list[tuple[float, float, float, float]]: ...
    def render(self, time: float, out: npt.NDArray[np.uint8] | None) -> npt.NDArray[np.uint8]: ...
    def save(self, path: str | os.PathLike[str]) -> None: ...

def effects() -> list[str]:
    """The names of the effects, such as "slide-left"."""

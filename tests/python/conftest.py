"""The tool as the measure of frames, and a title to draw."""

from __future__ import annotations

import os
import subprocess
from pathlib import Path

import numpy as np
import pytest

TOOL = os.environ["CAPTIONFX_TOOL"]
SOURCE = Path(os.environ["CAPTIONFX_SOURCE_DIR"])


@pytest.fixture
def showcase() -> Path:
    """Several strings that come, rest and go."""
    return SOURCE / "examples" / "showcase.json"


def draw_by_tool(title: Path, frame: tuple[int, int], time: float, *options: str) -> np.ndarray:
    """The frame of `captionfx render`, (height, width, 4)."""
    width, height = frame
    command = [TOOL, "render", title, "--frame", f"{width}x{height}", "--from", str(time), "--to", str(time + 0.01)]
    command += ["--fps", "25", "--format", "bgra", "--quiet", *options, "-o", "-"]
    drawn = subprocess.run(command, check=True, capture_output=True).stdout
    return np.frombuffer(drawn, np.uint8).reshape(height, width, 4)

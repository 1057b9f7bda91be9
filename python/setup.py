"""Builds the wheel: CMake builds the library and the module from the tree around this folder, into build/wheel."""

import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

TREE = Path(__file__).resolve().parent.parent
BUILD = TREE / "build" / "wheel"
STAGE = BUILD / "python-build"


class BuildByCMake(build_ext):
    def run(self) -> None:
        options = ["CAPTIONFX_PYTHON=ON", "CAPTIONFX_PLUGINS=OFF", "CAPTIONFX_TESTS=OFF", "CMAKE_BUILD_TYPE=Release"]
        options.append(f"Python_EXECUTABLE={sys.executable}")
        subprocess.run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", *(f"-D{o}" for o in options)], check=True)
        subprocess.run(["cmake", "--build", BUILD, "--target", "captionfx_python"], check=True)
        prefix = TREE / "python" if self.inplace else Path(self.build_lib)
        subprocess.run(
            ["cmake", "--install", BUILD, "--component", "python", "--strip", "--prefix", prefix.resolve()], check=True
        )


def version() -> str:
    project = re.search(r"project\(captionfx VERSION ([0-9.]+)", (TREE / "CMakeLists.txt").read_text())
    assert project is not None
    return project[1]


shutil.rmtree(STAGE, ignore_errors=True)  # or the wheel would have what former ones had
STAGE.mkdir(parents=True)
setup(
    version=version(),
    # What pip leaves behind while it builds is not for the folder of the sources.
    options={"egg_info": {"egg_base": str(STAGE)}, "build": {"build_base": str(STAGE)}},
    ext_modules=[Extension("captionfx._captionfx", sources=[])],
    cmdclass={"build_ext": BuildByCMake},
)

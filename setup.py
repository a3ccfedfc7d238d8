"""Builds the Python package tolven_xml: CMake builds only the module tolven_xml._core.

    python3 -m venv --system-site-packages .venv && .venv/bin/pip install --no-build-isolation .

Nothing is downloaded: the build uses the system's CMake, compilers, libraries and pybind11.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent


class CMakeExtension(Extension):
    """A module CMake builds: no sources of its own for setuptools."""

    def __init__(self, name: str) -> None:
        super().__init__(name, sources=[])


class CMakeBuild(build_ext):
    def build_extension(self, ext: CMakeExtension) -> None:
        output_dir = Path(self.get_ext_fullpath(ext.name)).parent.resolve()
        build_dir = Path(self.build_temp).resolve() / ext.name
        build_dir.mkdir(parents=True, exist_ok=True)
        configure = [
            "cmake", "-S", str(ROOT), "-B", str(build_dir),
            f"-DCMAKE_BUILD_TYPE={'Debug' if self.debug else 'Release'}",
            f"-DCMAKE_LIBRARY_OUTPUT_DIRECTORY={output_dir}{os.sep}",
            f"-DPython3_EXECUTABLE={sys.executable}",
            "-DTOLVEN_BUILD_PYTHON=ON", "-DTOLVEN_BUILD_CLI=OFF",
            "-DTOLVEN_BUILD_TESTS=OFF", "-DTOLVEN_BUILD_BENCH=OFF",
        ]
        if shutil.which("ninja"):
            configure += ["-G", "Ninja"]
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", "2")
        subprocess.run(configure, check=True)
        subprocess.run(["cmake", "--build", str(build_dir), "--target", "_core", "-j", jobs], check=True)


def version() -> str:
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"project\(\w+ VERSION ([0-9.]+)", text).group(1)


setup(
    version=version(),
    ext_modules=[CMakeExtension("tolven_xml._core")],
    cmdclass={"build_ext": CMakeBuild},
    zip_safe=False,
)

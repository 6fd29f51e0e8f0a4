"""Builds the Python package. CMake builds the native module, so that its sources are listed once;
the version is the library's."""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent


def version() -> str:
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    match = re.search(r"^project\(orif VERSION ([0-9.]+)", text, re.MULTILINE)
    assert match, "CMakeLists.txt names no version"
    return match.group(1)


class CMakeBuild(build_ext):
    """Lets CMake build the native module, and takes over what it has put into the package."""

    def build_extension(self, ext: Extension) -> None:
        build = Path(self.build_temp).resolve()
        package = build / "orif"
        configure = [
            "cmake", "-S", str(ROOT), "-B", str(build),
            "-DCMAKE_BUILD_TYPE=Release", "-DORIF_BUILD_PYTHON=ON", "-DORIF_BUILD_TOOL=OFF",
            "-DORIF_BUILD_TESTS=OFF", "-DORIF_BUILD_EXAMPLES=OFF", "-DORIF_INSTALL=OFF",
            f"-DPython3_EXECUTABLE={sys.executable}", f"-DORIF_PYTHON_PACKAGE={package}",
        ]
        if shutil.which("ninja"):
            configure += ["-G", "Ninja"]
        subprocess.run(configure, check=True)
        jobs = str(self.parallel or os.cpu_count() or 1)
        subprocess.run(["cmake", "--build", str(build), "--target", "orif_python", "-j", jobs], check=True)
        target = Path(self.get_ext_fullpath(ext.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        for made in (target.name, "_native.pyi"):
            shutil.copy(package / made, target.parent / made)


setup(version=version(), ext_modules=[Extension("orif._native", [])], cmdclass={"build_ext": CMakeBuild})

"""Builds the Python package. CMake builds the native module, so that its sources are listed once;
the version is the library's."""

import os
import re
import shutil
import subprocess
import sys
import sysconfig
from importlib import import_module
from importlib.util import find_spec
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent


def version() -> str:
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    match = re.search(r"^project\(orif VERSION ([0-9.]+)", text, re.MULTILINE)
    assert match, "CMakeLists.txt names no version"
    return match.group(1)


def need(found: object, what: str) -> None:
    if not found:
        raise SystemExit(
            f"orif: {what}. scripts/install-deps.sh build tool python installs what the package is "
            f"built with, for Debian's own /usr/bin/python3; this is {sys.executable}."
        )


# Without an isolated build nothing else says that they are missing, or only in setuptools' words.
for package in ("pybind11", "wheel"):
    need(find_spec(package), f"this Python has no {package}")


class CMakeBuild(build_ext):
    """Lets CMake build the native module, and takes over what it has put into the package."""

    def build_extension(self, ext: Extension) -> None:
        need(shutil.which("cmake"), "there is no cmake")
        need((Path(sysconfig.get_path("include")) / "Python.h").exists(), "this Python lacks its headers")
        build = Path(self.build_temp).resolve()
        configure = [
            "cmake", "-S", str(ROOT), "-B", str(build),
            "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_UNITY_BUILD=ON", "-DCMAKE_UNITY_BUILD_BATCH_SIZE=0",
            "-DORIF_BUILD_PYTHON=ON", "-DORIF_BUILD_TOOL=OFF", "-DORIF_BUILD_TESTS=OFF",
            "-DORIF_BUILD_EXAMPLES=OFF", "-DORIF_INSTALL=OFF", f"-DPython3_EXECUTABLE={sys.executable}",
            f"-Dpybind11_DIR={import_module('pybind11').get_cmake_dir()}",
        ]  # fmt: skip
        if shutil.which("ninja"):
            configure += ["-G", "Ninja"]
        jobs = str(self.parallel or os.cpu_count() or 1)
        subprocess.run(configure, check=True)
        subprocess.run(
            ["cmake", "--build", str(build), "--target", "orif_python", "-j", jobs], check=True
        )
        target = Path(self.get_ext_fullpath(ext.name)).parent
        target.mkdir(parents=True, exist_ok=True)
        for made in (build / "python/orif").glob("_native*"):
            shutil.copy(made, target)


setup(version=version(), ext_modules=[Extension("orif._native", [])], cmdclass={"build_ext": CMakeBuild})

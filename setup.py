# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Has CMake build the compiled part of the package, the library and the program into it."""

import os
import pathlib
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).parent.resolve()
OPTIONS = ["-DTACTUS_BUILD_PYTHON=ON", "-DTACTUS_BUILD_TESTS=OFF", "-DTACTUS_BUILD_DESKTOP=OFF"]


class BuildByCMake(build_ext):
    """Installs the component `wheel` where the extension is to be."""

    def build_extension(self, ext: Extension) -> None:
        package = pathlib.Path(self.get_ext_fullpath(ext.name)).parent.resolve()
        folder = str(pathlib.Path(self.build_temp).resolve())
        cmake = os.environ.get("CMAKE", "cmake")
        configure = [cmake, "-S", str(ROOT), "-B", folder, "-G", "Ninja", *OPTIONS]
        configure += [f"-DPython_EXECUTABLE={sys.executable}", "-DCMAKE_BUILD_TYPE=Release"]
        configure += ["-DCMAKE_INSTALL_RPATH=$ORIGIN/lib"]
        subprocess.run(configure, check=True)
        subprocess.run([cmake, "--build", folder, "--target", "tactus_wheel"], check=True)
        install = [cmake, "--install", folder, "--component", "wheel", "--strip"]
        subprocess.run([*install, "--prefix", str(package)], check=True)


setup(
    ext_modules=[Extension("tactus._core", sources=[])],
    cmdclass={"build_ext": BuildByCMake},
)

"""Builds the extension with the project's own CMake build (python/CMakeLists.txt),
so the library keeps exactly the compiler flags its results depend on.
Needs the whole source tree (this directory inside it), CMake and a C++17
compiler; configuration lives in pyproject.toml."""
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent.parent


def project_version():
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"project\(Mivora\s+VERSION\s+([\d.]+)", text).group(1)


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        build = Path(self.build_temp).resolve() / "cmake"
        off = ["TESTS", "BENCHMARKS", "TOOLS", "EXAMPLES", "INSTALL", "FUZZERS"]
        subprocess.check_call(
            ["cmake", "-S", str(ROOT), "-B", str(build), "-DCMAKE_BUILD_TYPE=Release",
             "-DMIVORA_BUILD_PYTHON=ON", "-DPython3_EXECUTABLE=" + sys.executable]
            + ["-DMIVORA_BUILD_%s=OFF" % o for o in off])
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", "2")
        subprocess.check_call(["cmake", "--build", str(build), "--target", "mivora_python", "-j", jobs])
        built = next(p for p in (build / "python" / "mivora").glob("_mivora.*") if p.suffix != ".pyi")
        target = Path(self.get_ext_fullpath(ext.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(built, target)


if not (ROOT / "include" / "mivora" / "IirProcess.h").is_file():
    sys.exit("mivora: build from the Mivora source tree (pip install ./python from its top directory)")

setup(version=project_version(),
      ext_modules=[Extension("mivora._mivora", sources=[])],
      cmdclass={"build_ext": CMakeBuild})

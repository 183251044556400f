"""Builds the package with the library inside: `pip wheel ./python`, which takes CMake and a C++17 compiler.

Everything is built in a temporary directory, so that the source tree stays as it is.
"""

import atexit
import os
import re
import shlex
import shutil
import subprocess
import tempfile
from pathlib import Path

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py
from setuptools.command.sdist import sdist

try:
    from setuptools.command.bdist_wheel import bdist_wheel
except ImportError:  # before setuptools 70.1
    from wheel.bdist_wheel import bdist_wheel

HERE = Path(__file__).resolve().parent
SOURCES = HERE / "library" if (HERE / "library").exists() else HERE.parent
PARTS = ["CMakeLists.txt", "LICENSE", "cmake", "dsp"]  # what the library is built from
NAMES = {"libdsp.so.2": "libdsp.so.2", "libdsp.dylib": "libdsp.dylib", "libdsp.dll": "libdsp.dll", "dsp.dll": "dsp.dll"}
# The newest symbol versions that each platform tag allows.
POLICIES = {
    "manylinux_2_17": {"GLIBC": (2, 17), "GLIBCXX": (3, 4, 19), "CXXABI": (1, 3, 7)},
    "manylinux_2_28": {"GLIBC": (2, 28), "GLIBCXX": (3, 4, 24), "CXXABI": (1, 3, 11)},
}


def scratch(name):
    """A directory that lasts as long as the build."""
    path = Path(tempfile.mkdtemp(prefix=f"dsp-{name}-"))
    atexit.register(shutil.rmtree, path, ignore_errors=True)
    return path


def build_library(directory):
    """Builds the library and returns its file, whose name is the one by which it is loaded."""
    if shutil.which("cmake") is None:
        raise SystemExit("the library inside this package is built by CMake: install it, and a C++17 compiler")
    flags = f"{os.environ.get('CXXFLAGS', '')} -include {shlex.quote(str(HERE / 'older_glibc.h'))}"
    options = ["-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_SHARED_LINKER_FLAGS=-s"]
    options += [f"-DDSP_{part}=OFF" for part in ("TESTS", "EXAMPLES", "INSTALL")]
    subprocess.check_call(
        ["cmake", "-S", SOURCES, "-B", directory, *options], env={**os.environ, "CXXFLAGS": flags.strip()}
    )
    subprocess.check_call(["cmake", "--build", directory, "--target", "dsp", "--parallel", str(os.cpu_count() or 1)])
    return next(directory / name for name in NAMES if (directory / name).exists())


def platform_of(library, machine):
    """The oldest platform whose symbol versions are enough for a library, for instance manylinux_2_28_x86_64."""
    wanted = {}
    for name, version in re.findall(rb"\0(GLIBC|GLIBCXX|CXXABI)_([\d.]+)(?=\0)", library.read_bytes()):
        kind = name.decode()
        wanted[kind] = max(wanted.get(kind, (0,)), tuple(map(int, version.split(b"."))))
    for platform, newest in POLICIES.items():
        if all(version <= newest[kind] for kind, version in wanted.items()):
            return f"{platform}_{machine}"
    return f"manylinux_{wanted['GLIBC'][0]}_{wanted['GLIBC'][1]}_{machine}"


class Build(build_py):
    def run(self):
        super().run()
        library = build_library(scratch("library"))
        package = Path(self.build_lib) / "dsp"
        shutil.copy(library, package / library.name)
        shutil.copy(SOURCES / "LICENSE", package)


class Wheel(bdist_wheel):
    """One for every Python 3 of a platform, since the library is called through ctypes."""

    def get_tag(self):
        platform = super().get_tag()[2]
        built = [Path(self.get_finalized_command("build").build_lib) / "dsp" / name for name in NAMES]
        system, _, machine = platform.partition("_")
        for library in filter(Path.exists, built):
            if system == "linux":
                platform = platform_of(library, machine)
        return "py3", "none", platform


class SourceDistribution(sdist):
    def make_release_tree(self, base_dir, files):
        super().make_release_tree(base_dir, [name for name in files if not os.path.isabs(name)])
        for part in PARTS:
            source, target = SOURCES / part, Path(base_dir) / "library" / part
            target.parent.mkdir(exist_ok=True)
            shutil.copytree(source, target) if source.is_dir() else shutil.copy(source, target)


class WithLibrary(Distribution):
    def has_ext_modules(self):
        return True


setup(
    cmdclass={"build_py": Build, "bdist_wheel": Wheel, "sdist": SourceDistribution},
    distclass=WithLibrary,
    options={"build": {"build_base": str(scratch("build"))}, "egg_info": {"egg_base": str(scratch("egg"))}},
)

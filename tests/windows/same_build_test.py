"""One commit and one SOURCE_DATE_EPOCH give one library, wherever the sources lie and whatever the build folder."""

import os
import shutil
import subprocess
import tempfile
import unittest

from wine_case import BUILD, SOURCE

LIBRARIES = {
    "windows": ["velm_export.dll", "prevelmwdll.dll"],
    "linux": ["libvelm_export.so", "libprevelmwdll.so"],
}


def build(system, source, folder):
    """Builds the two libraries; returns their bytes."""
    environment = {**os.environ, "SOURCE_DATE_EPOCH": "1700000000"}
    toolchain = [f"-DCMAKE_TOOLCHAIN_FILE={source}/cmake/windows.cmake"] if system == "windows" else []
    revisions = [f"-DVELM_{sources}_{what}={what.lower()}" for sources in ("MODEL", "GUI") for what in ("REVISION", "BRANCH")]
    commands = [
        ["cmake", "-S", source, "-B", folder, "-G", "Ninja", "-DBUILD_TESTING=OFF", *toolchain, *revisions],
        ["cmake", "--build", folder, "--target", "velm_export", "prevelmwdll"],
    ]
    if system == "windows":
        shutil.copytree(BUILD / "third_party", folder / "third_party", dirs_exist_ok=True)
    for command in commands:
        done = subprocess.run(command, env=environment, capture_output=True, text=True)
        if done.returncode != 0:
            raise RuntimeError(f"{command}\n{done.stdout}{done.stderr}")
    return [(folder / library).read_bytes() for library in LIBRARIES[system]]


class SameBuild(unittest.TestCase):
    def test_libraries(self):
        with tempfile.TemporaryDirectory(dir=BUILD, prefix="again-") as holder:
            copy = BUILD / holder / "copy-elsewhere"
            ignored = shutil.ignore_patterns("build", ".git")
            shutil.copytree(SOURCE, copy, ignore=ignored)
            for system, names in LIBRARIES.items():
                first = build(system, SOURCE, BUILD / holder / f"first {system}")
                second = build(system, copy, copy / "build" / system)
                for name, one, other in zip(names, first, second):
                    with self.subTest(name):
                        self.assertTrue(one == other, f"{name}: {len(one)} and {len(other)} bytes, which differ")


if __name__ == "__main__":
    unittest.main()

"""One commit and one time give one library, wherever the sources lie and whatever the build folder."""

import datetime
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from wine_case import BUILD, SOURCE, VELM_LINUX

LINUX_BUILD = pathlib.Path(VELM_LINUX).parent


def build_information(build):
    """{"build_time": "Built on: ...", ...} as a build has it."""
    return dict(re.findall(r'(\w+) = "(.*)"', (build / "generated/Utilities/Export/Version").read_text()))


def build_again(original, source, folder, *options):
    """Builds what `original` built from these other sources, in another folder, with its build information."""
    information = build_information(original)
    time = datetime.datetime.strptime(information["build_time"], "Built on: %a, %d %b %Y %H:%M:%S %z")
    revisions = [f"-DVELM_{sources}_{what}={value}"
                 for sources, line in [("MODEL", "model"), ("GUI", "interface")]
                 for what, value in [("REVISION", information[f"{line}_revision"].split()[2]),
                                     ("BRANCH", information[f"{line}_branch"].split()[2])]]
    for command in [
        ["cmake", "-S", source, "-B", folder, "-G", "Ninja", "-DBUILD_TESTING=OFF", *options, *revisions],
        ["cmake", "--build", folder, "--target", "velm_export", "prevelmwdll"],
    ]:
        done = subprocess.run(command, env={**os.environ, "SOURCE_DATE_EPOCH": str(int(time.timestamp()))},
                              capture_output=True, text=True)
        if done.returncode != 0:
            raise RuntimeError(f"{command}\n{done.stdout}{done.stderr}")


class SameBuild(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory(dir=BUILD, prefix="again-")
        self.addCleanup(holder.cleanup)
        self.copy = pathlib.Path(holder.name) / "copy-elsewhere"
        shutil.copytree(SOURCE, self.copy, ignore=shutil.ignore_patterns("build", ".git"))

    def check(self, original, folder, libraries, *options):
        build_again(original, self.copy, folder, *options)
        for library in libraries:
            one, other = ((build / library).read_bytes() for build in (original, folder))
            self.assertTrue(one == other, f"{library}: {len(one)} and {len(other)} bytes, which differ")

    def test_for_windows(self):
        folder = self.copy / "build/other"
        shutil.copytree(BUILD / "third_party", folder / "third_party")
        self.check(BUILD, folder, ["velm_export.dll", "prevelmwdll.dll"],
                   f"-DCMAKE_TOOLCHAIN_FILE={self.copy}/cmake/windows.cmake")

    def test_for_this_machine(self):
        self.check(LINUX_BUILD, self.copy / "build/other", ["libvelm_export.so", "libprevelmwdll.so"])


if __name__ == "__main__":
    unittest.main()

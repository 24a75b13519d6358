"""What the tests under Wine share: a folder of their own and a way to run velm.exe in it."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["BUILD"])
VELM_LINUX = os.environ["VELM_LINUX"]
WINE = SOURCE / "cmake/windows/wine"
SCHEMA = (SOURCE / "model_store/schema.sql").read_text("utf-8")
LONGEST_RUN = 120  # seconds

sys.path.insert(0, str(SOURCE / "tests/reference"))


class WineCase(unittest.TestCase):
    prefix = BUILD / "wine"

    def setUp(self):
        holder = tempfile.TemporaryDirectory(dir=BUILD, prefix="test-")
        self.addCleanup(holder.cleanup)
        self.directory = pathlib.Path(holder.name)

    def velm(self, *arguments):
        """Runs velm.exe in the test's directory: (exit code, standard output, standard error)."""
        done = subprocess.run([WINE, self.prefix, BUILD / "velm.exe", *arguments], cwd=self.directory,
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=LONGEST_RUN)
        printed, said = (text.decode().replace("\r\n", "\n") for text in (done.stdout, done.stderr))
        return done.returncode, printed, said

    def start(self, *arguments):
        """Starts velm.exe in the test's directory; it is ended with the test."""
        process = subprocess.Popen([WINE, self.prefix, BUILD / "velm.exe", *arguments], cwd=self.directory,
                                   stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def export(self, model, output):
        """An export that must succeed; returns the file's bytes."""
        self.assertEqual(self.velm("export", "--quiet", "--allow-overflow", model, output), (0, "", ""))
        return (self.directory / output).read_bytes()

    def files(self):
        return sorted(path.name for path in self.directory.iterdir())

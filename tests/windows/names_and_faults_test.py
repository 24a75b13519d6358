"""velm.exe under Wine: names of any character, and exports that fail and leave OUTPUT as it was."""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import time
import unittest

from wine_case import BUILD, LONGEST_RUN, WINE, WineCase

NAMESPACE = ["unshare", "--map-root-user", "--mount"]
INSIDE = "VELM_TEST_FULL_DISK"  # set in the process that sees the small disk: its mount point


class Names(WineCase):
    def test_any_character_in_every_name(self):
        folder = self.directory / "Gew\xe4sser \u6a21"
        folder.mkdir()
        model, output, panel = (f"{folder.name}/{name}" for name in ("mod\xe8le\u20ac.db", "\U0001f600.inp", "\u30e2.html"))
        self.assertEqual(self.velm("example", model), (0, "", f"velm: {model}: the estuary model\n"))
        self.assertIn(model, self.velm("info", model)[1])
        code, _, message = self.velm("export", model, output, "--panel", panel)
        self.assertEqual(code, 0, message)
        self.assertRegex(message, f"^velm: {output}: 11 sections, ")
        self.assertEqual(sorted(os.listdir(folder)), sorted(pathlib.PurePath(name).name for name in (model, output, panel)))
        self.assertIn("File Export is Complete", (self.directory / panel).read_text("utf-8"))

    def test_paths_of_both_systems(self):
        self.assertEqual(self.velm("new", "model.db")[0], 0)
        windows_path = "Z:" + str(self.directory / "a.inp").replace("/", "\\")
        self.assertEqual(self.velm("export", "--quiet", "model.db", windows_path)[0], 0)
        self.assertEqual(self.velm("export", "--quiet", str(self.directory / "model.db"), "b.inp")[0], 0)
        self.assertEqual(self.files(), ["a.inp", "b.inp", "model.db"])


class Faults(WineCase):
    def setUp(self):
        super().setUp()
        self.assertEqual(self.velm("new", "model.db")[0], 0)
        (self.directory / "out.inp").write_text("precious")
        self.before = self.files()

    def assert_unharmed(self):
        self.assertEqual((self.directory / "out.inp").read_text(), "precious")
        self.assertEqual(self.files(), self.before)

    def test_before_the_plug_in_runs(self):
        (self.directory / "text.dll").write_text("not a library")
        shutil.copy(BUILD / "prevelmwdll.dll", self.directory / "other.dll")
        self.before = self.files()
        for arguments, code, message in [
            (["missing.db", "out.inp"], 3, "velm: missing.db does not exist; "),
            (["model.db", "missing/out.inp"], 2, r"velm: the folder missing does not exist; \w+"),
            (["model.db", "out.inp", "--plugin", "text.dll"], 4, "velm: text.dll cannot be used as export plug-in: (?!Unknown)"),
            (["model.db", "out.inp", "--plugin", "other.dll"], 4, "velm: other.dll cannot be used as export plug-in: (?!Unknown)"),
        ]:
            with self.subTest(arguments):
                result = self.velm("export", *arguments)
                self.assertEqual(result[:2], (code, ""))
                self.assertRegex(result[2], "^" + message)
                self.assert_unharmed()

    def test_full_disk(self):
        """In a process of its own that may mount a disk of 64 KiB, with a Wine server that sees it."""
        if subprocess.run([*NAMESPACE, "true"], capture_output=True).returncode != 0:
            self.skipTest("this machine lets no process mount a disk of its own")
        prefix = BUILD / "wine-full-disk"
        disk = self.directory / "disk"
        disk.mkdir()
        mount = f'mount -t tmpfs -o size=64k none "{disk}" && exec "$0" "$@"'
        inside = subprocess.run(
            [*NAMESPACE, "sh", "-c", mount, sys.executable, "-B", __file__, "-v", "FullDisk"],
            env={**os.environ, INSIDE: str(disk), "PREFIX": str(prefix)}, capture_output=True, text=True, timeout=240)
        subprocess.run([WINE, "--stop", prefix])
        self.assertEqual(inside.returncode, 0, inside.stdout + inside.stderr)
        self.assertIn("Ran 1 test", inside.stderr)


class CalledOff(WineCase):
    """An export that is ended from outside leaves OUTPUT as it was, and at the latest the next one cleans up."""

    def setUp(self):
        super().setUp()
        self.assertEqual(self.velm("new", "model.db")[0], 0)
        (self.directory / "out.inp").write_text("precious")

    def temporaries(self):
        return [name for name in self.files() if name.startswith(".velm-")]

    def start_waiting_export(self):
        process = self.start("export", "model.db", "out.inp", "--plugin", str(BUILD / "waiting_plug_in.dll"))
        while not any((self.directory / name).stat().st_size > 0 for name in self.temporaries()):
            self.assertIsNone(process.poll())
            time.sleep(0.01)
        return process

    def end(self, process, signal_number):
        process.send_signal(signal_number)
        code = process.wait(timeout=LONGEST_RUN)
        self.assertEqual((self.directory / "out.inp").read_text(), "precious")
        return code

    def test_control_c(self):
        process = self.start_waiting_export()
        self.assertNotEqual(self.end(process, signal.SIGINT), 0)
        self.assertEqual(self.temporaries(), [])

    def test_killed(self):
        process = self.start_waiting_export()
        in_use = self.temporaries()
        self.assertEqual(self.velm("export", "--quiet", "model.db", "other.inp"), (0, "", ""))
        self.end(process, signal.SIGKILL)
        self.assertEqual(self.velm("export", "missing.db", "out.inp")[0], 3)
        self.assertEqual(self.temporaries(), in_use) # nothing says that nobody needs it any more


@unittest.skipUnless(INSIDE in os.environ, "runs within test_full_disk")
class FullDisk(WineCase):
    prefix = os.environ.get("PREFIX")

    def test_export_fails_says_so_and_leaves_the_old_file(self):
        disk = pathlib.Path(os.environ[INSIDE])
        (disk / "out.inp").write_text("precious")
        self.assertEqual(self.velm("example", "model.db")[0], 0)
        code, _, message = self.velm("export", "model.db", f"{disk}/out.inp", "--panel", "panel.html")
        self.assertEqual(code, 4)
        lines = message.splitlines()
        self.assertRegex(lines[0], r"^\? .*(full|space)")
        self.assertEqual(lines[1], "? WRITE error on channel 5")
        self.assertIn("out.inp is as it was: the plug-in did not announce completion; it said last: File Export failed: ", lines[2])
        self.assertEqual([path.name for path in disk.iterdir()], ["out.inp"])
        self.assertEqual((disk / "out.inp").read_text(), "precious")
        panel = (self.directory / "panel.html").read_text()
        self.assertIn('<span style="font-weight: bold; color: red;">File Export failed: ', panel)
        self.assertNotIn("File Export is Complete", panel)


if __name__ == "__main__":
    unittest.main()

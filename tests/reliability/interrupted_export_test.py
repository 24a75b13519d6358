"""velm export on a system that fails: OUTPUT is what it was or what it is to be, and nothing stays beside it."""

import contextlib
import errno
import os
import pathlib
import random
import shutil
import signal
import sqlite3
import subprocess
import time
import unittest

from tool_case import ToolCase, VELM

PRECIOUS = "precious\n"


class InterruptedExport(ToolCase):
    def setUp(self):
        super().setUp()
        self.assertEqual(self.velm("example", "model.db")[0], 0)
        self.assertEqual(self.velm("export", "model.db", "out.inp")[0], 0)
        self.whole = (self.directory / "out.inp").read_bytes()
        self.write("out.inp", PRECIOUS)

    def output(self):
        return (self.directory / "out.inp").read_bytes()

    def temporaries(self):
        return [name for name in self.files() if name.startswith(".out.inp.velm-")]

    def assert_whole_or_unharmed(self, result):
        code, _, message = result
        self.assertEqual(self.files(), ["model.db", "out.inp"], message)
        if code == 0:
            self.assertEqual(self.output(), self.whole)
        else:
            self.assertEqual(self.output(), PRECIOUS.encode(), message)
            self.assertIn("velm: ", message)


@unittest.skipUnless("FAULTY_SYSTEM" in os.environ, "nothing can be loaded before a sanitizer's library")
class FaultySystem(InterruptedExport):
    def export(self, **environment):
        return self.velm("export", "model.db", "out.inp", LD_PRELOAD=os.environ["FAULTY_SYSTEM"], **environment)

    def test_every_call_fails_in_turn(self):
        for call, error in [("open", errno.EMFILE), ("write", errno.ENOSPC), ("fsync", errno.EIO),
                            ("chmod", errno.EPERM), ("rename", errno.EXDEV), ("close", errno.EIO)]:
            for again in [{}, {"FAULT_AGAIN": "1"}]:
                number, failures, came = 0, 0, True
                while came:
                    number += 1
                    with self.subTest(call=call, number=number, **again):
                        self.write("out.inp", PRECIOUS)
                        result = self.export(FAULT_CALL=call, FAULT_NUMBER=str(number), FAULT_ERROR=str(error), **again)
                        came = "[fault]" in result[2]
                        failures += result[0] != 0
                        self.assert_whole_or_unharmed(result)
                self.assertGreater(failures, 0, call)

    def test_interrupted_and_short_writes(self):
        self.assertEqual(self.export(SHORT_WRITES="1")[0], 0)
        self.assertEqual(self.output(), self.whole)


class Place(InterruptedExport):
    def test_full_file_system(self):
        self.assertGreater(len(self.whole), 64 * 1024)
        (self.directory / "small").mkdir()
        script = ("mount -t tmpfs -o size=64k tmpfs small && printf 'precious\\n' > small/out.inp || exit 77\n"
                  f"'{VELM}' export model.db small/out.inp; code=$?\n"
                  "cat small/out.inp && ls -A small && exit $code")
        done = subprocess.run(["unshare", "--mount", "--map-root-user", "sh", "-c", script], cwd=self.directory,
                              env=self.environment(), capture_output=True, text=True, timeout=120)
        if done.returncode in (1, 77) and "velm" not in done.stderr:
            self.skipTest("no file system can be mounted here: " + done.stderr.strip())
        self.assertIn("? No space left on device\n? WRITE error on channel 5\n", done.stderr)
        self.assertEqual((done.returncode, done.stdout), (4, PRECIOUS + "out.inp\n"))

    def test_no_permission(self):
        def become_nobody():
            if os.geteuid() == 0:
                os.setgid(65534)
                os.setuid(65534)

        (self.directory / "closed").mkdir()
        self.write("closed/out.inp", PRECIOUS)
        (self.directory / "closed").chmod(0o555)
        self.directory.chmod(0o755)
        tool = VELM
        if os.geteuid() == 0: # nobody may not see where this was built
            for part in [VELM, VELM.replace("/velm", "/libvelm_export.so"), os.environ["HOST_LIBRARY"]]:
                tool = str(pathlib.Path(shutil.copy(part, self.directory)).with_name("velm"))
        for mode, reason in [(0o666, "cannot create closed/.out.inp.velm-"), (0o444, "closed/out.inp is write-protected")]:
            (self.directory / "closed/out.inp").chmod(mode)
            done = subprocess.run([tool, "export", "model.db", "closed/out.inp"], cwd=self.directory,
                                  preexec_fn=become_nobody, capture_output=True, text=True, timeout=120)
            self.assertNotEqual(done.returncode, 0)
            self.assertIn("velm: " + reason, done.stderr)
            self.assertEqual(os.listdir(self.directory / "closed"), ["out.inp"])
            self.assertEqual((self.directory / "closed/out.inp").read_text(), PRECIOUS)
        (self.directory / "closed").chmod(0o755)


class Killed(InterruptedExport):
    def test_at_any_moment(self):
        start = time.monotonic()
        self.assertEqual(self.velm("export", "model.db", "out.inp")[0], 0)
        duration = time.monotonic() - start
        moments = random.Random(5)
        for _ in range(50):
            self.write("out.inp", PRECIOUS)
            process = subprocess.Popen([VELM, "export", "model.db", "out.inp", "--quiet"], cwd=self.directory)
            time.sleep(moments.uniform(0, duration))
            process.kill()
            process.wait()
            self.assertIn(self.output(), [PRECIOUS.encode(), self.whole])
            self.assertLessEqual(len(self.temporaries()), 1)
        self.assertEqual(self.velm("export", "model.db", "out.inp")[0], 0)
        self.assertEqual(self.output(), self.whole)
        self.assertEqual(self.files(), ["model.db", "out.inp"])

    def test_leaves_a_file_that_the_next_run_removes(self):
        process = self.start_waiting_export()
        self.write(".out.inp.velm-my-notes", "not one of ours")
        process.kill()
        self.assertEqual(process.wait(timeout=60), -signal.SIGKILL)
        self.assertEqual(len(self.temporaries()), 2)
        self.assertEqual(self.output(), PRECIOUS.encode())
        result = self.velm("export", "missing.db", "out.inp")
        self.assertNotEqual(result[0], 0)
        self.assertEqual(self.temporaries(), [".out.inp.velm-my-notes"])

    def test_is_told_from_a_run_that_is_under_way(self):
        process = self.start_waiting_export()
        in_use = self.temporaries()
        self.assertEqual(self.velm("export", "model.db", "out.inp")[0], 0)
        self.assertEqual(self.output(), self.whole)
        self.assertEqual(self.temporaries(), in_use)
        self.assertIsNone(process.poll())

    def test_while_importing(self):
        with contextlib.closing(sqlite3.connect(self.directory / "model.db")) as database, database:
            number = database.execute("SELECT max(number) + 1 FROM flow_function WHERE flow_field = 1").fetchone()[0]
            database.execute("INSERT INTO flow_function VALUES (1, ?, '')", [number])
            database.executemany("INSERT INTO flow_value VALUES (1, ?, ?, ?, ?)",
                                 ((number, pair, pair / 7, pair / 3) for pair in range(1, 400_000)))
        self.assertEqual(self.velm("export", "model.db", "long.inp")[0], 0)
        before = self.files()
        for arguments in [["imported.db"], ["model.db", "--force"]]:
            interrupted = 0
            for _ in range(20):
                process = subprocess.Popen([VELM, "import", "long.inp", *arguments, "--quiet"], cwd=self.directory)
                while process.poll() is None and not any(".velm-" in name for name in self.files()):
                    pass
                process.terminate()
                interrupted += process.wait(timeout=60) == -signal.SIGTERM
                self.assertEqual([name for name in self.files() if name != "imported.db"], before)
            self.assertGreater(interrupted, 0)


if __name__ == "__main__":
    unittest.main()

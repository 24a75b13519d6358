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

    def ways(self):
        """Files get their names at the end, or come from a folder of their own where the system has none without."""
        yield {}
        if "FAULTY_SYSTEM" in os.environ:
            yield {"LD_PRELOAD": os.environ["FAULTY_SYSTEM"], "NO_UNNAMED": "1"}

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

    def fail_in_turn(self, call, error, **environment):
        """How many exports failed when the first, the second, ... such call does."""
        number, failures, came = 0, 0, True
        while came:
            number += 1
            with self.subTest(call=call, number=number, **environment):
                self.write("out.inp", PRECIOUS)
                result = self.export(FAULT_CALL=call, FAULT_NUMBER=str(number), FAULT_ERROR=str(error), **environment)
                came = "[fault]" in result[2]
                failures += result[0] != 0
                self.assert_whole_or_unharmed(result)
        return failures

    def test_every_call_fails_in_turn(self):
        for call, error in [("open", errno.EMFILE), ("write", errno.ENOSPC), ("fsync", errno.EIO),
                            ("fchmod", errno.EPERM), ("linkat", errno.EPERM), ("renameat", errno.EXDEV),
                            ("mkdirat", errno.EACCES), ("close", errno.EIO)]:
            failures = 0
            for again in [{}, {"FAULT_AGAIN": "1"}]:
                for unnamed in [{}, {"NO_UNNAMED": "1"}]:
                    failures += self.fail_in_turn(call, error, **again, **unnamed)
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
        for mode, reason in [(0o666, "closed/out.inp cannot be made: the folder "), (0o444, "closed/out.inp is write-protected")]:
            (self.directory / "closed/out.inp").chmod(mode)
            done = subprocess.run([tool, "export", "model.db", "closed/out.inp"], cwd=self.directory,
                                  preexec_fn=become_nobody, capture_output=True, text=True, timeout=120)
            self.assertEqual(done.returncode, 2)
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
        # but for the moment in which a name changes hands, nothing is ever there to be left
        self.assertEqual([name for name in self.files() if not name.startswith(".velm-")], ["model.db", "out.inp"])

    def test_leaves_nothing_or_a_folder_of_its_own(self):
        for way, left in zip(self.ways(), [0, 1]):
            process = self.start_waiting_export(**way)
            process.kill()
            self.assertEqual(process.wait(timeout=60), -signal.SIGKILL)
            self.assertEqual(self.output(), PRECIOUS.encode())
            folders = [path for path in self.directory.iterdir() if path.name.startswith(".velm-")]
            self.assertEqual(len(folders), left)
            for folder in folders: # it stays: nothing says that nobody needs it any more
                self.assertEqual(folder.stat().st_mode & 0o777, 0o700)
                self.assertEqual(self.velm("export", "model.db", "out.inp")[0], 0)
                self.assertEqual(os.listdir(folder), ["content"])

    def test_while_importing(self):
        with contextlib.closing(sqlite3.connect(self.directory / "model.db")) as database, database:
            number = database.execute("SELECT max(number) + 1 FROM flow_function WHERE flow_field = 1").fetchone()[0]
            database.execute("INSERT INTO flow_function VALUES (1, ?, '')", [number])
            database.executemany("INSERT INTO flow_value VALUES (1, ?, ?, ?, ?)",
                                 ((number, pair, pair / 7, pair / 3) for pair in range(1, 400_000)))
        self.assertEqual(self.velm("export", "model.db", "long.inp", "--allow-overflow")[0], 0)
        before = self.files()
        for arguments in [["imported.db"], ["model.db", "--force"]]:
            for way in self.ways():
                interrupted = 0
                for attempt in range(10):
                    process = subprocess.Popen([VELM, "import", "long.inp", *arguments, "--quiet"], cwd=self.directory,
                                               env=self.environment(**way))
                    time.sleep(0.05 * attempt)
                    process.terminate()
                    interrupted += process.wait(timeout=60) == -signal.SIGTERM
                    (self.directory / "imported.db").unlink(missing_ok=True)
                    self.assertEqual(self.files(), before)
                self.assertGreater(interrupted, 0)



if __name__ == "__main__":
    unittest.main()

"""Sessions under Wine: recorded by velm.exe and by the recorder in the host library's place, replayed on either system,
turned into models; the same as on this machine."""

import json
import os
import shutil
import sqlite3
import subprocess
import time
import unittest

from wine_case import BUILD, SCHEMA, SOURCE, VELM_LINUX, WINE, WineCase


class Sessions(WineCase):
    def setUp(self):
        super().setUp()
        folder = self.directory / "with recorder"  # as a user puts the recorder into the host library's place
        folder.mkdir()
        for name in ("velm.exe", "velm_export.dll"):
            shutil.copy(BUILD / name, folder)
        shutil.copy(BUILD / "prevelmwdll.dll", folder / "prevelmwdll_host.dll")
        shutil.copy(BUILD / "recorder/prevelmwdll.dll", folder)
        self.recorder = folder
        self.environment = {**os.environ, "VELM_SESSION": "by-library.jsonl"}

    def run_here(self, *arguments):
        done = subprocess.run([VELM_LINUX, *arguments], cwd=self.directory, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)

    def run_there(self, *arguments):
        code, out, error = self.velm(*arguments)
        self.assertEqual((code, out), (0, ""), error)

    def export_through_recorder(self, model, output):
        return subprocess.run([WINE, self.prefix, self.recorder / "velm.exe", "export", "--quiet", "--allow-overflow", model, output],
                              cwd=self.directory, env=self.environment, capture_output=True, text=True, timeout=120)

    def read(self, name):
        return (self.directory / name).read_bytes()

    def model_lines(self, name):
        """A session's lines without what differs from run to run and from build to build: the output's temporary name
        and the version panel."""
        lines = self.read(name).splitlines()
        self.assertIn(b'"GFILENAME"', lines[1])
        first = next(i for i, line in enumerate(lines) if b'"in":["<li>' in line)
        return lines[first:]

    def check_every_way(self, model):
        self.run_here("export", "--quiet", "--allow-overflow", model, "here.inp", "--record", "here.jsonl")
        expected = self.read("here.inp")
        self.run_there("export", "--quiet", "--allow-overflow", model, "there.inp", "--record", "there.jsonl")
        done = self.export_through_recorder(model, "by-library.inp")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for session in ("there", "by-library"):
            self.assertEqual(self.read(f"{session}.inp"), expected)
            self.assertEqual(self.model_lines(f"{session}.jsonl"), self.model_lines("here.jsonl"))

        self.run_here("replay", "--quiet", "by-library.jsonl", "replayed-here.inp")
        self.run_there("replay", "--quiet", "here.jsonl", "replayed-there.inp")
        for name in ("replayed-here.inp", "replayed-there.inp"):
            self.assertEqual(self.read(name), expected)

        self.assertEqual(self.velm("session-to-model", "by-library.jsonl", "taken.db")[0], 0)
        self.run_here("export", "--quiet", "--allow-overflow", "taken.db", "taken.inp")
        self.assertEqual(self.read("taken.inp"), expected)
        for path in [*self.directory.glob("*.jsonl"), self.directory / "taken.db"]:
            path.unlink()

    def test_golden_models(self):
        for sql in sorted((SOURCE / "tests/golden").glob("*.sql")):
            with self.subTest(sql.stem):
                database = sqlite3.connect(self.directory / f"{sql.stem}.db")
                database.executescript(SCHEMA + "PRAGMA foreign_keys = ON;" + sql.read_text("utf-8"))
                database.close()
                self.check_every_way(f"{sql.stem}.db")

    def test_a_departure_and_a_cut(self):
        self.assertEqual(self.velm("example", "model.db")[0], 0)
        self.run_there("export", "--quiet", "--allow-overflow", "model.db", "out.inp", "--record", "whole.jsonl")
        whole = self.read("whole.jsonl")
        departing = whole.replace(b'"key":"GVOLUME","form":2,"lengths":[8],"in":[2]',
                                  b'"key":"GVOLUME","form":2,"lengths":[8],"in":[1]')
        for content, code, said in ((departing, 1, ": expected GVOLUME(segment 1), the plug-in asked GVOLUME(segment 2)"),
                                    (whole[:200_000], 2, ": the recording breaks off; the plug-in asked ")):
            (self.directory / "spoiled.jsonl").write_bytes(content)
            got, _, error = self.velm("replay", "spoiled.jsonl", "out.inp")
            self.assertEqual(got, code, error)
            self.assertIn(said, error)

    def test_a_killed_process_leaves_every_exchange(self):
        self.assertEqual(self.velm("new", "model.db")[0], 0)
        process = self.start("export", "model.db", "out.inp", "--plugin", str(BUILD / "waiting_plug_in.dll"),
                             "--record", "killed.jsonl")
        while not any(path.stat().st_size > 0 for path in self.directory.glob(".velm-*")):
            self.assertIsNone(process.poll())
            time.sleep(0.01)
        process.kill()
        process.wait()
        lines = self.read("killed.jsonl").rstrip(b"\0").splitlines()
        self.assertEqual([next(iter(json.loads(line))) for line in lines], ["velm_session", "exchange"])

    def test_the_recorder_without_the_real_library(self):
        self.assertEqual(self.velm("new", "model.db")[0], 0)
        (self.recorder / "prevelmwdll_host.dll").unlink()
        done = self.export_through_recorder("model.db", "out.inp")
        self.assertEqual(done.returncode, 4)
        self.assertIn("prevelmwdll recorder: cannot load ", done.stderr)
        self.assertNotIn("out.inp", self.files())


if __name__ == "__main__":
    unittest.main()

"""velm.exe under Wine writes what velm writes here, and what the golden models expect, byte for byte."""

import concurrent.futures
import os
import sqlite3
import subprocess
import unittest

from wine_case import SCHEMA, SOURCE, VELM_LINUX, WineCase  # first: it finds the modules below

from compare_with_plugin import check_bytes
from random_databases import RandomDatabase

RANDOM_MODELS = 200


class SameFiles(WineCase):
    def test_golden_models(self):
        models = sorted((SOURCE / "tests/golden").glob("*.sql"))
        self.assertGreaterEqual(len(models), 4)
        for sql in models:
            with self.subTest(sql.stem):
                database = sqlite3.connect(self.directory / f"{sql.stem}.db")
                database.executescript(SCHEMA + "PRAGMA foreign_keys = ON;" + sql.read_text("utf-8"))
                database.close()
                check_bytes(sql.with_suffix(".inp").read_bytes(), self.export(f"{sql.stem}.db", f"{sql.stem}.inp"))

    def compare_random_model(self, seed):
        RandomDatabase(SCHEMA, seed).write(self.directory / f"{seed}.db")
        subprocess.run([VELM_LINUX, "export", "--quiet", f"{seed}.db", f"{seed}.linux"], cwd=self.directory, check=True)
        expected = (self.directory / f"{seed}.linux").read_bytes()
        check_bytes(expected, self.export(f"{seed}.db", f"{seed}.windows"))
        return len(expected)

    def test_random_models(self):
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            size = sum(pool.map(self.compare_random_model, range(1, RANDOM_MODELS + 1)))
        print(f"{RANDOM_MODELS} random models, {size} bytes compared", flush=True)

    def test_databases_made_on_one_system_are_read_on_the_other(self):
        self.assertEqual(self.velm("example", "windows.db")[0], 0)
        for tool, model, output in [(VELM_LINUX, "windows.db", "linux.inp"), (VELM_LINUX, "linux.db", "both.inp")]:
            if not (self.directory / model).exists():
                subprocess.run([tool, "example", model], cwd=self.directory, check=True, capture_output=True)
            subprocess.run([tool, "export", "--quiet", model, output], cwd=self.directory, check=True)
            check_bytes((self.directory / output).read_bytes(), self.export(model, "windows.inp"))


if __name__ == "__main__":
    unittest.main()

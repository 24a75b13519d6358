"""velm.exe under Wine writes what velm writes here, and what the golden models expect, byte for byte."""

import sqlite3
import subprocess
import unittest

from wine_case import SCHEMA, SOURCE, VELM_LINUX, WineCase  # first: it finds the modules below

from compare_with_plugin import check_bytes


class SameFiles(WineCase):
    def velm_here(self, *arguments):
        done = subprocess.run([VELM_LINUX, *arguments], cwd=self.directory, capture_output=True, text=True)
        return done.returncode, done.stdout, done.stderr

    def rows(self, name):
        database = sqlite3.connect(self.directory / name)
        self.addCleanup(database.close)
        return list(database.iterdump())

    def test_golden_models(self):
        models = sorted((SOURCE / "tests/golden").glob("*.sql"))
        self.assertGreaterEqual(len(models), 4)
        for sql in models:
            with self.subTest(sql.stem):
                database = sqlite3.connect(self.directory / f"{sql.stem}.db")
                database.executescript(SCHEMA + "PRAGMA foreign_keys = ON;" + sql.read_text("utf-8"))
                database.close()
                check_bytes(sql.with_suffix(".inp").read_bytes(), self.export(f"{sql.stem}.db", f"{sql.stem}.inp"))
                self.compare_import(sql.stem)
                for arguments in (["info", f"{sql.stem}.db"], ["check", f"{sql.stem}.db"], ["check", f"{sql.stem}.inp"],
                                  ["diff", f"{sql.stem}.db", f"{sql.stem}.windows.db"]):
                    self.assertEqual(self.velm(*arguments), self.velm_here(*arguments))

    def compare_import(self, name):
        """Both systems read the same model from NAME.inp, or refuse it with the same words; what they have read is
        exported with the same bytes."""
        came = self.velm("import", "--quiet", f"{name}.inp", f"{name}.windows.db")
        here = self.velm_here("import", "--quiet", f"{name}.inp", f"{name}.linux.db")
        self.assertEqual((came[0], came[2].replace(".windows.db", ".linux.db")), (here[0], here[2]))
        if came[0] != 0:
            return
        self.assertEqual(self.velm("import", "--quiet", "--force", f"{name}.inp", f"{name}.windows.db"), (0, "", ""))
        self.assertEqual(self.rows(f"{name}.windows.db"), self.rows(f"{name}.linux.db"))
        check_bytes((self.directory / f"{name}.inp").read_bytes(), self.export(f"{name}.windows.db", f"{name}.again"))

    def test_databases_made_on_one_system_are_read_on_the_other(self):
        self.assertEqual(self.velm("example", "windows.db")[0], 0)
        for tool, model, output in [(VELM_LINUX, "windows.db", "linux.inp"), (VELM_LINUX, "linux.db", "both.inp")]:
            if not (self.directory / model).exists():
                subprocess.run([tool, "example", model], cwd=self.directory, check=True, capture_output=True)
            subprocess.run([tool, "export", "--quiet", "--allow-overflow", model, output], cwd=self.directory, check=True)
            check_bytes((self.directory / output).read_bytes(), self.export(model, "windows.inp"))


if __name__ == "__main__":
    unittest.main()

"""velm import: what it says, what it leaves, and how it ends."""

import os
import pathlib
import re
import sqlite3
import unittest

from tool_case import ToolCase

GOLDEN = pathlib.Path(os.environ["GOLDEN_FILES"])


class ImportTest(ToolCase):
    def put(self, name, golden="everything", change=lambda text: text):
        text = change((GOLDEN / f"{golden}.inp").read_bytes())
        (self.directory / name).write_bytes(text)
        return text

    def test_a_name_that_is_taken_is_left_alone(self):
        self.put("a.inp")
        self.write("model.db", "mine")
        code, _, err = self.velm("import", "a.inp", "model.db")
        self.assertEqual((code, err), (2, "velm: model.db exists and is left as it is; give a name that is not taken, or "
                                          "replace it with --force\n"))
        code, _, err = self.velm("import", "a.inp", "a.inp", "--force")
        self.assertEqual((code, err), (2, "velm: FILE and MODEL are the same file, a.inp; one would replace the other\n"))
        self.assertEqual((self.directory / "model.db").read_text(), "mine")

    def test_a_damaged_file_leaves_the_database_as_it_was(self):
        self.put("sound.inp")
        self.assertEqual(self.velm("import", "sound.inp", "model.db", "--quiet"), (0, "", ""))
        before = (self.directory / "model.db").read_bytes()
        self.put("cut.inp", change=lambda text: text[:9000])
        for options in ([], ["--lenient"]):
            code, _, err = self.velm("import", "cut.inp", "model.db", "--force", *options)
            self.assertEqual(code, 3)
            self.assertRegex(err, r"^velm: cut.inp cannot be imported, model.db is not written:\n  cut.inp:\d+:\d+: ")
        self.assertEqual((self.directory / "model.db").read_bytes(), before)
        self.assertEqual(self.velm("import", "nowhere.inp", "new.db")[0], 3)
        self.assertEqual(self.files(), ["cut.inp", "model.db", "sound.inp"])

    def test_asterisks_become_null_only_with_lenient_and_keep_the_model_from_an_export(self):
        written = self.put("a.inp", change=lambda text: text.replace(b"    30.125 ", b"********** "))
        code, _, err = self.velm("import", "a.inp", "model.db")
        self.assertEqual(code, 3)
        self.assertIn("a.inp:22:1: error V101 field overflow: segments, bed compaction time step: '**********' holds no value", err)
        self.assertIn("With --lenient", err)
        code, _, err = self.velm("import", "a.inp", "model.db", "--lenient", "--quiet")
        self.assertEqual(code, 1)
        self.assertIn("1 value is NULL", err)
        code, _, err = self.velm("export", "model.db", "b.inp")
        self.assertEqual(code, 3)
        self.assertIn("column bed_compaction_time_step: 'NULL' is not a number", err)
        with sqlite3.connect(self.directory / "model.db") as database:
            database.execute("UPDATE model SET bed_compaction_time_step = 30.125")
        database.close()
        self.assertEqual(self.velm("export", "model.db", "b.inp", "--quiet")[0], 0)
        self.assertEqual((self.directory / "b.inp").read_bytes(), written.replace(b"********** ", b"    30.125 "))

    def test_what_hand_editing_does_passes_with_lenient_and_an_export_mends_it(self):
        self.velm("example", "estuary.db")
        self.velm("export", "estuary.db", "estuary.inp", "--quiet")
        written = (self.directory / "estuary.inp").read_bytes()
        line_feeds_alone = written.replace(b"\r\n", b"\n")
        trimmed = re.sub(rb" +\r\n", rb"\r\n", written)
        edits = {
            "line feeds alone": line_feeds_alone,
            "another number of digits": line_feeds_alone.replace(b"    0.0000\n", b"0.0       \n"),
            "trimmed blanks": trimmed,
            "dropped NULs": written.replace(b"\0", b""),
            "both": trimmed.replace(b"\0", b""),
            "a mark of UTF-8": b"\xef\xbb\xbf" + written,
            "no line end at the end": written[:-2],
        }
        for name, edited in edits.items():
            with self.subTest(name):
                self.assertNotEqual(edited, written)
                (self.directory / "edited.inp").write_bytes(edited)
                self.assertEqual(self.velm("import", "edited.inp", "model.db", "--force")[0], 3)
                code, _, err = self.velm("import", "edited.inp", "model.db", "--lenient", "--force")
                self.assertEqual(code, 1)
                self.assertNotIn("NULL", err)
                self.assertEqual(self.velm("export", "model.db", "b.inp", "--quiet")[0], 0)
                self.assertEqual((self.directory / "b.inp").read_bytes(), written)


if __name__ == "__main__":
    unittest.main()

"""Whatever fails during an export: OUTPUT is as it was, nothing is left beside it, and the message says why."""

import os
import resource
import shutil
import signal
import unittest

from tool_case import FAILING_PLUG_IN, ToolCase

UNCHANGED = "velm: the export failed, out.inp is as it was: "


class FailedExport(ToolCase):
    # what the plug-in does, exit code, the whole of standard error
    PLUG_INS = [
        ("asks nothing", 4, UNCHANGED + "the plug-in asked this tool nothing: it is bound to another host library\n"),
        ("no completion", 4, UNCHANGED + "the plug-in did not announce completion; it said last: The disk is full\n"),
        ("unknown key", 4, UNCHANGED + 'unknown key "GNOSUCH" of length 8\n'),
        ("wrong length", 4, UNCHANGED + "GSEGNAME: length 39 passed for text 1, its length is 40\n"),
        ("missing index", 4, UNCHANGED + "GVOLUME(segment 99): the model has 3 segments\n"),
        ("too few sections", 4, UNCHANGED + "the plug-in announced completion but wrote 0 of 11 sections\n"),
        ("torn end", 4, UNCHANGED + "the plug-in announced completion but the last record has no end\n"),
        ("throws", 4, UNCHANGED + "the plug-in threw no storage\n"),
        *[(end, 4, "velm: the plug-in ended the process before its export was over; nothing was written\n")
          for end in ["ends the process", "ends it quickly", "ends its thread"]],
        ("steers the terminal", 4, UNCHANGED + "the plug-in did not announce completion; it said last: "
         "\\x1B[2J\\x0Avelm: done \\u202Eenod\n"),
        ("crashes", -signal.SIGABRT, ""),
    ]

    def setUp(self):
        super().setUp()
        self.make_model()
        self.write("out.inp", "precious")
        self.before = self.files()

    def assert_unharmed(self, *more_files):
        self.assertEqual((self.directory / "out.inp").read_text(), "precious")
        self.assertEqual(self.files(), sorted([*self.before, *more_files]))

    def failing_export(self, failure, *arguments, **more):
        return self.velm("export", "model.db", "out.inp", "--plugin", FAILING_PLUG_IN, *arguments, FAILURE=failure, **more)

    def test_plug_in(self):
        self.assertEqual(self.failing_export("none")[0], 0) # the one that fails in no other way is believed
        self.write("out.inp", "precious")
        for failure, code, message in self.PLUG_INS:
            with self.subTest(failure):
                self.assertEqual(self.failing_export(failure), (code, "", message))
                self.assert_unharmed()

    def test_panel_tells_the_outcome(self):
        self.write("wide.sql", "UPDATE segment SET volume = 1e10")
        failing = ["--plugin", FAILING_PLUG_IN]
        for arguments, word, why, said in [
            (["model.db", "new.inp", *failing], "failed", "the export failed, new.inp is not written: ", "The disk is full"),
            (["model.db", "out.inp", *failing], "failed", UNCHANGED[6:] + "the plug-in did", "The disk is full"),
            (["model.db", "missing/out.inp"], "failed", "the folder missing does not exist", "The plug-in said nothing."),
            (["missing.db", "out.inp"], "refused", "missing.db does not exist", "The plug-in said nothing."),
            (["model.db", "out.inp", "--strict", "--sql", "wide.sql"], "refused",
             "the export is refused, out.inp is as it was: ", "File Export is Complete"),
            (["model.db", "out.inp"], "done", "", "File Export is Complete"),
        ]:
            with self.subTest(arguments):
                code, _, message = self.velm("export", *arguments, "--panel", "panel.html", "--quiet",
                                             FAILURE="no completion", SOURCE_DATE_EPOCH="1700000000")
                self.assertEqual(code == 0, word == "done", message)
                page = (self.directory / "panel.html").read_text()
                self.assertIn(f'<h1 class="{word}">Export of {arguments[0]}: {word}</h1>\n'
                              f"<p>{arguments[1]}, 2023-11-14 22:13 UTC</p>\n{'<pre>' if why else ''}{why}", page)
                self.assertIn(said, page)
                self.assertIn(why, message)
        self.assertFalse((self.directory / "new.inp").exists())

    def test_panel_that_cannot_be_saved(self):
        code, _, message = self.failing_export("none", "--panel", "missing/panel.html")
        self.assertEqual((code, message), (2, "velm: the folder missing does not exist; make it, or name another\n"))
        self.assert_unharmed()

    def test_before_the_plug_in_runs(self):
        self.write("text.so", "not a library")
        host_library = shutil.copy(os.environ["HOST_LIBRARY"], self.directory / "other.so")
        self.before = self.files()
        for arguments, code, message in [
            (["missing.db", "out.inp"], 3, "velm: missing.db does not exist; give another name\n"),
            (["model.db", "out.inp", "--plugin", "missing.so"], 4, "velm: there is no plug-in missing.so; name one with --plugin\n"),
            (["model.db", "out.inp", "--plugin", "text.so"], 4, "velm: text.so cannot be used as export plug-in: "),
            (["model.db", "out.inp", "--plugin", host_library], 4, f"velm: {host_library} cannot be used as export plug-in: "),
            (["model.db", "missing/out.inp"], 2, "velm: the folder missing does not exist; make it, or name another\n"),
        ]:
            with self.subTest(arguments):
                result = self.velm("export", *arguments)
                self.assertEqual(result[:2], (code, ""))
                self.assertTrue(result[2].startswith(message), result[2])
                self.assert_unharmed()

    def test_full_disk(self):
        def limit_files():
            resource.setrlimit(resource.RLIMIT_FSIZE, (500, 500))

        result = self.velm("export", "model.db", "out.inp", preexec_fn=limit_files)
        self.assertEqual(result, (4, "", "? File too large\n? WRITE error on channel 5\n" + UNCHANGED +
                                  "the plug-in did not announce completion; it said last: "
                                  "File Export failed: File too large (WRITE error on channel 5)\n"))
        self.assert_unharmed()
        # a plug-in that does not notice
        result = self.failing_export("none", preexec_fn=limit_files)
        self.assertEqual(result, (4, "", UNCHANGED + "the plug-in announced completion but wrote 7 of 11 sections\n"))
        self.assert_unharmed()

    def test_signals(self):
        for number in [signal.SIGINT, signal.SIGTERM, signal.SIGHUP]:
            with self.subTest(number):
                process = self.start_waiting_export("--panel", "panel.html")
                process.send_signal(number)
                self.assertEqual(process.wait(timeout=60), -number)
                self.assert_unharmed()


if __name__ == "__main__":
    unittest.main()

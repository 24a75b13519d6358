"""velm check and velm diff as a modeller or a CI run uses them: exit codes, what stands where, several files at once."""

import json
import sqlite3
import unittest
import urllib.parse

from tool_case import ToolCase


class Files(ToolCase):
    """river.db is sound and river.inp its export; deep.db has a volume that overflows, late.inp a time that repeats."""

    def setUp(self):
        super().setUp()
        self.assertEqual(self.velm("example", "river.db")[0], 0)
        self.assertEqual(self.velm("export", "river.db", "river.inp", "--quiet")[0], 0)
        self.copy("river.db", "deep.db")
        self.change("deep.db", "UPDATE segment SET volume = 1e10 WHERE number = 2")
        content = self.read("river.inp")
        self.assertIn(b"\r\n  1.00000  44.8660\r\n", content)
        (self.directory / "late.inp").write_bytes(content.replace(b"\r\n  1.00000  44.8660", b"\r\n  0.000000  44.8660", 1))

    def read(self, name):
        return (self.directory / name).read_bytes()

    def copy(self, source, target):
        (self.directory / target).write_bytes(self.read(source))

    def change(self, name, sql):
        with sqlite3.connect(self.directory / name) as database:
            database.executescript(sql)
        database.close()


class Check(Files):
    # arguments, exit code, beginning of the lines on standard output, end of standard error
    RUNS = [
        (["river.db"], 0, [], "velm: checked 1 file: 0 errors, 0 warnings, 0 notes\n"),
        (["river.inp", "river.db", "--fail-on", "note"], 0, [], "velm: checked 2 files: 0 errors, 0 warnings, 0 notes\n"),
        (["late.inp"], 0, ["late.inp:194:3: warning V204 time repeats: "], "0 errors, 1 warning, 0 notes\n"),
        (["late.inp", "--fail-on", "warning"], 1, ["late.inp:194:3: warning V204"], "0 errors, 1 warning, 0 notes\n"),
        (["late.inp", "--fail-on", "note", "--quiet"], 1, ["late.inp:194:3: warning V204"], ""),
        (["deep.db", "late.inp"], 1, ["deep.db: error V101 field overflow: table segment, segment 2, column volume: ",
                                      "late.inp:194:3: warning"], "velm: checked 2 files: 1 error, 1 warning, 0 notes\n"),
        (["deep.db", "--fail-on", "never"], 0, ["deep.db: error V101"], "1 error, 0 warnings, 0 notes\n"),
        (["late.inp", "--show", "error"], 0, [], "velm: 1 finding is not shown; --show note lists all\n"),
        (["--ignore", "V301,V204", "late.inp", "late.inp", "--fail-on", "note"], 0, [], "0 errors, 0 warnings, 0 notes\n"),
        (["late.inp", "--ignore", "V999"], 2, [], "velm: --ignore: there is no finding V999; velm help check explains\n"),
        (["late.inp", "deep.db", "--most", "0"], 1,
         ["late.inp: 1 of V204 time repeats", "deep.db: 1 of V101 field overflow"], "1 error, 1 warning, 0 notes\n"),
        (["nowhere.inp", "deep.db"], 3, ["deep.db: error V101"],
         "velm: nowhere.inp does not exist; give another name\nvelm: checked 1 file: 1 error, 0 warnings, 0 notes\n"),
        (["other.db"], 3, [], "velm: checked 0 files: 0 errors, 0 warnings, 0 notes\n"),
        ([], 2, [], "FILE is required; velm help check explains\n"),
        (["-"], 2, [], "velm: FILE cannot be '-': it is read more than once, which a stream cannot be; give a file name\n"),
        (["river.db", "--most", "-1"], 2, [], "; velm help check explains\n"),
        (["river.db", "--json", "--sarif"], 2, [], "; velm help check explains\n"),
    ]

    def test_exit_codes_and_places(self):
        (self.directory / "folder").mkdir()
        self.write("empty.inp", "")
        self.change("other.db", "CREATE TABLE t (a)")
        before = {name: self.read(name) for name in self.files() if name != "folder"}
        for arguments, expected_code, lines, end in self.RUNS:
            with self.subTest(arguments):
                code, text, messages = self.velm("check", *arguments)
                self.assertEqual(code, expected_code, text + messages)
                self.assertEqual(len(text.splitlines()), len(lines), text)
                for line, beginning in zip(text.splitlines(), lines):
                    self.assertEqual(line[:len(beginning)], beginning)
                self.assertEqual(messages[len(messages) - len(end):], end)
        self.assertEqual({name: self.read(name) for name in self.files() if name != "folder"}, before)

    def test_a_finding_is_explained_by_its_section(self):
        code, text, _ = self.velm("explain", "v204")
        self.assertEqual((code, text.splitlines()[0]), (0, "V204 time repeats (warning)"))
        self.assertIn("*Remedy:* keep one pair", text)
        self.assertNotIn("V205", text)
        self.assertEqual(self.velm("explain", "V2"),
                         (2, "", "velm: there is no finding V2; velm docs findings lists all\n"))

    def test_json(self):
        code, text, _ = self.velm("check", "late.inp", "deep.db", "--json", "--show", "error")
        late, deep = json.loads(text)["files"]
        self.assertEqual((code, late["counts"], deep["counts"]), (1, {"V204": 1}, {"V101": 1}))
        self.assertEqual([(f["line"], f["column"]) for f in late["findings"]], [(194, 3)])
        self.assertEqual([(f["table"], f["row"], f["value"]) for f in deep["findings"]],
                         [("segment", "segment 2", "1e+10")])

    def test_sarif(self):
        self.copy("late.inp", "two words.inp")
        whole_path = str(self.directory / "two words.inp")
        log = json.loads(self.velm("check", "two words.inp", "deep.db", whole_path, "--sarif")[1])
        self.assertEqual((log["version"], len(log["runs"])), ("2.1.0", 1))
        driver, results = log["runs"][0]["tool"]["driver"], log["runs"][0]["results"]
        self.assertEqual(driver["name"], "velm")
        self.assertEqual([result["ruleId"] for result in results], ["V204", "V101", "V204"])
        for result in results:
            rule = driver["rules"][result["ruleIndex"]]
            self.assertEqual((rule["id"], rule["defaultConfiguration"]["level"]), (result["ruleId"], result["level"]))
            self.assertIn(result["level"], ["error", "warning", "note"])
            self.assertTrue(result["message"]["text"] and rule["shortDescription"]["text"] and rule["help"]["text"])
        places = [result["locations"][0]["physicalLocation"] for result in results]
        region = {"startLine": 194, "startColumn": 3}
        self.assertEqual(places, [{"artifactLocation": {"uri": "two%20words.inp"}, "region": region},
                                  {"artifactLocation": {"uri": "deep.db"}},
                                  {"artifactLocation": {"uri": "file://" + urllib.parse.quote(whole_path)},
                                   "region": region}])

    def test_an_export_that_loses_values_is_refused(self):
        before = self.read("river.inp")
        self.copy("deep.db", "fine.db")
        self.change("fine.db", "UPDATE segment SET volume = 1, slope = 1e-9 * number")
        refusal = "velm: the export is refused, river.inp is as it was: "
        wide = "  table segment, segment 2, column volume: 1e+10 is too wide for its field; make the value smaller: "
        for arguments, start, last in [
            (["deep.db"], refusal + "1 field overflows\n" + wide, "  --allow-overflow writes asterisks all the same"),
            (["deep.db", "--strict", "--quiet"], refusal + "1 field overflows\n" + wide, ""),
            (["fine.db", "--strict"], refusal + "31 values vanish\n", "  and 21 more"),
        ]:
            code, text, messages = self.velm("export", arguments[0], "river.inp", *arguments[1:])
            self.assertEqual((code, text, messages[:len(start)]), (1, "", start))
            self.assertIn(last, messages.splitlines()[-1])
            self.assertEqual(self.read("river.inp"), before)
        code, _, messages = self.velm("export", "fine.db", "river.inp")
        self.assertIn("no field overflows, 31 values vanish; velm check", messages)
        code, _, messages = self.velm("export", "deep.db", "river.inp", "--allow-overflow")
        self.assertEqual((code, messages.splitlines()[1]),
                         (0, "velm: river.inp: 1 field overflows, the other 41162 values keep their digits; "
                             "velm check --show note deep.db lists them"))
        self.assertNotEqual(self.read("river.inp"), before)


class Diff(Files):
    FORM = "the same model; the files differ in label text, line ends or fill alone\n"
    LATE = "flow time series: function 1 (Alder River inflow (m3/s)) of flow field 1: "

    # arguments, exit code, standard output, standard error
    RUNS = [
        (["river.db", "river.db"], 0, "", ""),
        (["river.db", "river.inp"], 0, "", ""),
        (["river.inp", "river.db"], 0, "", ""),
        (["river.inp", "copy.inp"], 0, "", ""),
        (["river.inp", "label.inp"], 0, FORM, ""),
        (["river.inp", "feeds.inp"], 0, FORM, ""),
        (["river.db", "deep.db"], 1, "segments: segment 2, volume: 304000 -> 1e+10\n", ""),
        (["river.db", "deep.db", "--summary"], 1, "segments: 1 value changed\n", ""),
        (["river.db", "fine.db"], 1, "segments: segment 1, width: 35 -> 35.000004\n", ""),
        (["river.db", "fine.db", "--tolerance", "1e-6"], 0, "", ""),
        (["river.inp", "fine.db"], 0, "", ""),  # the file has no room for that digit
        (["river.inp"], 2, "", "velm: NEW is required; velm help diff explains\n"),
    ]

    def test_runs(self):
        content = self.read("river.inp")
        self.copy("river.inp", "copy.inp")
        (self.directory / "label.inp").write_bytes(content.replace(b"Number of Segments", b"number of segments"))
        (self.directory / "feeds.inp").write_bytes(content.replace(b"\r\n", b"\n"))
        self.copy("river.db", "fine.db")
        self.change("fine.db", "UPDATE segment SET width = 35.000004 WHERE number = 1")
        for arguments, *expected in self.RUNS:
            with self.subTest(arguments):
                self.assertEqual(list(self.velm("diff", *arguments)), expected)

    def test_series(self):
        code, text, _ = self.velm("diff", "river.inp", "late.inp")
        self.assertEqual(code, 1)
        self.assertTrue(text.startswith(self.LATE), text)
        self.assertEqual(json.loads(self.velm("diff", "river.inp", "late.inp", "--json")[1])["result"], "different")
        everything = self.velm("diff", "river.inp", "late.inp", "--all")[1]
        self.assertIn("\n  day 1: 44.866 removed\n", everything)

    def test_a_file_with_values_that_cannot_be_read_is_not_compared(self):
        self.assertEqual(self.velm("export", "deep.db", "deep.inp", "--quiet", "--allow-overflow")[0], 0)
        code, text, messages = self.velm("diff", "river.inp", "deep.inp")
        self.assertEqual((code, text), (3, ""))
        self.assertRegex(messages, r"^velm: deep.inp cannot be used, .+\n  deep.inp:\d+:21: error V101 .+: segments, segment 2, volume: ")


if __name__ == "__main__":
    unittest.main()

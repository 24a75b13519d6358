"""velm as a modeller types it: what each command prints and leaves, and what it refuses."""

import html.parser
import json
import os
import re
import sqlite3
import stat
import unittest

from tool_case import ToolCase, VELM


class Usage(ToolCase):
    # arguments, decisive text of standard error; nothing is printed on standard output and no file changes
    REFUSED = [
        ([], "velm: a command is missing; velm help explains\n"),
        (["exprot", "m.db", "o.inp"], "velm: there is no command exprot; did you mean export? velm help lists all commands\n"),
        (["sing"], "velm: there is no command sing; velm help lists all commands\n"),
        (["help", "exprot"], "velm: there is no command exprot; did you mean export? velm help lists all commands\n"),
        (["docs", "../README"], "velm: there is no page ../README; velm docs lists all\n"),
        (["docs", "finding"], "velm: there is no page finding; did you mean findings? velm docs lists all\n"),
        (["export", "m.db", "o.inp", "--strct"], "velm: there is no option --strct; did you mean --strict? velm help export lists all\n"),
        (["--color", "never", "info", "m.db"], "velm: --color stands before the command; options follow it; velm help info lists all\n"),
        (["export"], "velm: MODEL is required; velm help export explains\n"),
        (["export", "m.db", "o.inp", "extra"], "velm: The following argument was not expected: extra; velm help export explains\n"),
        (["export", "m.db", "o.inp", "--panel"], "velm: --panel: 1 required FILE missing; velm help export explains\n"),
        (["export", "m.db", "-"], "velm: OUTPUT cannot be '-': an export replaces its file only when it is whole, which a stream cannot; give a file name\n"),
        (["export", "m.db", ""], "velm: OUTPUT is empty; give a file name\n"),
        (["export", "-", "o.inp"], "velm: MODEL cannot be '-': it is read more than once, which a stream cannot be; give a file name\n"),
        (["export", "m.db", "o.inp", "--panel", "-"], "velm: The panel's file cannot be '-': the page is saved in a file; give a file name\n"),
        (["export", "m.db", "m.db"], "velm: OUTPUT and MODEL are the same file, m.db; one would replace the other\n"),
        (["export", "m.db", "link.db"], "velm: OUTPUT and MODEL are the same file, link.db; one would replace the other\n"),
        (["export", "m.db", "o.inp", "--panel", "./o.inp"], "velm: OUTPUT and the panel's file are the same file, o.inp; one would replace the other\n"),
        (["export", "m.db", "folder"], "velm: folder is a directory; name a file in it\n"),
        (["export", "m.db", "folder/"], "velm: folder/ is a directory; name a file in it\n"),
        (["export", "m.db", "fifo"], "velm: fifo is a device, a pipe or a socket, which cannot be replaced by a complete file; name a regular file\n"),
        (["export", "m.db", "/dev/null"], "velm: /dev/null is a device, a pipe or a socket, which cannot be replaced by a complete file; name a regular file\n"),
        (["export", "m.db", "circle"], "velm: circle is a symbolic link that leads in a circle; name another file\n"),
        (["export", "m.db", "/dev/stdout"], "velm: /dev/stdout is a device, a pipe or a socket, which cannot be replaced by a complete file; name a regular file\n"),
        (["new", "-"], "velm: MODEL cannot be '-': SQLite keeps a database in a file, not in a stream; give a file name\n"),
        (["new", "m.db"], "velm: m.db exists and is left as it is; give a name that is not taken\n"),
        (["example", "m.db"], "velm: m.db exists and is left as it is; give a name that is not taken\n"),
        (["example", "folder"], "velm: folder exists and is left as it is; give a name that is not taken\n"),
        (["new", "dangling"], "velm: dangling exists and is left as it is; give a name that is not taken\n"),
    ]

    def test_refused(self):
        self.write("m.db", "precious")
        (self.directory / "folder").mkdir()
        os.mkfifo(self.directory / "fifo")
        os.symlink("m.db", self.directory / "link.db")
        os.symlink("circle", self.directory / "circle")
        os.symlink("nowhere", self.directory / "dangling")
        before = self.files()
        for arguments, message in self.REFUSED:
            with self.subTest(arguments):
                self.assertEqual(self.velm(*arguments), (2, "", message))
                self.assertEqual(self.files(), before)
                self.assertEqual((self.directory / "m.db").read_text(), "precious")

    def test_help_has_an_example_of_every_command_and_all_exit_codes(self):
        code, text, messages = self.velm("--help")
        self.assertEqual((code, messages), (0, ""))
        self.assertEqual(re.findall(r"^  (\d)  ", text, re.M), list("01234"))
        for command in re.findall(r"^  ([a-z]+) {2,}", text.split("Subcommands:")[1], re.M):
            code, text, messages = self.velm(command, "--help")
            self.assertEqual((code, messages), (0, ""))
            self.assertRegex(text, rf"Examples?:\n  velm {command}\b")

    def test_version(self):
        for option in ("--version", "-V"):
            code, text, messages = self.velm(option)
            self.assertRegex(text, r"^velm \d+\.\d+\.\d+\nSQLite \d+\.\d+\.\d+, model schema \d+\n$")
            self.assertEqual((code, messages), (0, ""))

    def test_every_page_is_printed_and_every_command_names_one_that_is_there(self):
        pages = [line.split()[0] for line in self.velm("docs")[1].splitlines()]
        self.assertIn("findings", pages)
        for page in pages:
            self.assertRegex(self.velm("docs", page)[1], "^# ")
        for command in re.findall(r"^  ([a-z]+) {2,}", self.velm("help")[1].split("Subcommands:")[1], re.M):
            text = self.velm("help", command)[1]
            self.assertEqual(text, self.velm(command, "--help")[1])
            for page in re.findall(r"^More: velm docs (\S+)", text, re.M):
                self.assertIn(page, pages)

    def test_what_may_follow(self):
        for words, among in [
            (["ex"], "export"),
            (["help", ""], "check"),
            (["export", "m.db", "--st"], "--strict"),
            (["check", "--fail-on", ""], "warning"),
            (["check", "--color", ""], "always"),
        ]:
            with self.subTest(words):
                lines = self.velm("describe", *words)[1].splitlines()
                self.assertIn(among, [line.split("\t")[0] for line in lines])
        self.assertEqual(self.velm("describe", "export", "")[1], "")  # a file belongs here


class Printed(ToolCase):
    def test_schema_creates_the_database_that_new_creates(self):
        code, sql, messages = self.velm("schema")
        self.assertEqual((code, messages), (0, ""))
        self.velm("new", "new.db")
        tables = "SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL ORDER BY name"
        printed = sqlite3.connect(":memory:")
        printed.executescript(sql)
        created = sqlite3.connect(self.directory / "new.db")
        self.assertEqual(printed.execute(tables).fetchall(), created.execute(tables).fetchall())
        printed.close()
        created.close()

    def test_info(self):
        self.make_model()
        code, text, messages = self.velm("info", "model.db")
        self.assertEqual((code, messages), (0, ""))
        for line in [
            "segments              3, of type 1: 2, of type 3: 1",
            "    1  Dissolved oxygen (DO), boundaries: 2, loads: 0",
            "    2  Salinité (SAL), boundaries: 0, loads: 1",
            "    1  functions: 2, paths: 2, time pairs: 11",
            "    1  functions: 1, segment pairs: 2, time pairs: 2",
            "flow series           series: 2, time pairs: 11, from 0 to 3e+06",
            "dispersion series     series: 1, time pairs: 2, from 0 to 365",
            "boundary series       series: 2, time pairs: 2, from -2 to 400",
            "load series           series: 1, time pairs: 1, from 3 to 3",
            "time-function series  series: 3, time pairs: 3, from 0 to 364",
            "time functions        types: 3, used: 2, unused: 1",
            "parameters            types: 1, used: 1, unused: 1",
            "constants             types: 2, used: 1, unused: 1",
        ]:
            self.assertIn(line + "\n", text)

    def test_info_of_water_and_series(self):
        self.make_model(sql="""
            UPDATE model SET start_date_1 = 2001, start_date_2 = 3, start_date_3 = 1, julian_end_time = 10,
                             maximum_time_step = 0.1, volume_conversion_factor = 1000;
            INSERT INTO segment (name, type, volume) VALUES ('Reach', 1, 864), ('Pond', 2, 1);
            INSERT INTO flow_field (scale_factor) VALUES (2);
            INSERT INTO flow_function VALUES (1, 1, 'River');
            INSERT INTO flow_path VALUES (1, 1, 1, 0, 1, 1), (1, 1, 2, 1, 0, 1);
            INSERT INTO flow_value VALUES (1, 1, 1, 0, 5), (1, 1, 2, 10, 15);""")
        self.assertEqual(self.velm("export", "model.db", "model.inp", "--quiet")[0], 0)
        code, text, messages = self.velm("info", "model.inp", "none", "model.db", "--json")
        self.assertEqual((code, messages), (3, "velm: none does not exist; give another name\n"))
        of_file, of_database = json.loads(text)["files"]
        self.assertEqual((of_file.pop("kind"), of_database.pop("kind")), ("input file", "model database"))
        self.assertEqual({**of_file, "file": "model.db"}, of_database)
        self.assertEqual(of_file["run"], {"start_date": "2001-03-01", "end_day": 10, "end_date": "2001-03-11",
                                          "minimum_time_step": 0, "maximum_time_step": 0.1, "print_interval": 0})
        self.assertEqual(of_file["water"], {"in": 17.28e6, "out": 17.28e6, "stored": 0})
        self.assertEqual(of_file["series"], [{
            "table": "flow_value", "owner": 1, "number": 1, "description": "River", "used": 1, "pairs": 2, "first_day": 0,
            "first_date": "2001-03-01", "last_day": 10, "last_date": "2001-03-11", "usual_step": 10, "gaps": 0,
            "least": 10, "mean": 20, "greatest": 30, "unit": "m3/s"}])
        reach, pond = of_file["segments"]
        self.assertEqual(reach, {
            "number": 1, "name": "Reach", "type": 1, "volume": 864000, "mean_inflow": 20, "mean_outflow": 20,
            "residence_time": 0.5, "shortest_residence_time": 864000 / 30 / 86400, "highest_outflow_day": 10,
            "highest_outflow_date": "2001-03-11", "connections": [{"segment": 0, "by": "flow", "field": 1}]})
        self.assertEqual((pond["residence_time"], pond["connections"]), (None, []))
        text = self.velm("info", "model.inp", "--series", "--segments")[1]
        (self.directory / "part.inp").write_bytes((self.directory / "model.inp").read_bytes().replace(b"15.0000", b"15.x000"))
        code, part, messages = self.velm("info", "part.inp")
        self.assertEqual((code, part.split("\n")[1:3]), (3, text.split("\n")[1:3]))
        self.assertRegex(messages, r"^velm: what is said of part.inp is incomplete, .*\n  part.inp:.* V102 .*\n$")
        for words in ["in 17280000 m3, out 17280000 m3, stored 0 m3",
                      "flow field 1, flow function 1 2 2001-03-01, day 0 2001-03-11, day 10 10 0 10 20 30 m3/s River",
                      "1 864000 20 20 0.5 0.3333 1 Reach outside (flow 1)"]:
            self.assertIn(words, " ".join(text.split()))

    def test_names_cannot_steer_the_terminal(self):
        self.make_model(sql="INSERT INTO system (name) VALUES ('a' || char(27) || '[2Jb' || char(155))")
        self.assertIn("    1  a\\x1B[2Jb\\x9B (), ", self.velm("info", "model.db")[1])

    def test_a_full_disk_behind_standard_output_is_a_failure(self):
        with open("/dev/full", "w") as full:
            self.assertEqual(self.velm("schema", stdout=full),
                             (4, "", "velm: the standard output cannot be written; is the disk full?\n"))


class Exported(ToolCase):
    def export(self, *arguments):
        code, text, messages = self.velm("export", *arguments)
        self.assertEqual((code, text), (0, ""), messages)
        return messages

    def test_file_summary_counts_the_file(self):
        self.make_model("odd.db")
        self.make_model("empty.db", "")
        self.velm("example", "estuary.db")
        for model in ["odd.db", "empty.db", "estuary.db"]:
            with self.subTest(model):
                messages = self.export(model, "out.inp")
                content = (self.directory / "out.inp").read_bytes()
                size = f"{content.count(bytes([10]))} records, {len(content)} bytes"
                self.assertRegex(messages, rf"^velm: out.inp: 11 sections, {size} in \d+\.\d\d seconds\nvelm: out.inp: no field overflows, .+\n$")

    def test_quiet(self):
        for command in (["new", "model.db"], ["example", "estuary.db"], ["export", "model.db", "out.inp"],
                        ["diff", "model.db", "out.inp"]):
            self.assertEqual(self.velm(*command, "--quiet"), (0, "", ""))

    def test_existing_file_is_replaced_and_keeps_its_permissions(self):
        self.make_model()
        self.write("out.inp", "old")
        (self.directory / "out.inp").chmod(0o640)
        self.export("model.db", "out.inp")
        self.assertEqual(stat.S_IMODE((self.directory / "out.inp").stat().st_mode), 0o640)
        self.assertGreater((self.directory / "out.inp").stat().st_size, 1000)

    def test_new_file_has_the_permissions_that_the_user_gives_to_new_files(self):
        self.make_model()
        os.umask(before := os.umask(0))
        self.export("model.db", "out.inp")
        self.assertEqual(stat.S_IMODE((self.directory / "out.inp").stat().st_mode), 0o666 & ~before)

    def test_symbolic_links_stay_and_their_target_is_replaced(self):
        self.make_model()
        (self.directory / "folder").mkdir()
        os.symlink("folder/new.inp", self.directory / "second")
        os.symlink("second", self.directory / "first")
        self.export("model.db", "first")
        self.assertEqual(self.files(), ["first", "folder", "model.db", "second"])
        self.assertEqual(os.listdir(self.directory / "folder"), ["new.inp"])
        self.assertTrue((self.directory / "first").is_symlink())

    def test_longest_names(self):
        self.make_model()
        self.export("model.db", "x" * 255)
        folder = "/".join(["f" * 200, "g" * 200, "h" * 200]) # more than the plug-in's field has room for
        (self.directory / folder).mkdir(parents=True)
        self.export("model.db", f"{folder}/o")
        self.assertEqual(os.listdir(self.directory / folder), ["o"])


class Given(ToolCase):
    """A file that is not what its command wants."""
    NEITHER = "is neither a model database nor an input file, it begins with '{}'; velm docs model-database says how values of a table get into a database"
    # name, content or SQL that makes it of a model, what is said of it with exit code 3; nothing: it is read
    FILES = [
        ("sheet.xlsx", b"PK\3\4sheet", NEITHER.format(r"PK\x03\x04sheet")),
        ("flow.csv", b"date,flow\n1,2\n3,4\n", NEITHER.format(r"date,flow\x0A1,2...")),
        ("empty.inp", b"", "is empty; give a model database, such as velm new makes, or an input file"),
        ("nowhere/m.db", None, "the folder nowhere of nowhere/m.db does not exist; give another name"),
        ("folder/no/m.db", None, "the folder folder/no of folder/no/m.db does not exist; give another name"),
        ("folder", None, "is a folder, a device or a pipe; give a file, which can be read to its end and more than once"),
        ("other.db", "PRAGMA application_id = 0", "is not a model database: its application_id is 0, not 1447382093; create one with the schema that this program prints"),
        ("newer.db", "PRAGMA user_version = 2", "has tables of version 2, this program knows version 1; use a newer version of this program"),
        ("older.db", "DROP TABLE segment_place", ""),
    ]

    def test_files(self):
        self.make_model()
        (self.directory / "folder").mkdir()
        for name, made, said in self.FILES:
            if isinstance(made, bytes):
                (self.directory / name).write_bytes(made)
            elif made:
                self.make_model(name, made)
            before = self.files()
            for command in (["export", name, "out"], ["info", name], ["check", name], ["diff", name, "model.db"],
                            ["report", name, "page"]):
                with self.subTest(command):
                    code, _, message = self.velm(*command)
                    self.assertIn(said, message)
                    self.assertTrue(code == 3 and name in message if said else code < 2, message)
                    self.assertEqual(before if said else self.files(), self.files())

    def test_the_other_kind(self):
        self.make_model()
        self.assertEqual(self.velm("export", "model.db", "model.inp", "--quiet"), (0, "", ""))
        for command, code, said in [
            (["import", "model.db", "new.db"], 3, "model.db is a database already; give an input file"),
            (["export", "model.inp", "o.inp", "--sql", "c.sql"], 2,
             "model.inp is an input file, which SQL cannot change; import it first"),
        ]:
            self.assertEqual(self.velm(*command), (code, "", f"velm: {said}\n"))
        self.assertEqual(self.velm("export", "model.inp", "again.inp", "--quiet"), (0, "", ""))
        self.assertEqual((self.directory / "again.inp").read_bytes(), (self.directory / "model.inp").read_bytes())
        self.assertIn("systems               2\n", self.velm("info", "model.inp")[1])

    def test_without_the_right_to_read(self):
        self.make_model()
        self.directory.chmod(0o755)
        (self.directory / "model.db").chmod(0)
        be_nobody = (lambda: os.setuid(65534)) if os.geteuid() == 0 else None
        self.assertEqual(self.velm("info", "model.db", preexec_fn=be_nobody),
                         (3, "", "velm: model.db cannot be opened: Permission denied; ask its owner, or give another file\n"))


class PanelPage(html.parser.HTMLParser):
    """Fails on marks that do not nest and on list items outside a list; keeps the texts of items and cells."""

    def __init__(self, page):
        super().__init__()
        self.open, self.texts = [], {"li": [], "td": [], "title": []}
        self.charset = re.search('<meta charset="([^"]+)">', page.decode("latin-1")).group(1)
        self.feed(page.decode(self.charset))
        self.close()
        assert not self.open, self.open

    def handle_starttag(self, tag, attributes):
        if tag in ("meta", "br"):
            return
        assert tag != "li" or self.open[-1] == "ul", self.open
        self.open.append(tag)

    def handle_endtag(self, tag):
        assert self.open and self.open.pop() == tag, f"</{tag}> after {self.open}"

    def handle_data(self, data):
        for tag in self.open:
            if tag in self.texts and data.strip():
                self.texts[tag].append(data.strip())


class Panel(ToolCase):
    def test_page(self):
        self.make_model()
        self.assertEqual(self.velm("export", "model.db", "out.inp", "--panel", "panel.html")[0], 0)
        content = (self.directory / "panel.html").read_bytes()
        page = PanelPage(content)
        self.assertTrue(content.startswith(b"<!DOCTYPE html>\n"))
        self.assertEqual(page.texts["title"], ["Export of model.db: done"])
        self.assertEqual(page.texts["td"][0], "VELM Export Utility Version Information")
        self.assertEqual(len(page.texts["td"]), 10)
        self.assertEqual(len(page.texts["li"]), 11)
        self.assertEqual(page.texts["li"][-1], "File Export is Complete")
        self.assertEqual(self.files(), ["model.db", "out.inp", "panel.html"])


if __name__ == "__main__":
    assert os.access(VELM, os.X_OK), VELM
    unittest.main()

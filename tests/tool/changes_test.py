"""velm export --sql: an export of a copy that a file of statements has changed."""

import sqlite3
import unittest

from tool_case import ToolCase

REFUSED = [  # what the file holds, and the message
    ("ATTACH 'other.db' AS other", "line 1: 'ATTACH 'other.db' AS other' not authorized"),
    ("\n-- a comment\n/* and\nanother */ PRAGMA foreign_keys = OFF;", "line 4: 'PRAGMA foreign_keys = OFF' not authorized"),
    ("UPDATE segment SET width = 1;\nCOMMIT;", "line 2: 'COMMIT' not authorized"),
    ("DETACH main", "line 1: 'DETACH main' not authorized"),
    ("VACUUM INTO 'other.db'", "line 1: 'VACUUM INTO 'other.db'' "),
    ("CREATE TEMP TABLE other (a)", "line 1: 'CREATE TEMP TABLE other (a)' not authorized"),
    ("DROP TABLE segment", "line 1: 'DROP TABLE segment' not authorized"),
    ("UPDATE sqlite_master SET sql = ''", "line 1: 'UPDATE sqlite_master SET sql = ''' "),
    ("UPDATE own SET a = 1", "line 1: 'UPDATE own SET a = 1' not authorized"),
    ("UPDATE segment SET name = load_extension('x')", "line 1: 'UPDATE segment SET name = load_extension('x')' not auth"),
    ("SELECT 1", "line 1: 'SELECT 1' changes nothing"),
    ("EXPLAIN DELETE FROM load", "line 1: 'EXPLAIN DELETE FROM load' changes nothing"),
    ("UPDATE segment SET breadth = 1", "line 1: 'UPDATE segment SET breadth = 1' no such column: breadth"),
    ("DELETE FROM segment", "line 1: 'DELETE FROM segment' FOREIGN KEY constraint failed"),
    ("UPDATE segment SET width = 1e39;", "table segment, segment 1, column width: '1e+39' is too large"),
    ("UPDATE segment SET name = 'x' || hex(zeroblob(20))", "CHECK constraint failed: segment.name has at most 40 characters"),
    ("UPDATE segment SET width = 'ft'", "line 1: 'UPDATE segment SET width = 'ft'' cannot store TEXT value in REAL"),
]


class Changes(ToolCase):
    def setUp(self):
        super().setUp()
        self.make_model()
        with sqlite3.connect(self.directory / "model.db") as database:
            database.execute("CREATE TABLE own (a)")
        database.close()
        self.before = (self.directory / "model.db").read_bytes()

    def export(self, changes):
        self.write("changes.sql", changes)
        return self.velm("export", "model.db", "out.inp", "--sql", "changes.sql")

    def test_the_copy_is_changed_and_the_database_is_not(self):
        more = "".join(f"UPDATE segment SET length = {i} WHERE number = 2;\n" for i in range(20000))
        code, _, said = self.export("-- both\nUPDATE constant SET value = (SELECT count(*) FROM own) + 7.00001;;\n"
                                    "DELETE FROM load_value; UPDATE segment SET width = 2 WHERE number = 99;\n" + more)
        self.assertEqual(code, 0, said)
        self.assertIn("velm: changes.sql:3: the statement changes no row\n", said)
        self.assertIn(" shortened\n", said, "velm check would look at the database as it is")
        self.assertEqual(self.files(), ["changes.sql", "model.db", "out.inp"])
        self.assertEqual((self.directory / "model.db").read_bytes(), self.before)

        self.velm("export", "model.db", "plain.inp")
        _, differences, _ = self.velm("diff", "plain.inp", "out.inp")
        for found, expected in zip(differences.splitlines(), ("length: 0 -> 19999", "1 pair removed", "0.1 -> 7")):
            self.assertIn(expected, found)
        self.assertEqual(len(differences.splitlines()), 3)

    def test_all_else_is_refused_with_line_and_statement(self):
        for changes, message in REFUSED:
            with self.subTest(changes):
                code, _, said = self.export(changes)
                self.assertEqual(code, 3)
                self.assertIn(message, said)
                self.assertEqual(self.files(), ["changes.sql", "model.db"])
        self.assertEqual((self.directory / "model.db").read_bytes(), self.before)

    def test_a_file_that_is_none_is_refused(self):
        (self.directory / "nul.sql").write_bytes(b"DELETE FROM load;\0")
        for name, why in [("nul.sql", "is no file of SQL statements that can be read; give a text file"),
                          ("absent.sql", "does not exist; give another name"), (".", "is a folder, a device or a pipe; give a file, "
                                                                                "which can be read to its end and more than once")]:
            code, _, said = self.velm("export", "model.db", "out.inp", "--sql", name)
            self.assertEqual((code, said), (2, f"velm: {name} {why}\n"))


if __name__ == "__main__":
    unittest.main()

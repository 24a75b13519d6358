"""Names that look like HTML stay out of the page that velm writes."""

import sqlite3
import unittest

from tool_case import MODEL_SQL, ToolCase

MARK = "</li></ul><script>"
TEXTS = {"system": "name", "segment": "name", "flow_function": "description", "exchange_function": "description",
         "time_function": "description", "parameter": "description", "constant": "description",
         "model": "nps_file"}


class PageOfNames(ToolCase):
    def test_no_name_breaks_out(self):
        self.make_model(sql=MODEL_SQL)
        with sqlite3.connect(self.directory / "model.db") as database:
            for table, column in TEXTS.items():
                database.execute(f"UPDATE {table} SET {column} = ?", [MARK])
        database.close()
        page = self.directory / "panel.html"
        self.assertEqual(self.velm("export", "model.db", "out.inp", "--panel", page)[0], 0)
        self.assertIn(MARK.encode(), (self.directory / "out.inp").read_bytes())
        self.assertNotIn(b"<script", page.read_bytes())
        # and were it otherwise, as a foreign plug-in may have it, no script would run
        head = page.read_bytes().partition(b"</head>")[0]
        self.assertIn(b"""<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src""", head)
        # nor when an export fails and the page says why
        self.assertNotEqual(self.velm("export", "missing" + MARK.replace("/", ""), "out.inp", "--panel", page)[0], 0)
        self.assertNotIn(b"<script", page.read_bytes())


if __name__ == "__main__":
    unittest.main()

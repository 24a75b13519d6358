"""What velm draws: a progress bar and colour on a terminal that can, plain text everywhere else."""

import os
import pty
import subprocess
import unittest

from tool_case import ToolCase, VELM

MANY_REQUESTS = """
INSERT INTO flow_field DEFAULT VALUES;
INSERT INTO flow_function (flow_field, number) VALUES (1, 1);
INSERT INTO flow_value WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < 150000)
    SELECT 1, 1, i, i, 1.5 FROM n;
"""


class Terminal(ToolCase):
    def on_terminal(self, *arguments, **environment):
        """What velm writes to standard error when that is a terminal."""
        ours, theirs = pty.openpty()
        process = subprocess.Popen([VELM, *arguments], cwd=self.directory, stderr=theirs, stdout=subprocess.DEVNULL,
                                   env=self.environment(**environment))
        os.close(theirs)
        text = b""
        try:
            while part := os.read(ours, 4096):
                text += part
        except OSError: # the last one has closed the terminal
            pass
        os.close(ours)
        process.wait(timeout=60)
        return text.decode()

    def test_progress_bar(self):
        self.make_model(sql=MANY_REQUESTS)
        for what, arguments, environment, drawn in [
            ("a terminal", [], {}, True),
            ("a terminal without colour", [], {"NO_COLOR": "1"}, True),
            ("quiet", ["--quiet"], {}, False),
            ("a dumb terminal", [], {"TERM": "dumb"}, False),
        ]:
            with self.subTest(what):
                text = self.on_terminal("export", "model.db", "out.inp", "--allow-overflow", *arguments, **environment)
                self.assertNotIn("\x1b", text)
                pattern = r"\rexport \[#+\.+\]  \d\d %  \d+\.\d [kM] values/s  \d:\d\d left *\r +\r"
                (self.assertRegex if drawn else self.assertNotRegex)(text, pattern)
                if not drawn:
                    self.assertNotIn("\r", text.replace("\r\n", "\n"))

    def test_colour(self):
        for environment, expected in [
            ({}, "\x1b[1;31mvelm:\x1b[0m there is no command sing"),
            ({"NO_COLOR": "1"}, "velm: there is no command sing"),
            ({"TERM": "dumb"}, "velm: there is no command sing"),
        ]:
            with self.subTest(environment):
                self.assertTrue(self.on_terminal("sing", **environment).startswith(expected))
        self.assertNotIn("\x1b", self.on_terminal("info", "none", "--color", "never"))
        self.assertIn("\x1b[1;31mvelm:", self.velm("info", "none", "--color", "always")[2])

    def test_no_terminal(self):
        self.make_model(sql=MANY_REQUESTS)
        messages = self.velm("export", "model.db", "out.inp")[2] + self.velm("sing")[2]
        self.assertNotIn("\x1b", messages)
        self.assertNotIn("\r", messages)


if __name__ == "__main__":
    unittest.main()

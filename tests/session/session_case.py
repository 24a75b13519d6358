"""What the tests of whole sessions share: the recorder beside the real host library, sessions as lists of objects."""

import json
import os
import pathlib
import shutil
import sqlite3
import sys

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "tool"), str(TESTS / "reference")]

from tool_case import ToolCase  # noqa: E402 found by the line above

HOST_LIBRARY = pathlib.Path(os.environ["HOST_LIBRARY"])
PLUG_IN = pathlib.Path(os.environ["PLUG_IN"])
MODEL_HOST = pathlib.Path(os.environ["MODEL_HOST"])
RECORDER = pathlib.Path(os.environ["RECORDER"])
GOLDEN_MODELS = sorted((TESTS / "golden").glob("*.sql"))


class SessionCase(ToolCase):
    def read(self, name):
        return (self.directory / name).read_bytes()

    def run_velm(self, *arguments, code=0, **environment):
        """Runs velm, which must end with this code; its standard error."""
        got, _, error = self.velm(*arguments, **environment)
        self.assertEqual(code, got, error)
        return error

    def make_golden_model(self, sql, name="model.db"):
        """A database as the golden models mean it: the schema alone, then their statements."""
        _, schema, _ = self.velm("schema")
        with sqlite3.connect(self.directory / name) as database:
            database.executescript(schema + sql.read_text())
        database.close()

    def install_recorder(self):
        """The recorder as a user installs it: under the host library's name, that one beside it under another."""
        place = self.directory / "recorder"
        place.mkdir()
        shutil.copy(RECORDER, place / HOST_LIBRARY.name)
        shutil.copy(HOST_LIBRARY, place / (HOST_LIBRARY.stem + "_host" + HOST_LIBRARY.suffix))
        return place

    def lines(self, name):
        return self.read(name).decode().splitlines()

    def change(self, name, key, old, new, which=0):
        """Writes changed.jsonl, where one exchange of this key has one piece replaced; the exchange's number."""
        lines = self.lines(name)
        at = [i for i, line in enumerate(lines) if f'"key":"{key}"' in line][which]
        self.assertIn(old, lines[at])
        lines[at] = lines[at].replace(old, new)
        (self.directory / "changed.jsonl").write_bytes("".join(line + "\n" for line in lines).encode())
        return json.loads(lines[at])["exchange"]

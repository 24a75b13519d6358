"""Names and texts of others do not steer the terminal, forge a line or turn one around, whichever command prints them."""

import json
import unittest

from tool_case import ToolCase

EVIL = "a\x1b[31m\nvelm: done\r\x9b2J\u202egnp.\u2066\u2028\u2029\u200f"
SHOWN = r"a\x1B[31m\x0Avelm: done\x0D\x9B2J\u202Egnp.\u2066\u2028\u2029\u200F"
STEERING = [chr(code) for code in [*range(10), *range(11, 32), *range(0x7F, 0xA0), 0x061C, 0x200E, 0x200F, *range(0x2028, 0x202F),
                                   *range(0x2066, 0x206A)]]


class PrintedNames(ToolCase):
    def setUp(self):
        super().setUp()
        self.make_model()
        self.assertEqual(self.velm("export", "model.db", "model.inp", "--record", "session.jsonl")[0], 0)
        self.evil_input, self.evil_model = EVIL + ".inp", EVIL + ".db"

    def assert_plain(self, result, shown=True):
        code, output, messages = result
        for text in [output, messages]:
            for character in STEERING:
                self.assertNotIn(character, text)
            self.assertFalse([line for line in text.splitlines() if line.startswith("velm: done")], text)
        if shown:
            self.assertIn(SHOWN, output + messages)

    def test_every_command(self):
        good = [["export", "model.db", self.evil_input, "--panel", EVIL + ".html"], ["import", self.evil_input, self.evil_model],
                ["new", EVIL + "1"], ["example", EVIL + "2"], ["session-to-model", "session.jsonl", EVIL + "3"],
                ["replay", "session.jsonl", EVIL + "4"]]
        for arguments in good:
            with self.subTest(arguments):
                result = self.velm(*arguments)
                self.assertEqual(result[0], 0, result)
                self.assert_plain(result)
        self.write(EVIL + ".bad", "x" + EVIL + "\n")
        bad = [*good[2:5], ["export", "model.db", EVIL + "/out"], ["export", "model.db", "out.inp", "--plugin", EVIL],
               ["export", "model.db", "out.inp", "--plugin", EVIL + ".bad"], ["export", EVIL, "out.inp"],
               ["export", "model.db", "out.inp", "--panel", EVIL + "/panel"], ["export", "model.db", "out.inp", "--record", EVIL + "/s"],
               ["export", EVIL + ".bad", "out.inp"], ["export", self.evil_model, self.evil_model], [EVIL], ["export", "a", "b", EVIL],
               ["--" + EVIL], ["check", "--fail-on", EVIL, "model.db"], ["check", EVIL], ["check", EVIL + ".bad"], ["diff", EVIL + ".bad", "model.inp"],
               ["diff", "model.db", EVIL], ["import", EVIL + ".bad", "new.db"], ["import", "model.inp", self.evil_model], ["info", EVIL],
               ["info", EVIL + ".bad"], ["replay", EVIL + ".bad", "out.inp"], ["replay", "session.jsonl", EVIL + "/o"],
               ["session-to-model", EVIL + ".bad", "new.db"], ["record", EVIL + ".bad", "s.jsonl"], ["record", EVIL, "s.jsonl"],
               ["docs", EVIL], ["help", EVIL], ["explain", EVIL]]
        for arguments in bad:
            with self.subTest(arguments):
                result = self.velm(*arguments)
                self.assertNotEqual(result[0], 0)
                self.assert_plain(result)

    def test_json_is_plain_and_keeps_the_name(self):
        self.write(EVIL + ".bad", "Module Type: none\n")
        for arguments in [["check", "--json", EVIL + ".bad"], ["diff", "--json", "model.inp", self.evil_input]]:
            self.velm("export", "model.db", self.evil_input)
            with self.subTest(arguments):
                result = self.velm(*arguments)
                self.assert_plain(result, shown=False)
                self.assertIn(EVIL, repr_of(json.loads(result[1])))
        self.assert_plain(self.velm("check", "--sarif", EVIL + ".bad"), shown=False)

    def test_bytes_that_are_no_utf8(self):
        name = b"\xff\xfe\xc3"
        (self.directory / "model.db").rename((self.directory / "x").with_name(name.decode(errors="surrogateescape")))
        code, _, messages = self.velm("export", name, "no/out.inp")
        self.assertEqual(code, 2)
        code, _, messages = self.velm("new", name)
        self.assertIn(r"velm: \xFF\xFE\xC3 exists", messages)


def repr_of(value):
    """All texts of a JSON value, as they are."""
    if isinstance(value, dict):
        return "".join(repr_of(member) for member in value.values())
    if isinstance(value, list):
        return "".join(repr_of(member) for member in value)
    return str(value)


if __name__ == "__main__":
    unittest.main()

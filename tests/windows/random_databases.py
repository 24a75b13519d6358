"""Model databases filled at random within what the schema and the host's contract allow; reproducible by seed."""

import random
import re
import sqlite3
import struct

from random_models import RandomHost

INTEGER_LIMITS = (-(2**31), 2**31 - 1)
LETTERS = [chr(code) for code in (*range(0x20, 0x7F), *range(0xA1, 0x100))]


class RandomDatabase:
    """Fills every table: `row` chooses what is not given by the column's type and its longest text."""

    def __init__(self, schema, seed):
        self.random = random.Random(seed)
        self.reals = RandomHost(seed, b"")
        self.schema = schema

    def write(self, path):
        database = sqlite3.connect(path)
        database.executescript(self.schema)
        database.execute("PRAGMA foreign_keys = ON")
        self.database = database
        self.fill()
        database.commit()
        database.close()

    def count(self, highest):
        return self.random.choice([0, min(1, highest), self.random.randint(0, highest), highest])

    def real(self):
        """A finite number of single precision, of every kind that rendering distinguishes."""
        while True:
            number = struct.unpack("<f", struct.pack("<I", self.reals.real()))[0]
            if number - number == 0:
                return number

    def text(self, most):
        alphabet = self.random.choice([["a", " "], LETTERS, ["\xe4", "Reach ", "0"]])
        return "".join(self.random.choices(alphabet, k=self.random.randint(0, most)))[:most]

    def datum(self, table, column, kind):
        if kind == "TEXT":
            definition = self.database.execute("SELECT sql FROM sqlite_schema WHERE name = ?", [table]).fetchone()[0]
            return self.text(int(re.search(rf"length\({column}\) <= (\d+)", definition)[1]))
        if kind == "REAL":
            return self.real()
        return self.random.choice([*INTEGER_LIMITS, 0, 1, 3, -1, self.random.randint(-999, 99_999)])

    def row(self, table, **given):
        values = dict(given)
        for _, column, kind, *_ in self.database.execute(f"PRAGMA table_info({table})"):
            if column not in values:
                values[column] = self.datum(table, column, kind)
        places = ", ".join("?" * len(values))
        self.database.execute(f"INSERT INTO {table} ({', '.join(values)}) VALUES ({places})", list(values.values()))

    def series(self, table, most=20, **owner):
        for number in range(1, self.count(most) + 1):
            self.row(table, number=number, **owner)

    def fill(self):
        pick = self.random
        systems, segments = self.count(7), self.count(15)
        self.row("model", number=1)
        for number in range(1, segments + 1):
            self.row("segment", number=number, bottom_segment=pick.randint(0, segments))
        for system in range(1, systems + 1):
            self.row("system", number=system)
            for segment in range(1, segments + 1):
                self.row("initial_condition", system=system, segment=segment)
            for table in ("boundary", "load"):
                for number in range(1, self.count(4 if segments else 0) + 1):
                    self.row(table, system=system, number=number, segment=pick.randint(1, segments))
                    self.series(f"{table}_value", **{"system": system, table: number})
        self.fill_fields("flow", "flow_path", 8, segments)
        self.fill_fields("exchange", "exchange_pair", 4, segments)
        self.fill_types("time_function", segments)
        self.fill_types("parameter", segments)
        self.fill_types("constant", segments)

    def fill_fields(self, kind, paths, most, segments):
        for field in range(1, self.count(most) + 1):
            self.row(f"{kind}_field", number=field)
            for function in range(1, self.count(4) + 1):
                self.row(f"{kind}_function", **{f"{kind}_field": field, "number": function})
                owner = {f"{kind}_field": field, f"{kind}_function": function}
                for number in range(1, self.count(6) + 1):
                    ends = {end: self.random.randint(0, segments) for end in ("first_segment", "second_segment")}
                    self.row(paths, number=number, **owner, **ends)
                self.series(f"{kind}_value", **owner)

    def fill_types(self, kind, segments):
        for number, isc in enumerate(self.random.sample(range(1, 1200), self.count(6)), 1):
            self.row(f"{kind}_type", number=number, isc=isc)
            for instance in range(1, self.count(5) + 1):
                self.row(kind, **{f"{kind}_type": number}, number=instance, used=self.random.randint(0, 1))
                owner = {f"{kind}_type": number, kind: instance}
                if kind == "time_function":
                    self.series("time_function_value", **owner)
                elif kind == "parameter":
                    for segment in range(1, segments + 1):
                        self.row("parameter_value", segment=segment, **owner)

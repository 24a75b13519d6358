"""Hosts that answer an export at random, each a model that no person would make and every host could hold.

A host is reproducible from its seed. It answers any request; nothing else of the model exists.
"""

import random
import struct

from reference_exporter import SERIES_LENGTH
from reference_records import Real

HIGHEST = {  # the usual upper bound of each count
    "GNUMSYS": 9,
    "GNUMSEG": 25,
    "GNFIELD": 9,
    "GNINQ": 8,
    "GNOQS": 9,
    "GNBRKQ": 12,
    "GNRFLD": 5,
    "GNTEX": 8,
    "GNORS": 9,
    "GNOBRKS": 12,
    "GNOBC": 7,
    "GNBFP": 60,
    "GNOWK": 7,
    "GNBWK": 60,
    "GNUMTFTYPE": 15,
    "GNUMTIMEFUNC": 6,
    "GNBRKTF": 12,
    "GNUMPARAMTYPE": 9,
    "GNUMPARAMBYISC": 5,
    "GNUMCONST": 15,
    "GNUMCONSTBYISC": 8,
}
TYPE_COUNTS = ("GNUMTFTYPE", "GNUMPARAMTYPE", "GNUMCONST")
FLAGS = ("GTFISUSED", "GPARAMISUSED", "GCONSTISUSED", "GLOPT")
ISC_NUMBERS = ("GTFISC", "GPARAMISC", "GCONSTTYPEISC")
INT_MIN, INT_MAX = -(2**31), 2**31 - 1
BOUNDARY_INTEGERS = [INT_MIN, INT_MAX, 0, 1, -1] + [
    sign * 10**n - less for n in range(1, 10) for sign in (1, -1) for less in (0, sign)
]
SPECIAL_REALS = [
    0x00000000,  # zero
    0x80000000,  # negative zero
    0x7F800000,  # infinite
    0xFF800000,
    0x7FC00000,  # not a number, with either sign and other patterns
    0xFFC00000,
    0x7F800001,
    0xFFABCDEF,
    0x00000001,  # the smallest denormal, the greatest, the smallest normal, the greatest of all
    0x807FFFFF,
    0x00800000,
    0x7F7FFFFF,
    0xFF7FFFFF,
]


def real_of(number):
    return Real(struct.unpack("<I", struct.pack("<f", number))[0])


class RandomHost:
    """What is out of the ordinary is chosen by the seed, so that a run of ten seeds has everything."""

    def __init__(self, seed, directory):
        self.random = random.Random(seed)
        self.directory = directory
        self.many_functions = seed % 10 == 1
        self.many_types = seed % 10 == 2
        self.no_model = seed % 10 == 3
        self.long_series = seed % 10 == 4
        self.many_items = {"GNUMSYS", "GNUMTIMEFUNC", "GNUMPARAMBYISC"} if seed % 10 == 5 else set()
        self.meddles = seed % 3 == 0  # writes into the arguments that it should only read
        self.remembers = seed % 2 == 0  # gives the same answer to the same question
        self.longest_series = HIGHEST["GNBFP"]
        self.answers = {}

    def answer(self, request):
        """What the host writes into each value of the request: see Cell.take."""
        if request.key.startswith("P"):
            return [None] * len(request.cells)
        return [
            self.meddling(cell) if given else self.filling(request, position, cell)
            for position, (cell, given) in enumerate(zip(request.cells, request.given))
        ]

    def meddling(self, cell):
        return self.integer() if self.meddles and self.random.random() < 0.1 else None

    def filling(self, request, position, cell):
        if cell.kind in ("integer", "real") and cell.value is not None and self.random.random() < 0.05:
            return None
        if not self.remembers or cell.kind == "series":
            return self.datum(request, cell)
        question = request.key, position, *[c.value for c, given in zip(request.cells, request.given) if given]
        if question not in self.answers:
            self.answers[question] = self.datum(request, cell)
        return self.answers[question]

    def datum(self, request, cell):
        key = request.key
        if key == "GFILENAME":
            return self.file_name(cell)
        if cell.kind == "text":
            return self.text(cell)
        if cell.kind == "real":
            return self.real()
        if cell.kind == "series":
            return self.series(cell)
        if key in HIGHEST:
            return self.count(key)
        if key in FLAGS:
            return self.flag()
        if key in ISC_NUMBERS and self.random.random() < 0.9:
            return self.random.randrange(1200)
        if key == "GIQOPT" and self.random.random() < 0.5:
            return 3
        return self.integer()

    def count(self, key):
        seldom = self.many_types or self.many_items
        if self.no_model and key in ("GNUMSYS", "GNUMSEG", "GNFIELD", "GNRFLD"):
            return self.random.choice([0, -1, INT_MIN])
        if self.many_types and key in TYPE_COUNTS:
            return 1000 + self.random.randrange(40)
        if self.many_types and key in ("GNUMPARAMBYISC", "GNUMCONSTBYISC"):
            return self.random.randrange(-1, 2)
        if key in self.many_items:
            self.many_items.discard(key)
            return 1000 + self.random.randrange(40)
        if seldom and key in ("GNUMSEG", "GNOBC", "GNOWK", "GNBFP", "GNBWK"):
            return self.random.randrange(3)
        if self.many_functions and key == "GNINQ" and self.random.random() < 0.3:
            return 300 + self.random.randrange(20)
        if self.many_functions and key in ("GNOQS", "GNBRKQ"):
            return self.random.randrange(-1, 3)
        if self.long_series and key in ("GNBFP", "GNBWK"):
            self.long_series = False
            self.longest_series = SERIES_LENGTH
            return SERIES_LENGTH
        chance = self.random.random()
        if chance < 0.1:
            return self.random.choice([0, 0, 0, -1, -5, INT_MIN])
        return 1 if chance < 0.3 else self.random.randint(1, HIGHEST[key])

    def flag(self):
        if self.many_types and self.random.random() < 0.98:
            return 0
        return self.random.choice([0, 1, 1, 1, 2, -1, INT_MIN, INT_MAX, self.random.randrange(100_000)])

    def integer(self):
        chance = self.random.random()
        if chance < 0.3:
            return self.random.choice(BOUNDARY_INTEGERS)
        if chance < 0.4:
            return self.random.randint(INT_MIN, INT_MAX)
        return self.random.randint(-200, 12_000)

    def real(self):
        pick = self.random
        family = pick.randrange(9)
        if family == 0:
            return Real(pick.choice(SPECIAL_REALS))
        if family == 1:
            return Real(pick.getrandbits(32))
        sign = pick.choice([1, 1, 1, -1])
        if family == 2:  # around a power of ten, where a carry adds a digit
            return Real(real_of(sign * 10.0 ** pick.randint(-12, 12)) + pick.randint(-60, 60))
        if family == 3:  # around a half of the last place that some column shows
            half = (pick.randint(0, 1000) + 0.5) * 10.0 ** -pick.randint(0, 7)
            return Real(real_of(sign * half) + pick.randint(-1, 1))
        if family == 4:  # a half that is exact
            return real_of(sign * pick.randint(1, 2**20) / 2.0 ** pick.randint(1, 12))
        if family == 5:  # eight and nine digits
            return real_of(sign * pick.randint(10**6, 10**9) * 10.0 ** -pick.randint(0, 9))
        if family == 6:  # around the widest number of a column
            widest = 10.0 ** pick.randint(1, 9) - 0.5 * 10.0 ** -pick.randint(1, 6)
            return Real(real_of(sign * widest) + pick.randint(-3, 3))
        return real_of(sign * pick.choice([round(pick.uniform(0, 400), pick.randint(0, 4)), pick.lognormvariate(0, 4)]))

    def series(self, cell):
        """As many entries as any count asks for, or fewer where an earlier series has left the others."""
        length = self.longest_series
        if cell.value[length - 1] is not None and self.random.random() < 0.4:
            length = self.random.randrange(length)
        values = [self.real() for _ in range(min(length, 500))]
        return (values * (length // 500 + 1))[:length]

    def text(self, cell):
        pick = self.random
        content = self.characters(pick.randrange(cell.length + 1))
        if cell.value is None:
            return content.ljust(cell.length, pick.choice([b" ", b"\0"]))
        habit = pick.randrange(9)
        if habit == 0:
            return None
        if habit <= 3:
            return content.ljust(cell.length)
        if habit == 4:
            return content + b"\0" if len(content) < cell.length else content
        if habit == 5:
            return content.ljust(cell.length, b"\0")
        if habit == 6:
            return (content + b"   \0")[: cell.length]
        if habit == 7:
            return self.characters(cell.length).replace(b" ", b"x")
        return content

    def characters(self, count):
        alphabet = self.random.choice([b"ab c", b"Reach of the r\xedo\xb3 ", bytes(range(256)), b"a \0", b"r\n\r "])
        return bytes(self.random.choices(alphabet, k=count))

    def file_name(self, cell):
        pick = self.random
        name = self.directory + pick.choice([b"/a model.inp", b"/mod\xe8le", b"/x"])
        habit = pick.randrange(7)
        if habit == 0 and cell.value[:1] != b"\0":
            return None
        if habit == 1:
            return name + b"\0"
        if habit == 2:
            return name.ljust(cell.length, b"\0")
        if habit == 3:
            return (name + b"\0" + self.characters(300)).ljust(cell.length)
        if habit == 4:
            return name + b"  \0"
        if habit == 5:  # a name that leaves no room for a NUL
            room = cell.length - len(name)
            return self.directory + b"/." * (room // 2) + name[len(self.directory) :] + b"y" * (room % 2)
        return name.ljust(cell.length)

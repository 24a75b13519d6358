#!/usr/bin/env python3
"""Imports what the plug-in writes from hosts with random models and text habits, and exports it again: the same bytes.

The hosts are those that the plug-in is compared with, held to what a model can say: one answer to one question, counts
of 0 or more, numbers that fit their fields, existing segments, types of different ISC numbers. Of others, what cannot
be given back must be refused.
"""

import itertools
import os
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[1] / "reference"))

from compare_with_plugin import Export, ctypes, follow, load, options_of
from random_models import ISC_NUMBERS, RandomHost
from reference_exporter import PlugIn

# not the boundaries: what one of their series leaves in the tables, a load may show in its columns
ROW_REALS = {"GNOQFUNC", "GXAREA", "GLENGTH", "GNORFUNC", "GINITC", "GFDISS"}
NARROW_REALS = {"GMINDT": 0.9, "GMAXDT": 9}
WIDE_ENOUGH = 9_000
SEGMENTS = {"GIBC": 1, "GIWK": 1, "GBOTSEG": 0, "GJQ": 0, "GIQ": 0, "GJRSEG": 0, "GIRSEG": 0}
INFINITE = 0x7F800000


class ModelHost(RandomHost):
    def __init__(self, seed, directory):
        super().__init__(seed, directory)
        self.many_types = False
        self.many_items &= {"GNUMSYS"}
        self.small = bool(self.many_items)  # all else of a model of 1,000 systems, which else takes its time
        self.meddles = False
        self.remembers = True
        self.isc_numbers = {key: itertools.count(self.random.randrange(-90, 900)) for key in ISC_NUMBERS}

    def filling(self, request, position, cell):
        question = request.key, position, *[c.value for c, given in zip(request.cells, request.given) if given]
        if question not in self.answers:
            self.answers[question] = self.datum(request, cell)
        return self.answers[question]

    def datum(self, request, cell):
        self.key = request.key
        if self.key in SEGMENTS:
            return self.random.randint(SEGMENTS[self.key], max(SEGMENTS[self.key], self.segments()))
        if self.key in ISC_NUMBERS:
            return next(self.isc_numbers[self.key])
        if self.key == "GFLOWFUNCDESC":  # asked for in two sections, each time over another text
            return self.characters(cell.length)
        return super().datum(request, cell)

    def segments(self):
        return self.answers.get(("GNUMSEG", 0), 0)  # an unruly host may have said it instead

    def count(self, key):
        if key in ("GNOBC", "GNOWK") and self.segments() == 0:
            return 0
        count = max(0, super().count(key))
        return min(count, 2) if self.small and key != "GNUMSYS" else count

    def flag(self):
        return self.random.choice([0, 1, 1, 1, 2, -1, 99_999])

    def integer(self):
        return self.random.choice([0, 1, -9999, 99999, self.random.randint(-999, 9999)])

    def real(self):
        while True:
            real = super().real()
            if (real & 0x7FFFFFFF) < INFINITE:
                if self.key in ROW_REALS or abs(number_of(real)) < NARROW_REALS.get(self.key, WIDE_ENOUGH):
                    return real


class UnrulyHost(RandomHost):
    """A model's host but for some answers, which are whatever comes: counts and texts that another pass does not
    confirm, numbers that no field holds, segments that are not there."""

    def __init__(self, seed, directory):
        super().__init__(seed, directory)
        self.many_types = self.many_functions = self.long_series = self.no_model = self.remembers = False
        self.many_items = set()
        self.host = ModelHost(seed, directory)
        self.host.long_series = False  # these and many systems take their time
        self.host.many_items = set()
        self.part = 10 ** self.random.uniform(-4, -1)

    def filling(self, request, position, cell):
        host = super() if self.random.random() < self.part else self.host
        return host.filling(request, position, cell)


def number_of(real):
    return ctypes.c_float.from_buffer(ctypes.c_uint32(int(real))).value


def came_back(host, velm, directory, written):
    """Whether an import accepts the file; then its export must be the same, else the refusal must say where and why."""
    first, database, second = (directory / name for name in ("first.inp", "model.db", "second.inp"))
    first.write_bytes(written)
    done = subprocess.run([velm, "import", first, database, "--quiet", "--force"], stderr=subprocess.PIPE)
    if done.returncode == 3 and re.search(rb"\n  .*first\.inp:[1-9]\d*:[1-9]\d*: .", done.stderr):
        return False
    if done.returncode != 0:
        sys.exit(f"{host}: the import ends with {done.returncode}: {done.stderr.decode(errors='replace')}")
    if subprocess.run([velm, "export", database, second, "--quiet", "--allow-overflow"]).returncode != 0:
        sys.exit(f"{host}: what was imported cannot be exported")
    if second.read_bytes() != written:
        sys.exit(f"{host}: the export after the import differs")
    return True


def main():
    options = options_of(__doc__, 10)
    build, size, accepted, start = options.build, 0, 0, time.monotonic()
    libraries, reference = load(build), PlugIn()
    with tempfile.TemporaryDirectory() as directory:
        for seed in range(options.seed, options.seed + options.count):
            for kind in (ModelHost, UnrulyHost):
                host = f"{kind.__name__} of seed {seed}"
                export = Export(reference, kind(seed, os.fsencode(directory)))
                follow(host, libraries, export)
                written = b"".join(export.records)
                given_back = came_back(host, build / "velm", Path(directory), written)
                if kind is UnrulyHost:
                    accepted += given_back
                elif not given_back:
                    sys.exit(f"{host}: the import refuses a sound file")
                size += len(written)
    seconds = time.monotonic() - start
    print(f"{options.count} files and {accepted} of {options.count} unruly ones given back, {size} bytes in {seconds:.1f} s")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Imports what the plug-in writes from hosts with random models and text habits, and exports it again: the same bytes.

The hosts are those that the plug-in is compared with, held to what a model can say: one answer to one question, counts
of 0 or more, numbers that fit their fields, existing segments, types of different ISC numbers.
"""

import argparse
import itertools
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[1] / "reference"))

from compare_with_plugin import ANSWER, Export, ctypes
from random_models import HIGHEST, ISC_NUMBERS, RandomHost
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
            return self.random.randint(SEGMENTS[self.key], self.segments())
        if self.key in ISC_NUMBERS:
            return next(self.isc_numbers[self.key])
        if self.key == "GFLOWFUNCDESC":  # asked for in two sections, each time over another text
            return self.characters(cell.length)
        return super().datum(request, cell)

    def segments(self):
        return self.answers["GNUMSEG", 0]

    def count(self, key):
        if key in ("GNOBC", "GNOWK") and self.segments() == 0:
            return 0
        return max(0, super().count(key))

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


def number_of(real):
    return ctypes.c_float.from_buffer(ctypes.c_uint32(int(real))).value


def exported(libraries, reference, host):
    """What the plug-in writes, after its comparison with the reference."""
    export = Export(reference, host)

    def answer(_, request):
        try:
            export.answer(request.contents)
        except BaseException as error:  # the plug-in cannot be called off, so the process ends here
            print(f"{type(error).__name__}: {error}", flush=True)
            os._exit(1)

    callback = ANSWER(answer)
    libraries[0].velm_host_attach(callback, None)
    libraries[1].importexport()
    libraries[0].velm_host_attach(ANSWER(), None)
    return b"".join(export.records)


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("build", type=Path, help="folder of velm and the libraries")
    arguments.add_argument("--seed", type=int, default=1, help="of the first host (default %(default)s)")
    arguments.add_argument("--count", type=int, default=20, help="hosts (default %(default)s)")
    options = arguments.parse_args()
    build, size, start = options.build.resolve(), 0, time.monotonic()
    libraries = [
        ctypes.CDLL(str(build / "libprevelmwdll.so"), mode=ctypes.RTLD_GLOBAL),
        ctypes.CDLL(str(build / "libvelm_export.so")),
    ]
    reference = PlugIn()
    with tempfile.TemporaryDirectory() as directory:
        first, database, second = (Path(directory) / name for name in ("first.inp", "model.db", "second.inp"))
        for seed in range(options.seed, options.seed + options.count):
            written = exported(libraries, reference, ModelHost(seed, os.fsencode(directory)))
            first.write_bytes(written)
            subprocess.run([build / "velm", "import", first, database, "--quiet", "--force"], check=True)
            subprocess.run([build / "velm", "export", database, second, "--quiet"], check=True)
            if second.read_bytes() != written:
                sys.exit(f"seed {seed}: the export after the import differs")
            size += len(written)
    print(f"{options.count} files, {size} bytes given back in {time.monotonic() - start:.1f} s")


if __name__ == "__main__":
    main()

"""Lets hosts that answer at random export one after the other, through the host library in a folder. Each file is
compared with the reference as it is written; the folder of the second argument receives what it must be.

Every other host answers as one that has a model, the others anything."""

import pathlib
import sys

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "reference"), str(TESTS / "input_file")]

import compare_with_plugin  # noqa: E402 found by the line above
from random_hosts_test import ModelHost  # noqa: E402
from random_models import RandomHost  # noqa: E402

exports = []


class Kept(compare_with_plugin.Export):
    def __init__(self, reference, host):
        exports.append(self)
        super().__init__(reference, host)


libraries, folder, count = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), int(sys.argv[3])
compare_with_plugin.Export = Kept
compare_with_plugin.RandomHost = lambda seed, directory: (ModelHost if seed % 2 else RandomHost)(seed, directory)
compare_with_plugin.run(libraries, 1, count)
for number, export in enumerate(exports, 1):
    (folder / f"expected-{number}.inp").write_bytes(b"".join(export.records))

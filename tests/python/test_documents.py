"""The blocks of docs/python.md run as they stand, and make of a record what the SQL of the tutorial makes of it.

VELM_GAUGES names a folder with the two gauges' records; without it, records of the same form are made up."""

import contextlib
import io
import os
import pathlib
import re
import shutil
import subprocess

import numpy
import pandas
import pytest

import velm
from conftest import rows
from velm import program

DOCS = pathlib.Path(velm.__file__).parents[2] / "docs"


def blocks(document, *languages):
    text = (DOCS / document).read_text()
    return [block for kind, block in re.findall(r"^```(\w+)\n(.*?)^```", text, re.M | re.S) if kind in languages]


def make_records(gauge):
    days = pandas.date_range("2000-01-01", "2002-12-31")
    flow = numpy.random.default_rng(int(gauge)).lognormal(4, 1, len(days)).round(2)
    with open(f"{gauge}_discharge.txt", "w") as file:
        for day, value in zip(days, flow):
            missing = day.day == 13 or day == days[-1]
            file.write(f"{gauge} {day:%Y %m %d}{-999 if missing else value:9.2f} {'M' if missing else 'A:e'}\n")
    with open(f"{gauge}_weather.txt", "w") as file:
        file.write("  44.82\n 133.00\n 587675987\nYear Mnth Day Hr dayl(s) prcp(mm/day) srad swe tmax tmin vp\n")
        for number, day in enumerate(pandas.date_range("2000-01-01", "2003-03-31")):
            file.write(f"{day:%Y %m %d} 12\t{30000 + number}.5\t0.00\t{-999 if number == 7 else 189 + number}\t0.00\t"
                       f"{number % 30}.5\t-{number % 9}.25\t202.51\n")


@pytest.mark.parametrize("gauge, total", [("01022500", 400038.00), ("01547700", 45985.70)])
def test_python_makes_of_a_gauge_what_the_tutorial_makes(gauge, total):
    if "VELM_GAUGES" in os.environ:
        for file in pathlib.Path(os.environ["VELM_GAUGES"]).glob(f"{gauge}_*.txt"):
            shutil.copy(file, ".")
    else:
        make_records(gauge)
        lines = pathlib.Path(f"{gauge}_discharge.txt").read_text().splitlines()
        total = sum(float(line[19:28]) for line in lines if not line.endswith("M"))
    names = {}
    for block in blocks("python.md", "python")[:3]:
        exec(block.replace("01022500", gauge), names)
    assert velm.open("river.inp").series("flow", 1, 1).sum() == pytest.approx(total, rel=1e-7)
    os.mkdir("sql")
    for file in ("discharge", "weather"):
        shutil.copy(f"{gauge}_{file}.txt", f"sql/{file}.txt")
    subprocess.run([program.executable(), "new", "river.db"], cwd="sql", check=True)
    subprocess.run(["sqlite3", "river.db"], cwd="sql", check=True, text=True, capture_output=True,
                   input="".join(blocks("tutorial.md", "sql")))
    for table in ("flow_path", "flow_value", "time_function_type", "time_function_value", "boundary", "boundary_value",
                  "initial_condition"):
        assert numpy.allclose(rows("river.db", table), rows("sql/river.db", table), rtol=1e-12), table
    assert velm.open("river.db").segment["volume"].tolist() == velm.open("sql/river.db").segment["volume"].tolist()


def test_the_blocks_run_in_their_order():
    make_records("01022500")
    said, names = io.StringIO(), {}
    with contextlib.redirect_stdout(said):
        for block in blocks("python.md", "python"):
            exec(block, names)
    shown = [line for block in blocks("python.md", "text") for line in block.splitlines()]
    assert said.getvalue().splitlines()[1:] == shown[1:]  # the first is of the gauge's own record
    branching = velm.open("branching.db")
    assert branching.check().query("level != 'note'").empty
    assert branching.series("flow", 1, 3).max() == pytest.approx(135 * 0.0283168, rel=1e-5)
    assert velm.open("wider.inp").segment["width"].tolist()[:4] == [20, 21, 22, 23]

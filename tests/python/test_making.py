"""What is made: values, times, units, numbers of whatever kind, and files that are whole or not there."""

import datetime
import decimal
import os
import pathlib
import subprocess

import numpy
import pandas
import pytest

import velm
from conftest import read, rows
from velm import program

START = pandas.Timestamp("2021-03-28")  # the day of 23 hours in Berlin


@pytest.fixture
def lake():
    m = velm.create("lake.db", start=START, end=10)
    m.add_segment("Lake", volume=1e6)
    m.add_system("Salt")
    return m


def test_the_example(folder):
    pandas.DataFrame({"cfs": [255.0, 272, 337]}, index=pandas.date_range("2000-01-01", periods=3, name="date")).to_csv(
        "discharge.csv")
    readme = pathlib.Path(velm.__file__).parents[1] / "README.md"
    exec(readme.read_text().split("```")[1].removeprefix("python"), {})
    with velm.open("river.inp") as m:
        assert (m.model.loc[1, "julian_end_time"], m.end, m.start) == (2, 2, pandas.Timestamp("2000-01-01"))
        assert m.series("flow", 1, 1).to_dict() == {pandas.Timestamp(f"2000-01-0{i + 1}"): value
                                                    for i, value in enumerate([255, 272, 337])}
        assert m.flow_field.loc[1, "conversion_factor"] == pytest.approx(0.0283168, rel=1e-4)
        assert m.flow_path["second_segment"].tolist() == [*range(1, 11), 0]
        assert m.segment["volume"].tolist() == pytest.approx(10 * [12474])
        assert m.initial_condition["concentration"].tolist() == 10 * [0]
        assert list(m.series("boundary", 1, 1, dates=False).items()) == [(0, 1), (2, 1)]
        # 12474 m3 stay 1530 s in the mean flow of 288 ft3/s, of which the longest step is half
        assert m.model.loc[1, ["maximum_time_step", "minimum_time_step"]].tolist() == pytest.approx([0.008, 0.0001])
    assert m.check().query("level != 'note'").empty
    assert sorted(os.listdir()) == ["discharge.csv", "river.db", "river.inp"]


def test_the_file_has_the_tables_that_velm_makes(lake):
    lake.remove("segment", 1)
    lake.close()
    subprocess.run([program.executable(), "new", "new.db"], check=True)
    assert rows("lake.db", "sqlite_master") == rows("new.db", "sqlite_master")


BERLIN = pandas.date_range("2021-03-28", periods=3, tz="Europe/Berlin")
SERIES = {  # what is given for a run from 28 March 2021 (in Berlin where aware), and the pairs that it becomes
    "number": (numpy.int64(3), [(0, 3), (10, 3)]),
    "dict of days": ({0: 1, 2.5: numpy.float32(2)}, [(0, 1), (2.5, 2)]),
    "days of numpy": (pandas.Series([1, 2], index=numpy.array([0, 2], dtype=numpy.uint8)), [(0, 1), (2, 2)]),
    "datetimes": ({datetime.datetime(2021, 3, 28, 12): decimal.Decimal("1.5")}, [(0.5, 1.5)]),
    "dates": (pandas.Series([1], index=[datetime.date(2021, 3, 30)]), [(2, 1)]),
    "numpy dates": ({numpy.datetime64("2021-03-29T06"): 1}, [(1.25, 1)]),
    "durations": (pandas.Series([1, 2], index=pandas.to_timedelta([0, 36], unit="h")), [(0, 1), (1.5, 2)]),
    "nullable": (pandas.Series([1, None, 3], index=[0, 1, 2], dtype="Int64"), [(0, 1), (2, 3)]),
    "summer time": (pandas.Series([1, 2, 3], index=BERLIN), [(0, 1), (23 / 24, 2), (47 / 24, 3)]),
    "other zone": (pandas.Series([1], index=pandas.DatetimeIndex(["2021-03-28"], tz="UTC")), [(1 / 24, 1)]),
}


@pytest.mark.parametrize("case", SERIES)
def test_series(case):
    series, pairs = SERIES[case]
    aware = getattr(getattr(series, "index", None), "tz", None) is not None
    with velm.create("lake.db", start=BERLIN[0] if aware else START.date(), end=10 if not aware else BERLIN[0] +
                     pandas.Timedelta(days=10)) as m:
        key = m.add_boundary(m.add_system("Salt"), m.add_segment(volume=1), series, missing="drop")
    assert [row[-2:] for row in rows("lake.db", "boundary_value")] == pytest.approx(pairs)
    assert {type(value) for value in rows("lake.db", "boundary_value")[0]} == {int, float}
    if aware:  # the database has the start in UTC and no zone
        assert velm.open("lake.db").start == pandas.Timestamp("2021-03-27 23:00")
        again = velm.open("lake.db", start=BERLIN[0]).series("boundary", *key)
        assert again.tolist() == series.tolist() and (again.index == series.index).all()


def test_the_first_series_with_a_unit_decides_it(lake):
    lake.add_flow({0: 100.0}, through=[0, 1, 0], unit="ft3/s")
    lake.add_flow({0: 1.0}, through=[0, 1, 0], unit="m3/s")
    lake.add_load(1, 1, 2.0)
    lake.add_load(1, 1, 2.0, unit="g/s")
    lake.set_series("flow", 1, 1, series={0: 1.0}, unit="L/s")
    assert rows("lake.db", "flow_field") == [(1, 1, pytest.approx(0.0283168, rel=1e-5))]
    assert [row[-1] for row in rows("lake.db", "flow_value")] == pytest.approx([0.0353147, 35.3147], rel=1e-5)
    assert [row[-1] for row in rows("lake.db", "load_value")] == pytest.approx([2, 2, 172.8, 172.8])
    assert lake.series("flow", 1, 2, factors=True).tolist() == pytest.approx([1])


def test_segments_before_and_after_systems(lake):
    lake.add_parameter(7, 0.5, description="Shade")
    lake.add_system("Oxygen", initial=9.0, dissolved_fraction=0.5)
    frame = pandas.DataFrame({"name": ["Bay", "Bed"], "depth": [2, 0.1], "length": 10, "width": 5, "type": [1, 3],
                              "x": [0, 3], "y": [4, 5]})
    assert lake.add_segments(frame) == [2, 3]
    assert rows("lake.db", "initial_condition")[3:] == [(2, n, 9, 0.5) for n in (1, 2, 3)]
    assert rows("lake.db", "parameter_value") == [(1, 1, n, 0.5) for n in (1, 2, 3)]
    assert lake.segment[["volume", "initial_depth", "type"]].values.tolist() == [[1e6, 0, 1], [100, 2, 1], [5, 0.1, 3]]
    lake.add_exchange(1.0, between=[(2, 3), (3, 0)])
    lake.add_exchange(1.0, between={(1, 2): (250, 1000)}, field=2)
    assert [row[3:] for row in rows("lake.db", "exchange_pair")] == [(2, 3, 5.25, 10), (3, 0, 0.5, 10),
                                                                     (1, 2, 250, 1000)]
    assert read("lake.db") == ""
    assert [lake.add_constant(11, 0.1), lake.add_constant(11, 0.2), lake.add_constant(5, 1)] == [(1, 1), (1, 2), (2, 1)]
    lake.remove("segment", 1)
    assert lake.segment_place.reset_index().values.tolist() == [[1, 0, 4], [2, 3, 5]]


def test_a_block_that_raises_leaves_nothing():
    for name in ("river.db", "other.db"):
        pathlib.Path("other.db").write_text("not ours")
        with pytest.raises((AssertionError, velm.ModelError)):
            with velm.create(name, start=START, end=5, replace=name == "other.db") as m:
                m.add_constant(2**40, 1)  # which velm cannot read
                assert name == "other.db"
        assert os.listdir() == ["other.db"] and pathlib.Path("other.db").read_text() == "not ours"


def test_a_name_taken_meanwhile_is_left_alone():
    with pytest.raises(FileExistsError, match="river.db"):
        with velm.create("river.db", start=START, end=5):
            pathlib.Path("river.db").write_text("not ours")
    assert pathlib.Path("river.db").read_text() == "not ours"


@pytest.mark.parametrize("script, message", [
    (None, "cannot be run: No such file"), ("echo velm 0.9.3", "says that it is 'velm 0.9.3'"),
    ("echo velm 2.0.0", "says that it is 'velm 2.0.0'"), ("echo hello", "says that it is 'hello'")])
def test_an_executable_that_does_not_fit(monkeypatch, folder, lake, script, message):
    if script:
        (folder / "program").write_text(f"#!/bin/sh\n{script}\n")
        (folder / "program").chmod(0o755)
    monkeypatch.setenv("VELM", str(folder / "program"))
    with pytest.raises(velm.ProgramError, match=message):
        lake.check()


def test_no_executable(monkeypatch, lake):
    monkeypatch.delenv("VELM")
    monkeypatch.setenv("PATH", "/nowhere")
    with pytest.raises(velm.ProgramError, match="no velm on the PATH"):
        lake.export("lake.inp")

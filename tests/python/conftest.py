"""A directory of its own for each test, and a small river."""

import sqlite3
import subprocess

import pandas
import pytest

import velm
from velm import program


@pytest.fixture(autouse=True)
def folder(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    return tmp_path


@pytest.fixture
def river():
    """Three segments in a row, two systems, a flow of three days, boundaries, a load, an exchange, a parameter."""
    days = pandas.date_range("2020-03-01", periods=3)
    with velm.create("river.db", start=days[0], end=days[-1]) as m:
        reach = m.add_segments(3, name="Reach", length=1000, width=[10, 20, 30], depth=0.5)
        for tag in ("DO", "SAL"):
            system = m.add_system(tag, tag=tag, initial=8.0)
            m.add_boundary(system, reach[0], 1.5)
            m.add_boundary(system, reach[2], 2.5)
        m.add_load(2, reach[1], {0: 5.0, 1.5: 6.0})
        m.add_flow(pandas.Series([2.0, 3.0, 4.0], index=days), through=[0, *reach, 0], unit="ft3/s")
        m.add_exchange(1.0, between=[*reach, 0])
        m.add_parameter(11, {1: 0.1, 2: 0.2, 3: 0.3})
        m.segment["bottom_segment"] = [0, 3, 0]
    return m


def read(path):
    """What is wrong with a database or input file, in velm's own words; empty when it can be exported."""
    return subprocess.run([program.executable(), "info", path], capture_output=True, text=True).stderr


def rows(path, table):
    connection = sqlite3.connect(path)
    found = connection.execute(f"SELECT * FROM {table}").fetchall()
    connection.close()
    return found

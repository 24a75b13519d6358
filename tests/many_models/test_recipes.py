"""The recipes of docs/many-models.md, run with the engines that they are for."""

import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import time
from concurrent.futures import ThreadPoolExecutor

import pandas
import pytest
from distributed import LocalCluster

import velm

ROOT = pathlib.Path(velm.__file__).parents[2]
RECIPES = ROOT / "examples" / "many_models"
PAGE = (ROOT / "docs/many-models.md").read_text()


@pytest.fixture(autouse=True)
def folder(tmp_path, monkeypatch):
    """The recipes beside base.db, the bundled estuary, and velm on the PATH."""
    shutil.copytree(RECIPES, tmp_path, dirs_exist_ok=True)
    monkeypatch.chdir(tmp_path)
    monkeypatch.setenv("PATH", f"{pathlib.Path(os.environ['VELM']).parent}:/usr/bin:/bin")
    subprocess.run(["velm", "example", "base.db"], check=True)
    return tmp_path


def expect_variants(names):
    """Each variant's input file differs from that of the base in the two values of its row."""
    subprocess.run(["velm", "export", "base.db", "base.inp", "--quiet"], check=True)
    table = pandas.read_csv("variants.csv", index_col="variant")
    for name in names:
        found = velm.open("base.inp").diff(f"{name[1]}/run.inp")
        wanted = {("flow fields", table.flow_scale[name[0]], 1.0), ("constants", table.rate[name[0]], 0.12)}
        assert {float(new) for new in found["new"]} == {new for _, new, old in wanted if new != old}


def printed(beginning):
    """The words of the page's command that begins so."""
    return re.search(f"(?:^|`)({beginning}[^`\n]*)", PAGE, re.M)[1].split()


def test_dask():
    variants = pandas.read_csv("variants.csv")
    variants.loc[len(variants)] = [7, float("nan"), 0.1]  # one that fails
    variants.astype({"variant": int}).to_csv("variants.csv", index=False)
    with LocalCluster(n_workers=1, host="127.0.0.1", dashboard_address=None) as cluster:
        for command in printed("python3 dask.*out$"), printed("python3 dask.*out tcp"):
            command[-1] = command[-1].replace("tcp://node:8786", cluster.scheduler_address)
            subprocess.run(command, check=True)
            table = pandas.read_csv("out/result.csv", index_col="variant")
            expect_variants([(n, f"out/{n}") for n in range(1, 7)])
            assert table["failure"].notna().tolist() == 6 * [False] + [True] and "scale_factor" in table["failure"][7]
            assert table["bytes"].notna().sum() == 6
            shutil.rmtree("out")


def test_snakemake_goes_on_after_a_kill():
    command = [*printed("snakemake --cores"), "--nolock", "--quiet"]
    pandas.DataFrame({"variant": range(1, 13), "flow_scale": 1.5, "rate": 0.2}).to_csv("variants.csv", index=False)
    first = subprocess.Popen(command, start_new_session=True)
    while len(list(pathlib.Path("runs").glob("*/findings.json"))) < 2 and first.poll() is None:
        time.sleep(0.05)
    os.killpg(first.pid, signal.SIGKILL)
    first.wait()
    time.sleep(1)
    done = {path: path.stat().st_mtime_ns for path in pathlib.Path("runs").glob("*/*") if path.stat().st_size}
    assert len(done) < 36, "killed too late to show anything"
    said = subprocess.run(command[:-1], check=True, capture_output=True, text=True).stderr
    again = [path for path, changed in done.items() if path.stat().st_mtime_ns != changed]
    assert len(again) <= 2, said  # what was being written when the kill came
    assert len(list(pathlib.Path("runs").glob("*/*"))) == 36
    assert all(json.loads(path.read_text())["files"] for path in pathlib.Path("runs").glob("*/findings.json"))
    expect_variants([(n, f"runs/{n}") for n in (1, 12)])
    assert "Nothing to be done" in subprocess.run(command[:-1], check=True, capture_output=True, text=True).stderr


def test_slurm_by_hand():
    subprocess.run(printed("sh slurm"), check=True)
    subprocess.run(["sh", "slurm_array.sh"], check=True, env={**os.environ, "SLURM_ARRAY_TASK_ID": "5"})
    expect_variants([(3, "runs/3"), (5, "runs/5")])
    late = subprocess.run(["sh", "slurm_array.sh", "7"], capture_output=True, text=True)
    assert late.returncode != 0 and "variants.csv has no row 7" in late.stderr and not os.path.exists("runs/7")


ENGINE = """#!/usr/bin/python3
import math, sys, velm
m = velm.open(sys.argv[1])
rate, flow, left = m.constant["value"].iloc[0], m.series("flow", 1, 1).mean(), 10.0
for number, volume in (m.segment["length"] * m.segment["width"] * m.segment["initial_depth"]).items():
    left *= math.exp(-rate * volume / flow / 86400)
    if number in (5, 10):
        print(f"segment {number} {left:.9f}")
"""


class Estimator:
    """What an estimator does with its control, template and instruction files, each run in a directory of its own."""

    def __init__(self, control):
        parts = dict(re.findall(r"^\* ([^\n]*)\n(.*?)(?=^\*|\Z)", pathlib.Path(control).read_text(), re.M | re.S))
        self.start = {line.split()[0]: float(line.split()[3]) for line in parts["parameter data"].splitlines()}
        self.observed = {line.split()[0]: float(line.split()[1]) for line in parts["observation data"].splitlines()}
        self.command = parts["model command line"].strip()
        (self.template, self.target), (self.instructions, self.output) = (
            line.split() for line in parts["model input/output"].splitlines())

    def run(self, number, parameters):
        here = pathlib.Path(f"worker{number}")
        here.mkdir(exist_ok=True)
        shutil.copy("run_model.sh", here)
        mark, text = pathlib.Path(self.template).read_text().split("\n", 1)
        mark = mark.split()[1]
        filled = re.sub(f"{mark} *(\\w+) *{mark}", lambda place: f"{parameters[place[1]]:{len(place[0])}.9E}", text)
        (here / self.target).write_text(filled)
        if subprocess.run(self.command, shell=True, cwd=here, capture_output=True).returncode != 0:
            return None
        lines, values = iter((here / self.output).read_text().splitlines()), {}
        for line in pathlib.Path(self.instructions).read_text().splitlines()[1:]:
            marker, name = re.fullmatch(r"@(.*)@\s+!(\w+)!", line).groups()
            found = next(line for line in lines if marker in line)
            values[name] = float(found.split(marker)[1].split()[0])
        return values

    def run_all(self, trials):
        with ThreadPoolExecutor(4) as pool:
            return list(pool.map(self.run, range(len(trials)), trials))


def test_calibration(folder, monkeypatch):
    os.chdir("calibration")
    days = pandas.date_range("2020-01-01", periods=30)
    with velm.create("base.db", start=days[0], end=days[-1]) as m:
        reach = m.add_segments(10, name="Reach", length=2000, width=20, depth=1)
        m.add_flow(pandas.Series(2.0, index=days), through=[0, *reach, 0])
        m.add_system("BOD", tag="BOD")
        m.add_constant(11, 0.1)
    before = pathlib.Path("base.db").read_bytes()
    pathlib.Path("engine").write_text(ENGINE)
    os.chmod("engine", 0o755)
    monkeypatch.setenv("ENGINE", os.path.abspath("engine"))
    monkeypatch.setenv("BASE", os.path.abspath("base.db"))
    estimator = Estimator("river.pst")
    truth = {"kd": 0.3, "wide": 1.7}
    estimator.observed = estimator.run(0, truth)
    trials = [{"kd": 0.3, "wide": wide} for wide in (0.4, 0.8, 1.2, 1e39, 1.6, 2.0, 2.4, 2.8)]
    results = estimator.run_all(trials)
    assert [result is None for result in results] == [trial["wide"] > 1e38 for trial in trials]  # that alone fails
    assert not os.path.exists("worker3/observed.txt") and not os.path.exists("worker3/run.inp")
    os.symlink("../base.db", "worker0/base.db")
    said = pathlib.Path("worker0/observed.txt").read_text()
    block = re.search("^rm -f observed.*?(?=```)", PAGE, re.M | re.S)[0]
    subprocess.run(["sh", "-ec", f"PATH=..:$PATH\n{block}"], cwd="worker0", check=True)
    assert pathlib.Path("worker0/observed.txt").read_text() == said
    low, high = 1.2, 2.4  # the outlet falls with the width: eight runs at once narrow it to a seventh
    for _ in range(6):
        widths = [low + (high - low) * i / 7 for i in range(8)]
        results = estimator.run_all([{"kd": 0.3, "wide": width} for width in widths])
        above = max(i for i in range(8) if results[i]["outlet"] >= estimator.observed["outlet"])
        low, high = widths[above], widths[min(above + 1, 7)]
    assert low == pytest.approx(1.7, abs=1e-3) and pathlib.Path("base.db").read_bytes() == before

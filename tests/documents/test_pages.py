"""The commands that the documents and the commands' own help print run as they stand, on files such as the page names.

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

ROOT = pathlib.Path(velm.__file__).parents[2]
# what is there when a page is opened; the rest its own commands make
GIVEN = {
    "CONTRIBUTING.md": "tests",
    "docs/findings.md": "river.db river.inp",
    "docs/info.md": "river.db estuary.db river.inp",
    "docs/report.md": "estuary.db estuary.inp before.db after.db",
    "docs/session-format.md": "river.db desktop.jsonl libotherhost.so",
}
HELPS = {
    "check": "estuary.db estuary.inp other.inp", "docs": "",
    "diff": "before.db after.db estuary.db estuary.inp old.inp new.inp",
    "example": "", "explain": "", "export": "estuary.db changes.sql", "help": "",
    "import": "estuary.inp edited.inp", "info": "estuary.db estuary.inp", "new": "",
    "record": "libprevelmwdll_host.so", "replay": "estuary.jsonl desktop.jsonl",
    "report": "estuary.db estuary.inp before.db after.db", "schema": "", "session-to-model": "desktop.jsonl",
}
ELSEWHERE = [  # what other tests run, or these cannot
    r"(PATH=|\./dev |\.ci/run).*",  # run these tests
    r"velm replay .* --export 2 .*",  # of a host's second export: session.whole
]


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          **options)


@pytest.fixture(autouse=True)
def folder(tmp_path, monkeypatch):
    programs = tmp_path / "programs"
    programs.mkdir()
    (programs / "xdg-open").write_text("#!/bin/sh\n")
    (programs / "xdg-open").chmod(0o755)
    build = pathlib.Path(os.environ["VELM"]).parent
    monkeypatch.setenv("PATH", f"{build}:{programs}:{os.environ['PATH']}")
    monkeypatch.setenv("GIVEN", str(tmp_path / "given"))
    monkeypatch.setenv("HOST_MODEL", str(tmp_path / "given.db"))
    monkeypatch.setenv("HOST_OUTPUT", str(tmp_path / "host.inp"))
    monkeypatch.chdir(tmp_path)
    run("velm", "example", "given.db", check=True)
    run("velm", "export", "given.db", "given.inp", "--record", "given.jsonl", check=True)
    pathlib.Path("given.sql").write_text("UPDATE constant SET value = 1;\n")
    shutil.copy(os.environ["MODEL_HOST"], "given.so")
    (tmp_path / "page/build").mkdir(parents=True)
    (tmp_path / "page/build/release").symlink_to(build)
    monkeypatch.chdir("page")


def give(names):
    for name in names.split():
        if name == "tests":
            os.symlink(ROOT / name, name)
        else:
            shutil.copy(os.environ["GIVEN"] + pathlib.Path(name).suffix, name)


def same_shape(line):
    return re.sub(r"[-+]?\d[\d,.e+-]*", "0", " ".join(line.replace("\0", " ").split()))


class Page:
    """Runs a page's blocks in their order, and keeps what they print."""

    def __init__(self, text, names=None):
        self.said, self.names, self.shown = [], {} if names is None else names, []
        self.session, self.typed = "", ""  # the database in which sqlite3 runs, and what it is to do
        for language, block in re.findall(r"^```(\w+)\n(.*?)^```", text, re.M | re.S):
            block = re.sub("|".join(f"^{pattern}$" for pattern in ELSEWHERE), "", block, flags=re.M)
            getattr(self, language, lambda _: None)(block)
        said = {same_shape(line) for line in self.said or self.shown}
        assert [line for line in self.shown if same_shape(line) not in said] == []

    def expect(self, done):
        assert done.returncode == 0, done.stdout
        self.said += done.stdout.splitlines()

    def sh(self, block):
        if session := re.search(r"^sqlite3 (\S+)\n\Z", block, re.M):  # and the sql that follows is typed into it
            block, self.session = block[:session.start()], session[1]
        block = re.sub(r"^velm (check|diff) [^#\n]*", r"\g<0> || [ $? = 1 ]", block, flags=re.M)  # 1 is for findings
        self.expect(run("bash", "-euo", "pipefail", "-c", block))

    def sql(self, block):
        self.typed += block
        if not self.session or ".quit" in block:
            self.expect(run("sqlite3", "-bail", self.session or "estuary.db", input=self.typed))
            self.typed = ""

    def python(self, block):
        with contextlib.redirect_stdout(io.StringIO()) as said:
            exec(block, self.names)
        self.said += said.getvalue().splitlines()

    def r(self, block):
        if shutil.which("Rscript"):  # ./dev many installs it
            self.expect(run("Rscript", "-e", block))

    def text(self, block):
        self.shown += block.splitlines()


@pytest.mark.parametrize("page", sorted(str(path.relative_to(ROOT)) for place in ("*.md", "docs/*.md")
                                        for path in ROOT.glob(place)))
def test_page(page):
    if page in ("docs/tutorial.md", "docs/python.md", "docs/many-models.md"):
        pytest.skip("below, and in tests/many_models")
    give(GIVEN.get(page, ""))
    Page((ROOT / page).read_text())


def test_help():
    for command in re.findall(r"^  ([a-z-]+) {2,}", run("velm", "help").stdout.split("Subcommands:")[1], re.M):
        os.mkdir(command)
        with contextlib.chdir(command):
            os.symlink("../build", "build")
            give(HELPS.get(command, "estuary.db estuary.inp river.db river.inp"))
            examples = re.search(r"^Examples?:\n((  .*\n)+)", run("velm", "help", command).stdout, re.M)[1]
            Page(f"```sh\n{examples}```\n")


def test_rooms_include_only_what_stands_below_them():
    text = (ROOT / "CONTRIBUTING.md").read_text()
    rows = re.search(r"## The rooms.*?```\n(.*?)```", text, re.S)[1].splitlines()
    height = {room: -row for row, rooms in enumerate(rows) for room in rooms.split()}
    for room in height:
        for source in [*(ROOT / room).rglob("*.cpp"), *(ROOT / room).rglob("*.h*")]:
            for other in re.findall(r'^#include "(\w+)/', source.read_text(), re.M):
                assert other == room or height[other] < height[room], f"{source} includes {other}"


def make_records(gauge):
    if "VELM_GAUGES" in os.environ:
        for file in pathlib.Path(os.environ["VELM_GAUGES"]).glob(f"{gauge}_*.txt"):
            shutil.copy(file, ".")
        return
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


@pytest.mark.parametrize("gauge", ["01022500", "01547700"])
def test_sql_and_python_make_the_same_of_a_gauge(gauge):
    make_records(gauge)
    lines = pathlib.Path(f"{gauge}_discharge.txt").read_text().splitlines()
    total = sum(float(line[19:28]) for line in lines if not line.endswith("M"))
    tutorial = (ROOT / "docs/tutorial.md").read_text().replace("01022500", gauge)
    Page(re.sub(r"^```text\n(0\d+|  44).*?```", "", tutorial, flags=re.M | re.S))  # not those of the records
    os.rename("river.db", "sql.db")
    python = (ROOT / "docs/python.md").read_text().replace("01022500", gauge)
    tail = python.index("## A branching river")
    names = Page(python[:tail]).names
    made, by_sql = velm.open("river.db"), velm.open("sql.db")
    assert velm.open("river.inp").series("flow", 1, 1).sum() == pytest.approx(total, rel=1e-7)
    for table in ("flow_path", "flow_value", "time_function_type", "time_function_value", "boundary", "boundary_value",
                  "initial_condition"):
        assert numpy.allclose(*(getattr(m, table).reset_index() for m in (made, by_sql)), rtol=1e-12), table
    assert made.segment["volume"].tolist() == by_sql.segment["volume"].tolist()
    Page(python[tail:], names)
    branching = velm.open("branching.db")
    assert branching.check().query("level != 'note'").empty
    assert branching.series("flow", 1, 3).max() == pytest.approx(135 * 0.0283168, rel=1e-5)
    assert velm.open("wider.inp").segment["width"].tolist()[:4] == [20, 21, 22, 23]

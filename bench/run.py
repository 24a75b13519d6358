"""Runs all measurements of bench/ and prints them as one table; the driver behind ./dev bench.

A figure is a Row: what velm takes in each round, what its peer takes in the same round, and the goal of their ratio.
Adding one is an entry in COMMANDS, or a line of JSON from a program and a Row made of it.
"""

import argparse
import dataclasses
import json
import os
import platform
import shutil
import statistics
import subprocess
import tempfile
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
BUILD = HERE.parent / "build" / "bench"
MEASURE, SCAN = BUILD / "bench" / "measure", BUILD / "bench" / "scan"
PLUG_IN, REQUESTS_ONLY, VELM = BUILD / "libvelm_export.so", BUILD / "bench" / "librequests_only.so", BUILD / "velm"
TABLE_BEGIN, TABLE_END = "<!-- last table -->\n", "<!-- end of the last table -->\n"


@dataclasses.dataclass
class Row:
    what: str
    against: str  # the peer's name; of "MB" and "bytes" the peer's figures are an amount, not seconds
    velm: list[float]  # a figure for each round
    peer: list[float]
    at_least: float | None = None  # of peer / velm: so many times as fast, so many MB/s; 0 is no goal
    at_most: float | None = None  # of velm / peer

    def cells(self):
        """The row of the table: the median ratio with its least and greatest, the goal, and whether it is met."""
        faster = self.at_least is not None
        ratios = sorted(p / v if faster else v / p for v, p in zip(self.velm, self.peer))
        middle, goal = statistics.median(ratios), self.at_least if faster else self.at_most
        met = "" if not goal else "yes" if (middle >= goal if faster else middle <= goal) else "no"
        goal_text = "" if not goal else f"{'at least' if faster else 'at most'} {goal:g}"
        spread = f"{ratios[0]:.3g} to {ratios[-1]:.3g}"
        return [self.what, in_units(statistics.median(self.velm), self.against), self.against,
                f"{middle:.3g}", spread, goal_text, met]  # fmt: skip


def in_units(figure, against):
    if against == "bytes":
        return f"{figure / 2**20:.0f} MiB"
    for unit, size in (("s", 1), ("ms", 1e-3), ("us", 1e-6)):
        if figure >= size:
            return f"{figure / size:.3g} {unit}"
    return f"{figure / 1e-9:.3g} ns"


@dataclasses.dataclass
class Command:
    """A whole process of velm on a model, which stands in a database and in an input file, against another one."""

    what: str
    words: list
    at_most: float | None = None  # times the bare scan of the database
    megabytes_a_second: float | None = None  # of the input file, instead
    memory: float | None = None  # at most so many times the model's reals, and 50 MB


# {model} and {input} are there; {output} is removed before each run
COMMANDS = [
    Command("velm export", [VELM, "export", "{model}", "{output}"], at_most=0.8, memory=1.5),
    Command("velm check, database", [VELM, "check", "--fail-on=never", "{model}"], at_most=1.3, memory=1.5),
    Command("velm diff, database and its input file", [VELM, "diff", "{model}", "{input}"], at_most=1.3),
    Command("velm check, input file", [VELM, "check", "--fail-on=never", "{input}"], megabytes_a_second=400, memory=1.5),
    Command("velm import", [VELM, "import", "--quiet", "{input}", "{output}"], megabytes_a_second=60),
    Command("velm info, database", [VELM, "info", "{model}"]),
]
SIZES = {"segments": [1_600_000, 9_600_000], "boundaries": [1_600_000, 9_600_000], "flows": [1_600_000, 9_600_000]}
EXPORTS = {"segments": (12, 2), "boundaries": (25, 3.5), "flows": (12, 4)}  # times Fortran, times the floor


def lines_of(*command):
    """What a program of ours prints, a JSON object a line."""
    # as much buffer as our own export has; the library's own is smaller
    environment = os.environ | {"GFORTRAN_FORMATTED_BUFFER_SIZE": str(256 * 1024)}
    output = subprocess.run([str(part) for part in command], check=True, stdout=subprocess.PIPE, env=environment).stdout
    return [json.loads(line) for line in output.splitlines()]


def by_method(lines):
    """{what: {method: [seconds of each round]}}, in the order of the lines."""
    rows = {}
    for line in lines:
        rows.setdefault(line["what"], {}).setdefault(line["method"], []).append(line["seconds"])
    return rows


def reals(files, rounds):
    rows = []
    for what, seconds in by_method(lines_of(MEASURE, "reals", rounds)).items():
        goals = {"Fortran": 30, "snprintf": 20, "to_chars": 5} if what.endswith("model values") else {}
        rows += [Row(what, peer, seconds["velm"], seconds[peer], at_least=goals.get(peer, 0))
                 for peer in ("Fortran", "snprintf", "to_chars")]  # fmt: skip
    return rows


def exports(files, rounds):
    rows = []
    for workload, (fortran, floor) in EXPORTS.items():
        lines = lines_of(MEASURE, "exports", PLUG_IN, REQUESTS_ONLY, workload, files / "export.inp", rounds)
        seconds = by_method(lines)[workload]
        what = f"whole export, {workload}"
        rows.append(Row(what, "Fortran", seconds["velm"], seconds["Fortran"], at_least=fortran))
        lowest = [requests + written for requests, written in zip(seconds["requests"], seconds["bytes"])]
        rows.append(Row(what, "floor", seconds["velm"], lowest, at_most=floor))
    return rows


def run_child(command):
    """Seconds and peak memory of a whole process."""
    start = time.perf_counter()
    child = subprocess.Popen([str(part) for part in command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        raise SystemExit(f"bench: {' '.join(map(str, command))} ended with {child.returncode}")
    return time.perf_counter() - start, usage.ru_maxrss * 1024


def commands(files, rounds):
    rows = []
    for workload, sizes in SIZES.items():
        for size in sizes:
            rows += commands_on(workload, size, files, rounds)
    return rows


def commands_on(workload, size, files, rounds):
    paths = {"model": files / "model.db", "input": files / "model.inp", "output": files / "output"}
    floats = 4 * lines_of(MEASURE, "fill", workload, size, paths["model"])[0]["reals"]
    run_child([VELM, "export", paths["model"], paths["input"]])
    megabytes = paths["input"].stat().st_size / 1e6
    rows = []
    for command in COMMANDS:
        words = [str(word).format(**paths) for word in command.words]
        ours, scans = [], []
        for _ in range(rounds):
            paths["output"].unlink(missing_ok=True)
            ours.append(run_child(words))
            if command.megabytes_a_second is None:
                scans.append(run_child([SCAN, paths["model"]])[0])
        what = f"{command.what}: {workload}, {size / 1e6:g} M rows"
        seconds = [run[0] for run in ours]
        if command.megabytes_a_second is None:
            rows.append(Row(what, "bare scan", seconds, scans, at_most=command.at_most))
        else:
            rows.append(Row(what, "MB", seconds, [megabytes] * rounds, at_least=command.megabytes_a_second))
        if command.memory is not None:
            room = command.memory * floats + 50e6
            rows.append(Row(f"memory of {what}", "bytes", [run[1] for run in ours], [room] * rounds, at_most=1))
    water = by_method(lines_of(MEASURE, "water", paths["model"], rounds))["water balance"]
    rows.append(Row(f"water balance: {workload}, {size / 1e6:g} M rows", "loading", water["velm"], water["loading"],
                    at_most=0.25))  # fmt: skip
    for path in paths.values():
        path.unlink(missing_ok=True)
    return rows


PARTS = {"reals": reals, "exports": exports, "commands": commands}


def table(rows):
    """Markdown; `against` stands last of the figures' names."""
    lines = [["what", "velm", "against", "ratio", "spread", "goal", "met"]] + [row.cells() for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(len(lines[0]))]
    texts = ["| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |" for line in lines]
    return "\n".join([texts[0], "|" + "|".join("-" * (width + 2) for width in widths) + "|", *texts[1:]]) + "\n"


def machine():
    models = [line.split(":", 1)[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")]
    compiler = subprocess.run(["gfortran", "-dumpfullversion"], check=True, capture_output=True, text=True).stdout
    return f"{len(models)} x {models[0]}, Linux {platform.release()}, GCC {compiler.strip()}"


def main():
    parser = argparse.ArgumentParser(prog="./dev bench", description="Measure velm against its peers.")
    parser.add_argument("part", nargs="*", choices=[*PARTS, []], help="measure only these; all when none is given")
    parser.add_argument("--rounds", type=int, default=5, help="how often velm and peer take turns; 5 when not given")
    parser.add_argument("--files", default=BUILD, help="directory for models and outputs; build/bench when not given")
    parser.add_argument("--write-readme", action="store_true", help="put the table into bench/README.md")
    arguments = parser.parse_args()
    files = Path(tempfile.mkdtemp(prefix="files-", dir=arguments.files))
    rows = []
    try:
        for name in arguments.part or PARTS:
            print(f"bench: {name}", flush=True)
            rows += PARTS[name](files, arguments.rounds)
    finally:
        shutil.rmtree(files)
    text = f"{time.strftime('%Y-%m-%d')} on {machine()}.\n\n{table(rows)}"
    print("\n" + text)
    if arguments.write_readme:
        readme = HERE / "README.md"
        before, rest = readme.read_text().split(TABLE_BEGIN)
        readme.write_text(before + TABLE_BEGIN + "\n" + text + "\n" + TABLE_END + rest.split(TABLE_END)[1])


if __name__ == "__main__":
    main()

"""Runs all measurements of bench/ and prints them as tables; the driver behind ./dev bench."""

import argparse
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
PROGRAMS = BUILD / "bench"
PLUG_IN = BUILD / "libvelm_export.so"
REQUESTS_ONLY = PROGRAMS / "librequests_only.so"
VELM = BUILD / "velm"
TABLE_BEGIN, TABLE_END = "<!-- last table -->\n", "<!-- end of the last table -->\n"

WORKLOADS = {"segments": "a", "boundaries": "b", "flows": "c"}
ROUNDS = 3
GROWTH = {1: 200, 10: 50, 100: 9, 1000: 3}  # megabytes: exports of which the median counts
ESTUARY_EXPORTS = 1000


def run_json_lines(*command):
    """What a program of ours prints, a JSON object a line."""
    # as much buffer as our own export has; the library's own is smaller
    environment = os.environ | {"GFORTRAN_FORMATTED_BUFFER_SIZE": str(256 * 1024)}
    output = subprocess.run([str(part) for part in command], check=True, stdout=subprocess.PIPE, env=environment).stdout
    return [json.loads(line) for line in output.splitlines()]


def progress(what):
    print(f"bench: {what}", flush=True)


# --- measuring: each returns plain data for results.json


def rendering(files):
    """Nanoseconds a value or record: {"F15.5/model/velm": 10.5, ...}, the medians of interleaved repetitions."""
    progress("fields and records")
    report = files / "rendering.json"
    command = [PROGRAMS / "bench_rendering", files / "estuary.db", "--benchmark_repetitions=5"]
    command += ["--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.03"]
    command += ["--benchmark_display_aggregates_only=true", f"--benchmark_out={report}"]
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    measured = [m for m in json.loads(report.read_text())["benchmarks"] if m.get("aggregate_name") == "median"]
    measured.sort(key=lambda m: m["family_index"])  # the order of registration
    return {m["run_name"]: 1e9 / m["items_per_second"] for m in measured}


def whole_exports(places):
    """For each workload and place: seconds by method, and the medians of the rounds' own ratios."""
    measured = []
    for workload in WORKLOADS:
        for place, directory in places.items():
            progress(f"whole exports: {workload}, {place}")
            output = directory / "export.inp"
            lines = run_json_lines(PROGRAMS / "bench_exports", PLUG_IN, REQUESTS_ONLY, workload, output, ROUNDS)
            measured.append({"workload": workload, "place": place} | summary_of_rounds(lines))
    return measured


def summary_of_rounds(lines):
    size = {line["method"]: line["bytes"] for line in lines}
    # Fortran ends its lines with one character, and puts free-form pairs in wider columns
    for peer in ("Fortran", "C"):
        if not 0.9 < size[peer] / size["velm"] < 1.4:
            raise SystemExit(f"bench: {peer} writes {size[peer]} bytes where velm writes {size['velm']}")
    rounds = [
        {line["method"]: line["seconds"] for line in lines if line["round"] == number} for number in range(ROUNDS)
    ]
    return {
        "bytes": size["velm"],
        "seconds": {method: statistics.median(r[method] for r in rounds) for method in size},
        "Fortran / velm": statistics.median(r["Fortran"] / r["velm"] for r in rounds),
        "C / velm": statistics.median(r["C"] / r["velm"] for r in rounds),
        "velm / floor": statistics.median(r["velm"] / (r["blocks"] + r["requests"]) for r in rounds),
    }


def estuary(files, places):
    """The bundled estuary again and again in one process, through the headless host."""
    measured = []
    for place, directory in places.items():
        progress(f"{ESTUARY_EXPORTS} exports of the estuary, {place}")
        lines = [
            run_json_lines(PROGRAMS / "bench_database", "export", PLUG_IN, REQUESTS_ONLY, files / "estuary.db",
                           directory / "export.inp", ESTUARY_EXPORTS)[0] for _ in range(ROUNDS)
        ]  # fmt: skip
        measured.append({
            "place": place,
            "bytes": lines[0]["bytes"],
            "seconds": statistics.median(line["velm"] / line["exports"] for line in lines),
            "velm / floor": statistics.median(line["velm"] / (line["requests"] + line["blocks"]) for line in lines),
        })  # fmt: skip
    return measured


def stored_models(files):
    """velm export from databases of (a) and (b), end to end, and its parts in a process of their own."""
    measured = []
    for workload in ("segments", "boundaries"):
        progress(f"velm export from a database: {workload}")
        database, output = files / "model.db", files / "export.inp"
        filled = run_json_lines(PROGRAMS / "bench_database", "fill", workload, database)[0]
        runs = [timed_child(VELM, "export", database, output) for _ in range(ROUNDS)]
        parts = run_json_lines(PROGRAMS / "bench_database", "export", PLUG_IN, REQUESTS_ONLY, database, output, 1)[0]
        seconds = statistics.median(r["seconds"] for r in runs)
        measured.append({
            "workload": workload,
            "rows": filled["rows"],
            "data": filled["data"],
            "seconds": seconds,
            "loading": parts["loading"],
            "exporting": parts["velm"],
            "rows a second": filled["rows"] / seconds,
            "peak memory": max(r["peak memory"] for r in runs),
        })  # fmt: skip
        database.unlink()
    return measured


def timed_child(*command):
    start = time.perf_counter()
    child = subprocess.Popen([str(part) for part in command], stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        raise SystemExit(f"bench: {command[0]} ended with {child.returncode}")
    return {"seconds": time.perf_counter() - start, "peak memory": usage.ru_maxrss * 1024}


def recording(places):
    """What recording adds: for each workload and place the medians of the rounds' own ratios."""
    measured = []
    for workload in WORKLOADS:
        for place, directory in places.items():
            progress(f"recorded exports: {workload}, {place}")
            lines = run_json_lines(PROGRAMS / "bench_recording", PLUG_IN, workload, directory / "export.inp", ROUNDS)
            measured.append({
                "workload": workload,
                "place": place,
                "session bytes": lines[0]["session bytes"],
                "plain cpu": statistics.median(line["plain cpu"] for line in lines),
                "recorded cpu": statistics.median(line["recorded cpu"] for line in lines),
                "cpu": statistics.median(line["recorded cpu"] / line["plain cpu"] for line in lines),
                "wall": statistics.median(line["recorded wall"] / line["plain wall"] for line in lines),
            })  # fmt: skip
    return measured


def growth(places):
    measured = []
    for place, directory in places.items():
        progress(f"growth from {min(GROWTH)} to {max(GROWTH)} MB, {place}")
        for megabytes, repeats in GROWTH.items():
            line = run_json_lines(PROGRAMS / "bench_growth", PLUG_IN, megabytes, directory / "export.inp", repeats)[0]
            measured.append({
                "place": place,
                "megabytes": megabytes,
                "ns a byte": line["seconds"] / line["bytes"] * 1e9,
                "memory beyond tables": line["grown"] - line["tables_and_buffer"],
            })  # fmt: skip
    return measured


# --- tables


def table(*rows):
    """A Markdown table; the first row is its head, numbers are aligned to the right."""
    texts = [[f"{cell:.3g}" if isinstance(cell, float) else str(cell) for cell in row] for row in rows]
    widths = [max(len(row[column]) for row in texts) for column in range(len(rows[0]))]
    right = [any(not isinstance(cell, str) for cell in column[1:]) for column in zip(*rows)]
    lines = [
        "| " + " | ".join(t.rjust(w) if r else t.ljust(w) for t, w, r in zip(row, widths, right)) + " |"
        for row in texts
    ]
    lines.insert(1, "|" + "|".join("-" * (w + 1) + (":" if r else "-") for w, r in zip(widths, right)) + "|")
    return "\n".join(lines) + "\n"


def rendering_tables(measured):
    ours = [name.rsplit("/", 1)[0] for name in measured if name.endswith("/velm")]

    def rows(names, peers):
        for name in names:
            velm = measured[name + "/velm"]
            times = (measured.get(f"{name}/{peer}") for peer in peers)
            yield [*name.split("/"), velm, *(round(t / velm, 1) if t else "" for t in times)]

    records = [name for name in ours if name.split("/")[0] in ("segment row", "pair", "labelled count", "free-form pair")]
    fields = [name for name in ours if name not in records]
    return (
        "Fields: nanoseconds of velm, and how many times as long the others take.\n\n"
        + table(["field", "values", "velm ns", "snprintf", "to_chars", "fmt", "Fortran"],
                *rows(fields, ["snprintf", "to_chars", "fmt", "Fortran"]))
        + "\nRecords: the same.\n\n"
        + table(["record", "values", "velm ns", "snprintf", "Fortran"], *rows(records, ["snprintf", "Fortran"]))
    )  # fmt: skip


def export_tables(exports, estuaries):
    def row(e):
        s = e["seconds"]
        label = f"({WORKLOADS[e['workload']]}) {e['workload']}"
        times = [s["velm"], s["blocks"], s["requests"]]
        return [label, e["place"], e["bytes"] / 1e6, *times, e["Fortran / velm"], e["C / velm"], e["velm / floor"]]

    return (
        "Whole exports: seconds of velm, of writing its bytes and of making its requests; how many times as long\n"
        "Fortran and C take; and how many times as long velm takes as its floor, bytes and requests together.\n\n"
        + table(["workload", "on", "MB", "velm s", "bytes s", "requests s", "Fortran", "C", "velm / floor"],
                *map(row, exports))
        + "\nThe bundled estuary, (d), an export in one process after the other.\n\n"
        + table(["on", "KB", "velm ms", "velm / floor"],
                *([e["place"], e["bytes"] / 1e3, e["seconds"] * 1e3, e["velm / floor"]] for e in estuaries))
    )  # fmt: skip


def stored_table(stored):
    def row(s):
        mebibyte = 2**20
        label = f"({WORKLOADS[s['workload']]}) {s['workload']}"
        memory = [s["peak memory"] / mebibyte, s["peak memory"] / s["data"]]
        return [label, s["rows"], s["seconds"], s["loading"], s["exporting"], s["rows a second"] / 1e6, *memory]

    head = ["workload", "rows", "seconds", "loading", "exporting", "M rows/s", "peak MiB", "peak / data"]
    return "velm export from a database.\n\n" + table(head, *map(row, stored))


def recording_table(recorded):
    def row(r):
        label = f"({WORKLOADS[r['workload']]}) {r['workload']}"
        return [label, r["place"], r["session bytes"] / 1e6, r["plain cpu"], r["recorded cpu"], r["cpu"], r["wall"]]

    head = ["workload", "on", "session MB", "plain s", "recorded s", "recorded / plain", "by the clock"]
    return (
        "Recorded exports: seconds of the processor without and with a recording, and their ratio, also by the clock.\n\n"
        + table(head, *map(row, recorded))
    )  # fmt: skip


def growth_table(grown):
    rows = ([g["place"], g["megabytes"], g["ns a byte"], g["memory beyond tables"] // 1024] for g in grown)
    return "Growth.\n\n" + table(["on", "MB", "ns a byte", "KiB beyond tables and buffer"], *rows)


def targets_table(results):
    rendered = results["rendering"]

    def least(names, peer):
        return min(rendered[f"{n}/model/{peer}"] / rendered[f"{n}/model/velm"] for n in names)

    fixed, free = ["F15.5", "F10.4", "F14.6", "F20.4", "F15.2"], ["free with a point", "free with an exponent"]
    rows = []

    def at_least(what, target, reached):
        rows.append([what, f"at least {target}", f"{reached:.3g}", "yes" if reached >= target else "no"])

    def at_most(what, target, reached, unit=""):
        rows.append([what, f"at most {target}{unit}", f"{reached:.3g}{unit}", "yes" if reached <= target else "no"])

    for kind, names in (("real field", fixed), ("free-form real", free)):
        for peer, target in (("Fortran", 30), ("snprintf", 20), ("to_chars", 5)):
            at_least(f"{kind}, model values, the least favourable: {peer} / velm", target, least(names, peer))
    for e in results["exports"]:
        label = f"({WORKLOADS[e['workload']]}), {e['place']}"
        at_least(f"whole export {label}: Fortran / velm", 25 if e["workload"] == "boundaries" else 12, e["Fortran / velm"])
        at_most(f"whole export {label}: velm / floor", 4, e["velm / floor"])
    for place in dict.fromkeys(g["place"] for g in results["growth"]):
        times = [g["ns a byte"] for g in results["growth"] if g["place"] == place]
        farthest = (max(times) - min(times)) / (max(times) + min(times))
        at_most(f"time per byte, 1 MB to 1 GB, {place}: farthest from the middle", 15, farthest * 100, " %")
    memory = max(g["memory beyond tables"] for g in results["growth"])
    at_most("memory of the plug-in beyond its tables and buffer", 2, memory / 2**20, " MiB")
    for s in results["stored"]:
        label = f"velm export ({WORKLOADS[s['workload']]})"
        at_least(f"{label}: million rows a second", 1.5, s["rows a second"] / 1e6)
        at_most(f"{label}: peak memory / data", 3, s["peak memory"] / s["data"])
    for r in results["recording"]:
        at_most(f"export ({WORKLOADS[r['workload']]}), {r['place']}: recorded / plain", 3, r["cpu"])
    return table(["figure", "target", "reached", "met"], *rows)


def machine():
    models = [line.split(":", 1)[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")]
    compiler = subprocess.run(["gfortran", "-dumpfullversion"], check=True, capture_output=True, text=True).stdout
    return f"{len(models)} x {models[0]}, Linux {platform.release()}, GCC {compiler.strip()}"


def tables(results):
    return "\n".join([
        f"{results['date']} on {results['machine']}.\n",
        targets_table(results),
        rendering_tables(results["rendering"]),
        export_tables(results["exports"], results["estuary"]),
        stored_table(results["stored"]),
        growth_table(results["growth"]),
        recording_table(results["recording"]),
    ])  # fmt: skip


def write_readme(text):
    readme = HERE / "README.md"
    before, rest = readme.read_text().split(TABLE_BEGIN)
    after = rest.split(TABLE_END)[1]
    readme.write_text(before + TABLE_BEGIN + "\n" + text + "\n" + TABLE_END + after)


def main():
    parser = argparse.ArgumentParser(prog="./dev bench", description=__doc__)
    parser.add_argument("--write-readme", action="store_true", help="put the tables into bench/README.md")
    parser.add_argument("--last", action="store_true", help="measure nothing: take build/bench/results.json")
    arguments = parser.parse_args()
    store = BUILD / "results.json"
    if arguments.last:
        results = json.loads(store.read_text())
    else:
        results = measure_all()
        store.write_text(json.dumps(results, indent=1) + "\n")
    text = tables(results)
    print("\n" + text)
    if arguments.write_readme:
        write_readme(text)


def measure_all():
    files = Path(tempfile.mkdtemp(prefix="files-", dir=BUILD))
    places = {"disk": files}
    if os.access("/dev/shm", os.W_OK):
        places["memory"] = Path(tempfile.mkdtemp(prefix="velm-bench-", dir="/dev/shm"))
    try:
        subprocess.run([VELM, "example", files / "estuary.db"], check=True, stderr=subprocess.DEVNULL)
        return {
            "date": time.strftime("%Y-%m-%d"),
            "machine": machine(),
            "rendering": rendering(files),
            "exports": whole_exports(places),
            "estuary": estuary(files, places),
            "stored": stored_models(files),
            "growth": growth(places),
            "recording": recording(places),
        }
    finally:
        for directory in places.values():
            shutil.rmtree(directory)


if __name__ == "__main__":
    main()

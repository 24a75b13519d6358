"""Makes the models that the tests of the report look at, their pages, and what the pages must show.

    python3 models.py VELM FOLDER

What must be shown is read from the databases by SQL, never from a page.
"""

import json
import math
import os
import pathlib
import sqlite3
import subprocess
import sys

VELM, FOLDER = sys.argv[1], pathlib.Path(sys.argv[2])
GAUGES = pathlib.Path(__file__).resolve().parents[3] / "shared/data/gauges"
HOSTILE = ["</script><script>alert(1)</script>", "\"'><img src=x onerror=alert(1)>", "<!--<script>", "a\tb\x01\x7f\x85",
           "-->]]>&amp;&lt;{{numbers}}", "W" * 40, "=1+1", "\xad\xa0$& $1"]


def velm(*arguments):
    return subprocess.run([VELM, *map(str, arguments)], check=True, stderr=subprocess.PIPE,
                          env={**os.environ, "SOURCE_DATE_EPOCH": "1700000000"})


def new(name, segments, end):
    """A database with a run of `end` days from 2001-03-01 and these segments: (name, type, bottom segment)."""
    (FOLDER / f"{name}.db").unlink(missing_ok=True)
    velm("new", FOLDER / f"{name}.db")
    db = sqlite3.connect(FOLDER / f"{name}.db")
    db.execute("UPDATE model SET start_date_1 = 2001, start_date_2 = 3, start_date_3 = 1, julian_end_time = ?, "
               "maximum_time_step = 0.01, minimum_time_step = 0.0001, print_interval = 1, topt_factor = 0.9", (end,))
    db.executemany("INSERT INTO segment (name, type, bottom_segment, volume, length, width, initial_depth) "
                   "VALUES (?, ?, ?, 20000, 1000, 20, 1)", segments)
    db.execute("INSERT INTO flow_field DEFAULT VALUES")
    return db


def add_system(db, name, boundary):
    system = db.execute("INSERT INTO system (name, tag) VALUES (?, ?)", (name, name[:5])).lastrowid
    db.execute("INSERT INTO initial_condition SELECT ?, number, number / 7.0, 1 FROM segment", (system,))
    db.execute("INSERT INTO boundary VALUES (?, 1, 1)", (system,))
    db.executemany("INSERT INTO boundary_value VALUES (?, 1, ?, ?, ?)",
                   [(system, i + 1, *p) for i, p in enumerate(boundary)])


def add_flow(db, number, description, paths, pairs):
    db.execute("INSERT INTO flow_function VALUES (1, ?, ?)", (number, description))
    db.executemany("INSERT INTO flow_path VALUES (1, ?, ?, ?, ?, ?)",
                   [(number, i + 1, *p) for i, p in enumerate(paths)])
    db.executemany("INSERT INTO flow_value VALUES (1, ?, ?, ?, ?)", [(number, i + 1, *p) for i, p in enumerate(pairs)])


def gauge(name):
    """A reach of ten segments that a measured discharge passes, in cubic feet per second; 30 days of it are missing."""
    lines = (GAUGES / f"{name}_discharge.txt").read_text().splitlines()
    record = [(day, float(line.split()[4])) for day, line in enumerate(lines) if not 400 <= day < 430]
    db = new(name, [(f"Reach, km {i} to {i + 1}", 1, 0) for i in range(10)], len(lines) - 1)
    db.execute("UPDATE flow_field SET conversion_factor = 0.0283168")
    add_flow(db, 1, "Gauged discharge (ft3/s)", [(i, (i + 1) % 11, 1) for i in range(11)], record)
    add_system(db, "Tracer", [(0, 1), (len(lines) - 1, 1)])
    db.commit()


def lake():
    """4 by 3 columns of two layers, a current to and fro above, mixing everywhere, and places that a modeller gave."""
    n, across = 12, 4
    db = new("lake", [(f"Above {i}", 1, i + n) for i in range(1, n + 1)] +
             [(f"Below {i}", 2, 0) for i in range(1, n + 1)], 100)
    rows = [[0, *range(r * across + 1, (r + 1) * across + 1), 0] for r in range(3)]
    add_flow(db, 1, "Wind", [(a, b, 0.25) for row in rows for a, b in zip(row, row[1:])],
             [(d, math.cos(d / 5) * 4 + 1) for d in range(101)])
    add_system(db, "Salinity", [(0, 30), (100, 31)])
    db.executescript("INSERT INTO flow_field VALUES (2, 1, 1), (3, 2, 1); "
                     "INSERT INTO flow_function VALUES (3, 1, 'Settling'); "
                     "INSERT INTO flow_path VALUES (3, 1, 1, 1, 13, 0.5); INSERT INTO flow_value VALUES (3, 1, 1, 0, 3);")
    db.execute("INSERT INTO exchange_field DEFAULT VALUES")
    db.execute("INSERT INTO exchange_function VALUES (1, 1, 'Between the layers')")
    db.executemany("INSERT INTO exchange_pair VALUES (1, 1, ?, ?, ?, 20000, 2)",
                   [(i, i, i + n) for i in range(1, n + 1)])
    db.execute("INSERT INTO exchange_value VALUES (1, 1, 1, 0, 1e-5), (1, 1, 2, 100, 2e-5)")
    # of a survey, from east to west; the last two have none
    db.executemany("INSERT INTO segment_place VALUES (?, ?, ?)",
                   [(i + 1, 567890.5 - 30 * (i % across), 5e6 - 40 * (i // across)) for i in range(n - 2)])
    db.commit()


def hostile():
    """Names that would be marks, and values of which a check has something to say at every kind of place."""
    db = new("hostile", [(name[:40], 1, 0) for name in HOSTILE], 10)
    for name in HOSTILE:
        add_system(db, name[:30], [(0, 1), (5, 2)])
    add_flow(db, 1, HOSTILE[0], [(i, (i + 1) % 9, 1) for i in range(9)], [(0, 1), (9, 2), (9, 3), (4, 4)])
    add_flow(db, 2, HOSTILE[1], [(0, 0, 1), (2, 2, 1), (3, 1, -0.5)], [(0, 1)])
    db.execute("UPDATE segment SET width = -1 WHERE number = 6")
    db.executescript("UPDATE segment SET bottom_segment = 8 WHERE number = 2; "
                     "INSERT INTO segment_place SELECT number, number * 3 % 7, number * 2 % 5 FROM segment WHERE number < 8")
    db.execute("UPDATE initial_condition SET dissolved_fraction = 2 WHERE system = 2 AND segment = 3")
    db.execute("UPDATE model SET hydrodynamic_file = ?", ("A" * 512,))
    db.execute("INSERT INTO time_function_type (isc) VALUES (3)")
    db.execute("INSERT INTO time_function VALUES (1, 1, 1, ?)", (HOSTILE[2],))
    db.commit()


def expected(name):
    """What a page of this model must show."""
    db = sqlite3.connect(FOLDER / f"{name}.db")

    def rows(sql):
        return [list(row) for row in db.execute(sql)]

    series = {}
    for table, parent in (("flow_value", "flow_field, flow_function"),
                          ("exchange_value", "exchange_field, exchange_function"),
                          ("boundary_value", "system, boundary"), ("load_value", "system, load"),
                          ("time_function_value", "time_function_type, time_function")):
        for a, b, *facts in rows(f"SELECT {parent}, count(*), min(value), max(value) FROM {table} GROUP BY 1, 2"):
            series[f"{table},{a},{b}"] = facts
    return {"segments": rows("SELECT number, name, length, width FROM segment"),
            "paths": rows("SELECT flow_field, flow_function, number FROM flow_path"),
            "pairs": rows("SELECT exchange_field, exchange_function, number FROM exchange_pair"),
            "days": rows("SELECT time FROM flow_value WHERE flow_field = 1 AND flow_function = 1 ORDER BY number"),
            "places": rows("SELECT segment, x, y FROM segment_place"),
            "factor": rows("SELECT scale_factor * conversion_factor FROM flow_field")[0][0], "series": series,
            "last_flow": rows("SELECT value FROM flow_value WHERE flow_field = 1 AND flow_function = 1 "
                              "ORDER BY time DESC, number DESC")[0][0],
            "constants": rows("SELECT value FROM constant ORDER BY constant_type, number")}


FOLDER.mkdir(parents=True, exist_ok=True)
(FOLDER / "estuary.db").unlink(missing_ok=True)
velm("example", FOLDER / "estuary.db")
names = ["estuary", "lake", "hostile"]
lake()
hostile()
if GAUGES.is_dir():
    for one in ("01022500", "01547700"):
        gauge(one)
        names.append(one)
else:
    print(f"no gauge records in {GAUGES}: their models are left out", file=sys.stderr)
for one in names:
    velm("report", FOLDER / f"{one}.db", FOLDER / f"{one}.html", "--title", "W" * 512 if one == "hostile" else one)
velm("export", FOLDER / "estuary.db", FOLDER / "estuary.inp")
velm("report", FOLDER / "estuary.inp", FOLDER / "input_file.html")
(FOLDER / "lake.inp").unlink(missing_ok=True)
velm("export", FOLDER / "lake.db", FOLDER / "lake.inp")
velm("report", FOLDER / "lake.db", FOLDER / "same.html", "--against", FOLDER / "lake.inp")
(FOLDER / "cut.inp").write_bytes((FOLDER / "estuary.inp").read_bytes()[:-500])
velm("report", FOLDER / "cut.inp", FOLDER / "cut.html")
(FOLDER / "changed.db").write_bytes((FOLDER / "estuary.db").read_bytes())
changed = sqlite3.connect(FOLDER / "changed.db")
changed.executescript("UPDATE segment SET width = 99 WHERE number = 9; UPDATE flow_value SET value = value * 2 "
                      "WHERE flow_field = 1 AND flow_function = 1 AND number < 50;")
changed.close()
velm("report", FOLDER / "changed.db", FOLDER / "changed.html", "--against", FOLDER / "estuary.db")
(FOLDER / "expected.json").write_text(json.dumps({one: expected(one) for one in names}))

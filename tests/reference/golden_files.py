#!/usr/bin/env python3
"""Checks the golden models: NAME.sql fills a model database, NAME.inp is the input file that it must give.

The expected file comes from the reference exporter, which reads the database itself and answers as a desktop
host does. With --tool the file that `velm export` writes is compared too, with --keys the models must request
every key between them, and --write replaces the expected files: read what changed, line by line.
"""

import argparse
import sqlite3
import subprocess
import sys
import tempfile
from pathlib import Path

from compare_with_plugin import Difference, check_bytes
from random_models import real_of
from reference_exporter import PlugIn, Request

KEYS = 109
QUERIES = {}  # of each key: the given values are its parameters in order, the columns are the values to fill


def serve(source, columns_of_keys):
    for line in columns_of_keys.strip().splitlines():
        key, columns = line.split(maxsplit=1)
        QUERIES[key] = f"SELECT {columns} FROM {source}"


serve(
    "model",
    """
    GMODELTYPE model_type
    GSEEDTIME start_time_1, start_time_2, start_time_3
    GSEEDDATE start_date_1, start_date_2, start_date_3
    GHYDSKIPDATE skip_date_1, skip_date_2, skip_date_3
    GHYDSKIPTIME skip_time_1, skip_time_2, skip_time_3
    GENDJULIAN julian_end_time
    GJMAS mass_balance_table_output
    GSOLUTIONTYPE solution_technique
    GNEGSLN negative_solution
    GICRD restart
    GINTYP time_optimization
    GVELMTOVELMLINK water_quality_linkage
    GFRACMAXTS topt_factor
    GMAXDT maximum_time_step
    GMINDT minimum_time_step
    GMODELOUTPUTINTERVAL print_interval
    GBEDOPT bed_volume_option
    GBEDDT bed_compaction_time_step
    GSCALV volume_scale_factor
    GCONVV volume_conversion_factor
    GHYDROFILE hydrodynamic_file
    GLOPT nps_option
    GNPSFILE nps_file
    """,
)
serve(
    "system WHERE number = ?1",
    """
    GSYSNAME name, tag
    GSCALB boundary_scale_factor
    GCONVB boundary_conversion_factor
    GSCALW load_scale_factor
    GCONVW load_conversion_factor
    GIFIELD solids_transport_field
    GDENSITY solids_density
    GCMAX maximum_concentration
    """,
)
serve(
    "segment WHERE number = ?1",
    """
    GSEGNAME name
    GBOTSEG bottom_segment
    GSEGTYPE type
    GIQOPT flow_option
    GVOLUME volume
    GVMULT velocity_multiplier
    GVEXP velocity_exponent
    GDMULT depth_multiplier
    GDEXP depth_exponent
    GSEGSLOPE slope
    GSEGLENGTH length
    GSEGWIDTH width
    GSEGROUGH roughness
    GSEGMINDEPTH minimum_depth
    GINITIALSURFACEELEVATION initial_surface_elevation
    GBOTTOMELEVATION bottom_elevation
    GSIDESLOPE side_slope
    GINITIALDEPTH initial_depth
    GWEIRHEIGHT weir_height
    GWEIRTYPE weir_type
    """,
)
for query in """
    GNUMSYS system
    GNUMSEG segment
    GNFIELD flow_field
    GNINQ flow_function WHERE flow_field = ?1
    GNOQS flow_path WHERE (flow_field, flow_function) = (?1, ?2)
    GNBRKQ flow_value WHERE (flow_field, flow_function) = (?1, ?2)
    GNRFLD exchange_field
    GNTEX exchange_function WHERE exchange_field = ?1
    GNORS exchange_pair WHERE (exchange_field, exchange_function) = (?1, ?2)
    GNOBRKS exchange_value WHERE (exchange_field, exchange_function) = (?1, ?2)
    GNOBC boundary WHERE system = ?1
    GNBFP boundary_value WHERE (system, boundary) = (?1, ?2)
    GNOWK load WHERE system = ?1
    GNBWK load_value WHERE (system, load) = (?1, ?2)
    GNUMTFTYPE time_function_type
    GNUMPARAMTYPE parameter_type
    GNUMCONST constant_type
    GNUMTIMEFUNC time_function JOIN time_function_type t ON t.number = time_function_type WHERE isc = ?1
    GNUMPARAMBYISC parameter JOIN parameter_type t ON t.number = parameter_type WHERE isc = ?1
    GNUMCONSTBYISC constant JOIN constant_type t ON t.number = constant_type WHERE isc = ?1
    """.strip().splitlines():
    serve(query.split(maxsplit=1)[1], query.split()[0] + " count(*)")
serve("flow_field WHERE number = ?1", "GSCALEQ scale_factor\n GCONVQ conversion_factor")
serve("flow_function WHERE (flow_field, number) = (?1, ?2)", "GFLOWFUNCDESC description")
serve(
    "flow_path WHERE (flow_field, flow_function, number) = (?1, ?2, ?3)",
    "GJQ first_segment\n GIQ second_segment\n GBQ fraction",
)
serve("flow_value WHERE (flow_field, flow_function, number) = (?1, ?2, ?3)", "GNOQFUNC time, value")
serve("exchange_field WHERE number = ?1", "GSCALER scale_factor\n GCONVR conversion_factor")
serve("exchange_function WHERE (exchange_field, number) = (?1, ?2)", "GEXCHANGEFUNCDESC description")
serve(
    "exchange_pair WHERE (exchange_field, exchange_function, number) = (?1, ?2, ?3)",
    "GJRSEG first_segment\n GIRSEG second_segment\n GXAREA area\n GLENGTH length",
)
serve("exchange_value WHERE (exchange_field, exchange_function, number) = (?1, ?2, ?3)", "GNORFUNC time, value")
serve("boundary WHERE (system, number) = (?1, ?2)", "GIBC segment")
serve("boundary_value WHERE (system, boundary) = (?1, ?2) ORDER BY number", "GALLBOUNDFUNC time, value")
serve("load WHERE (system, number) = (?1, ?2)", "GIWK segment")
serve("load_value WHERE (system, load) = (?1, ?2) ORDER BY number", "GALLLOADFUNC time, value")
serve("time_function_type WHERE number = ?1", "GTFISC isc")
serve("parameter_type WHERE number = ?1", "GPARAMISC isc")
serve("constant_type WHERE number = ?1", "GCONSTTYPEISC isc")
serve(
    "time_function f JOIN time_function_type t ON t.number = time_function_type WHERE (isc, f.number) = (?1, ?2)",
    "GTFISUSED used\n GTFDESC description\n"
    " GNBRKTF (SELECT count(*) FROM time_function_value WHERE (time_function_type, time_function) = (t.number, ?2))",
)
serve(
    "time_function_value v JOIN time_function_type t ON t.number = time_function_type"
    " WHERE (isc, time_function, v.number) = (?1, ?2, ?3)",
    "GBRKTF time, value",
)
serve(
    "parameter p JOIN parameter_type t ON t.number = parameter_type WHERE (isc, p.number) = (?1, ?2)",
    "GPARAMISUSED used\n GDESCPARAM description\n GSCALEPARAMBYISC scale_factor",
)
serve(
    "parameter_value JOIN parameter_type t ON t.number = parameter_type WHERE (segment, isc, parameter) = (?1, ?2, ?3)",
    "GCONSTPARAM value",
)
serve(
    "constant c JOIN constant_type t ON t.number = constant_type WHERE (isc, c.number) = (?1, ?2)",
    "GCONSTISUSED used\n GCONSTVALUEBYISC value\n GCONSTDESCBYISC description",
)
serve("initial_condition WHERE (system, segment) = (?1, ?2)", "GINITC concentration\n GFDISS dissolved_fraction")


def in_cell(cell, datum):
    if cell.kind == "text":
        return datum.encode("latin-1").ljust(cell.length)
    return real_of(datum) if cell.kind == "real" else datum


def answer(database, request):
    """Fills the cells that the request asks for from the database."""
    if request.key == "GFILENAME":
        request.cells[0].take(b"golden.inp".ljust(512))
    if request.key not in QUERIES:
        return
    given = [cell.value for cell, is_given in zip(request.cells, request.given) if is_given]
    filled = [cell for cell, is_given in zip(request.cells, request.given) if not is_given]
    rows = database.execute(QUERIES[request.key], given).fetchall()
    if filled[0].kind == "series":
        for cell, column in zip(filled, zip(*rows)):
            cell.take([real_of(number) for number in column])
        return
    if request.key == "GTFISUSED" and not rows:
        rows = [(0,)]  # a type without functions is asked for its first one
    for cell, datum in zip(filled, *rows):
        cell.take(in_cell(cell, datum))


def reference_export(database):
    """The input file, and the keys that it took."""
    records, keys = [], set()
    for step in PlugIn().export():
        if isinstance(step, Request):
            keys.add(step.key)
            answer(database, step)
        elif isinstance(step, bytes):
            records.append(step)
    return b"".join(records), keys


def tool_export(tool, model, folder):
    output = folder / "golden.inp"
    subprocess.run([tool, "export", "--quiet", "--allow-overflow", model, output], check=True)
    return output.read_bytes()


def check_model(sql, options, folder):
    """Returns the keys that the model requested."""
    model = folder / f"{sql.stem}.db"
    database = sqlite3.connect(model)
    statements = options.schema.read_text("utf-8") + sql.read_text("utf-8")
    database.executescript(f"PRAGMA foreign_keys = ON; BEGIN; {statements} COMMIT;")
    file, keys = reference_export(database)
    database.close()
    golden = sql.with_suffix(".inp")
    if options.write:
        golden.write_bytes(file)
    check_bytes(golden.read_bytes(), file)
    if options.tool:
        check_bytes(golden.read_bytes(), tool_export(options.tool, model, folder))
    return keys


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("schema", type=Path, help="SQL of an empty model database")
    arguments.add_argument("models", type=Path, nargs="+", help="SQL of the golden models")
    arguments.add_argument("--tool", type=Path, help="velm, to compare its files too")
    arguments.add_argument("--keys", action="store_true", help="the models must request every key between them")
    arguments.add_argument("--write", action="store_true", help="replace the expected files")
    options = arguments.parse_args()
    keys = set()
    for sql in options.models:
        try:
            with tempfile.TemporaryDirectory() as folder:
                keys |= check_model(sql, options, Path(folder))
        except Difference as difference:
            sys.exit(f"{sql}: {difference}")
    if options.keys and len(keys) != KEYS:
        sys.exit(f"{len(keys)} keys requested, not {KEYS}; never {sorted(set(QUERIES) - keys)}")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Exports and checks variants of a model on a Dask cluster: what each lost and found, in OUT/result.csv.

dask_variants.py base.db variants.csv out                  two workers on this machine
dask_variants.py base.db variants.csv out tcp://node:8786  the workers of a scheduler, which see the same folders
"""

import pathlib
import shutil
import sys

import pandas
from distributed import Client, LocalCluster

import velm


def run_variant(base, folder, variant, flow_scale, rate):
    """One variant in a folder of its own: how many findings there are of each code, or what failed."""
    here = pathlib.Path(folder, str(variant))
    here.mkdir(parents=True, exist_ok=True)
    try:
        shutil.copy(base, here / "model.db")
        with velm.open(here / "model.db") as m, m.transaction():
            m.flow_field.loc[1, "scale_factor"] = flow_scale
            m.constant.loc[(1, 1), "value"] = rate
        m.export(here / "run.inp")
        found = m.check("--most", "1000000")["code"].value_counts().to_dict()
    except (velm.ModelError, velm.ProgramError, OSError) as error:  # the other variants go on
        return {"variant": variant, "failure": str(error)}
    return {"variant": variant, "bytes": (here / "run.inp").stat().st_size, **found}


def main(base, variants, out, scheduler=None):
    base, out = str(pathlib.Path(base).resolve()), pathlib.Path(out).resolve()
    rows = pandas.read_csv(variants).to_dict("records")
    cluster = scheduler or LocalCluster(n_workers=2, threads_per_worker=1, host="127.0.0.1", dashboard_address=None)
    with Client(cluster) as client:
        results = client.gather([client.submit(run_variant, base, str(out), **row, pure=False) for row in rows])
    table = pandas.DataFrame(results).set_index("variant")
    table.to_csv(out / "result.csv")
    print(table)


if __name__ == "__main__":
    main(*sys.argv[1:])

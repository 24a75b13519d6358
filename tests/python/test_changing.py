"""Tables that write through, items that are removed, transactions, and what velm says of a model."""

import pathlib

import pandas
import pytest

import velm
from conftest import read, rows


@pytest.mark.parametrize("change, widths", [
    ("m.segment.loc[2:3, 'width'] *= 1.5", [10, 30, 45]),
    ("m.segment.width *= 2", [20, 40, 60]),
    ("m.segment['width'] = [1, 2, 3]", [1, 2, 3]),
    ("m.segment.at[2, 'width'] = 7", [10, 7, 30]),
    ("m.segment.iloc[-1, list(m.segment).index('width')] -= 1", [10, 20, 29]),
    ("m.segment.loc[m.segment['width'] > 15, ['width', 'volume']] = 0", [10, 0, 0]),
    ("m.segment.copy()['width'] = 1", [10, 20, 30]),
])
def test_assignments_reach_the_database(river, change, widths):
    stale = river.segment
    exec(change, {"m": river})
    stale.loc[1, "slope"] = 0.5  # and write nothing but themselves
    assert river.segment["width"].tolist() == velm.open("river.db").segment["width"].tolist() == widths
    assert read("river.db") == ""


def test_removing_a_segment_renumbers_what_points_to_others(river):
    river.remove("segment", 2)
    assert river.segment["name"].to_dict() == {1: "Reach 1", 2: "Reach 3"}
    assert [row[2:] for row in rows("river.db", "flow_path")] == [(1, 0, 1, 1), (2, 1, 2, 1), (3, 2, 0, 1)]
    assert [row[3:5] for row in rows("river.db", "exchange_pair")] == [(2, 0)]
    assert rows("river.db", "boundary") == [(1, 1, 1), (1, 2, 2), (2, 1, 1), (2, 2, 2)]
    assert rows("river.db", "load") + rows("river.db", "load_value") == []
    assert rows("river.db", "parameter_value") == [(1, 1, 1, 0.1), (1, 1, 2, 0.3)]
    assert rows("river.db", "initial_condition") == [(s, n, 8, 1) for s in (1, 2) for n in (1, 2)]
    assert read("river.db") == ""


def test_removing_a_segment_where_ways_part_and_meet(river):
    river.add_segments(2, name="Arm", initial={1: 7}, parameters={(1, 1): 0.4}, volume=1)
    assert rows("river.db", "initial_condition")[-1] == (2, 5, 8, 1) and river.initial_condition.loc[(1, 5)][0] == 7
    river.add_flow(1, through={(0, 1): 1, (1, 2): 0.25, (1, 3): 0.75, (2, 4): 0.25, (3, 4): 0.75, (4, 5): 1, (5, 0): 1})
    river.remove("segment", 4)
    assert [row[3:] for row in rows("river.db", "flow_path") if row[1] == 2] == [
        (0, 1, 1), (1, 2, 0.25), (1, 3, 0.75), (2, 4, 0.25), (3, 4, 0.75), (4, 0, 1)]


def test_removing_other_items(river):
    river.model.loc[1, "mass_balance_table_output"] = 2
    river.system["solids_transport_field"] = 1
    river.remove("boundary", 2, 1)
    assert [row[:3] for row in rows("river.db", "boundary_value")] == [(1, 1, 1), (1, 1, 2), (1, 2, 1), (1, 2, 2),
                                                                       (2, 1, 1), (2, 1, 2)]
    river.remove("system", 1)
    assert rows("river.db", "boundary") == [(1, 1, 3)] and river.model.loc[1, "mass_balance_table_output"] == 1
    assert rows("river.db", "load_value") == [(1, 1, 1, 0, 5), (1, 1, 2, 1.5, 6)]
    river.remove("flow_field", 1)
    assert river.system["solids_transport_field"].tolist() == [0] and rows("river.db", "flow_value") == []
    assert read("river.db") == ""


def test_a_transaction_is_whole_or_nothing(river):
    before = pathlib.Path("river.db").read_bytes()
    with pytest.raises(velm.ModelError), river.transaction():
        river.segment["width"] = 1
        river.remove("system", 1)
        river.segment.loc[2, "name"] = "x" * 41
    assert river.segment["width"].tolist() == [10, 20, 30] and river.system.shape[0] == 2
    river.close()
    assert pathlib.Path("river.db").read_bytes() == before


def test_what_velm_says(river):
    river.export("before.inp")
    river.segment.loc[2, "width"] = -4
    assert ["V206", "segment 2", "width"] in river.check()[["code", "row", "table_column"]].values.tolist()
    changes = river.diff("before.inp")
    assert changes[["section", "field", "old", "new"]].values.tolist() == [["segments", "width", "-4", "20"]]
    assert river.diff(river).empty and isinstance(changes, pandas.DataFrame)
    assert "segment" in river._repr_html_() and repr(river).startswith("river.db: {'model': 1")
    assert "A river</title>" in pathlib.Path(river.report(None, "--title", "A river")).read_text()
    imported = velm.open("before.inp")
    assert repr(imported).startswith("before.inp: ") and pathlib.Path(imported.report()).samefile("before.html")
    imported.segment.loc[2, "width"] = -4
    assert imported.diff("river.db", "--tolerance", "1e-3").empty

"""What bad input gets: an exception of a documented type, with the place and the value, and nothing written."""

import pathlib

import numpy
import pandas
import pytest

import velm

DAYS = pandas.date_range("2020-03-01", periods=3)
FLOW = pandas.Series([1.0, 2.0, 3.0], index=DAYS)
ARGUMENTS = [  # a call, and argument, position and value of its ArgumentError
    ("m.add_flow(FLOW, through=[0, 1, 0], unit='kg/s')", "unit", None, "kg/s"),
    ("m.add_flow(FLOW, through=[0, 1, 0], unit='furlong per')", "unit", None, "furlong per"),
    ("m.add_time_function(4, 1.0) and m.set_series('time_function', 1, 1, series=1.0, unit='m')", "unit", None, "m"),
    ("m.add_flow(FLOW.shift(-1, freq='D'), through=[0, 1, 0])", "series", 0, pandas.Timestamp("2020-02-29")),
    ("m.add_flow({-1: 2.0, 0: 1.0}, through=[0, 1, 0])", "series", 0, -1),
    ("m.add_flow(FLOW[::-1], through=[0, 1, 0])", "series", 1, DAYS[1]),
    ("m.add_flow(pandas.concat([FLOW, FLOW[2:]]), through=[0, 1, 0])", "series", 3, DAYS[2]),
    ("m.add_flow(FLOW.tz_localize('UTC'), through=[0, 1, 0])", "series", 0, DAYS.tz_localize("UTC")[0]),
    ("m.add_flow(pandas.Series([1], index=['2020-03-01']), through=[0, 1, 0])", "series", 0, "2020-03-01"),
    ("m.add_flow(pandas.Series([1, 2], index=[DAYS[0], pandas.NaT]), through=[0, 1, 0])", "series", 1, pandas.NaT),
    ("m.add_flow(pandas.Series([1, 'M'], index=DAYS[:2]), through=[0, 1, 0])", "series", 1, "M"),
    ("m.add_flow(pandas.Series([True], index=DAYS[:1]), through=[0, 1, 0])", "series", 0, True),
    ("m.add_flow(FLOW.replace(2, 1e39), through=[0, 1, 0], missing='drop')", "series", 1, 1e39),
    ("m.add_flow(FLOW.where(FLOW != 2), through=[0, 1, 0])", "series", 1, numpy.nan),
    ("m.add_flow(FLOW[:0], through=[0, 1, 0])", "series", None, None),
    ("m.add_flow(pandas.Series(DAYS, index=DAYS), through=[0, 1, 0])", "series", 0, DAYS[0].to_datetime64()),
    ("m.add_flow(FLOW.to_period(), through=[0, 1, 0])", "series", None, None),
    ("m.add_flow(FLOW, through=5)", "through", None, 5),
    ("m.add_flow(FLOW, through={(0, 1): 1, (1, 0): numpy.nan})", "through", 1, numpy.nan),
    ("m.add_flow(FLOW, through=[0, 1, 0], field=7)", "field", None, 7),
    ("m.add_boundary(1, [1, 2], 1.0)", "segment", None, [1, 2]),
    ("m.add_parameter(9, pandas.Series([1.0], index=['Mouth']))", "values", "segment 1", None),
    ("m.add_segments('Reach')", "segments", None, "Reach"),
    ("m.add_segments(pandas.DataFrame({'number': [4, 7]}))", "number", 1, 7),
    ("m.add_segments(1, initial={3: 1.0})", "initial", 3, None),
    ("m.remove('model', 1)", "key", None, (1,)),
    ("m.add_flow([1, 2], through=[0, 1, 0])", "series", None, "list"),
    ("m.add_flow(FLOW.to_frame(), through=[0, 1, 0])", "series", None, "DataFrame"),
    ("m.add_flow(FLOW, through=[0, 1, 0], missing='skip')", "missing", None, "skip"),
    ("m.add_flow(FLOW, through=[0, 1, 9, 0])", "through", 2, 9),
    ("m.add_flow(FLOW, through=[0, 1, 1.5])", "through", 1, 1.5),
    ("m.add_flow(FLOW, through={(0, 1): 1, (1, 2): 0.5, (1, 3): 0.4, (2, 0): 0.9})", "through", "segment 1", None),
    ("m.add_flow(FLOW, through=[(0, 1, 1), (1, 0)])", "through", 1, (1, 0)),
    ("m.add_flow(FLOW, through=[1])", "through", None, [1]),
    ("m.add_flow(FLOW, through=pandas.DataFrame({'first_segment': [0]}))", "through", None, None),
    ("m.add_flow({'soon': 1.0}, through=[0, 1, 0])", "series", 0, "soon"),
    ("m.system.__setitem__('load_conversion_factor', 0) or m.add_load(2, 1, 1.0, unit='g/s')", "unit", None, "g/s"),
    ("m.add_exchange(1.0, between=[1, 2, 0]) and m.add_exchange(1.0, between=[(1, 0, 5)])", "between", 0, (1, 0, 5)),
    ("m.add_segments(0)", "segments", None, 0),
    ("m.add_segments(2, width=[1, 2, 3])", "width", None, None),
    ("m.add_segments(2, widht=3)", "widht", None, None),
    ("m.add_system('S', initial={1: 1, 2: 2, 4: 2})", "initial", "segment 3", None),
    ("m.add_segments(1)", "parameters", "parameter type 1, parameter 1", None),
    ("m.series('rain', 1, 1)", "kind", None, "rain"),
    ("m.set_series('load', 2, 1, series={0: 1.0, 1e6: 1.0}) or m.series('load', 2, 1)", "dates", 1, 1e6),
    ("m.remove('boundary', 1)", "key", None, (1,)),
    ("velm.create('new.db', start='2020-01-01', end='2019-01-01')", "end", None, "2019-01-01"),
    ("velm.create('new.db', start='soon', end=3)", "start", None, "soon"),
    ("velm.create('new.db', start=DAYS[0], end=DAYS.tz_localize('UTC')[1])", "end", 0, DAYS.tz_localize("UTC")[1]),
    ("velm.create('new.db', start=DAYS[0], end=3, print_intervall=1)", "print_intervall", None, None),
    ("velm.open('river.db', start='2020-03-02')", "start", None, "2020-03-02"),
]
MODELS = [  # a call, and table, row, column and value of its ModelError
    ("m.segment.loc[2, 'name'] = 'x' * 41", "segment", "number 2", "name", "x" * 41),
    ("m.segment.loc[2, 'name'] = 'Ω'", "segment", "number 2", "name", "Ω"),
    ("m.segment.loc[2, 'name'] = 'two\\nlines'", "segment", "number 2", "name", "two\nlines"),
    ("m.segment['width'] = [1, 'wide', 3]", "segment", "number 2", "width", "wide"),
    ("m.segment.loc[2, 'width'] = None", "segment", "number 2", "width", numpy.nan),
    ("m.segment.loc[2, 'type'] = 1.5", "segment", "number 2", "type", 1.5),
    ("m.segment.loc[2, 'type'] = 10**30", "segment", "number 2", "type", 10**30),
    ("m.segment.loc[4, 'width'] = 1", "segment", "4", None, None),
    ("m.segment['breadth'] = 1", "segment", None, "breadth", None),
    ("m.boundary.loc[(2, 1), 'segment'] = 9", "boundary", "system 2, number 1", "segment", 9),
    ("m.add_boundary(7, 1, 1.0)", "boundary", "system 7, number 1", "system", 7),
    ("m.add_boundary(1, 9, 1.0)", "boundary", "system 1, number 3", "segment", 9),
    ("m.add_system('S', tag='TOOLONG')", "system", "number 3", "tag", "TOOLONG"),
    ("m.add_segments(1, length='90 ft', width=1, depth=1)", "segment", "number 4", "length", "90 ft"),
    ("m.set_series('load', 2, 5, series=1.0)", "load", "system 2, number 5", None, None),
    ("m.series('flow', 1, 9)", "flow_function", "flow field 1, number 9", None, None),
    ("m.segment.loc[2, 'width'] = DAYS[0]", "segment", "number 2", "width", DAYS[0]),
    ("m.add_exchange(1.0, between=pandas.DataFrame({'first_segment': [1], 'second_segment': [2], 'area': [3]}))",
     "exchange_pair", "exchange field 1, exchange function 2, number 1", "length", None),
    ("m.remove('segment', 4)", "segment", "number 4", None, None),
    ("m.set_series('load', 2, 1, series=1e9) or m.export('lost.inp')", None, None, None, None),
    ("velm.open('text.txt')", None, None, None, None),
    ("velm.open('other.db')", None, None, None, None),
]


@pytest.fixture
def call(river, folder):
    river.close()
    pathlib.Path("text.txt").write_text("no model\n")
    pathlib.Path("other.db").write_bytes(b"SQLite format 3\0" + bytes(84))
    before = {path.name: path.read_bytes() for path in folder.iterdir()}

    def refused(text, kind):
        with pytest.raises(kind) as caught:
            exec(text, {"m": river, "velm": velm, "pandas": pandas, "numpy": numpy, "FLOW": FLOW, "DAYS": DAYS})
        river.close()
        after = {path.name: path.read_bytes() for path in folder.iterdir()}
        if not {"and", "or"} & set(text.split()):
            assert after == before
        return caught.value
    return refused


def same(found, expected):
    return found is expected or found == expected or (found != found and expected != expected)


@pytest.mark.parametrize("text, argument, position, value", ARGUMENTS)
def test_arguments(call, text, argument, position, value):
    error = call(text, velm.ArgumentError)
    assert (error.argument, error.position) == (argument, position) and same(error.value, value)
    assert argument in str(error)


@pytest.mark.parametrize("text, table, row, column, value", MODELS)
def test_models(call, text, table, row, column, value):
    error = call(text, velm.ModelError)
    assert (error.table, error.row, error.column) == (table, row, column) and same(error.value, value)


@pytest.mark.parametrize("text, kind, message", [
    ("velm.create('river.db', start=DAYS[0], end=3)", FileExistsError, "river.db exists and is left as it is"),
    ("velm.create('no/folder/new.db', start=DAYS[0], end=3)", FileNotFoundError, "no/folder"),
    ("velm.open('nothing.db')", FileNotFoundError, "nothing.db"),
    ("m.start = DAYS[1]", AttributeError, "start is not assigned to"),
    ("m.segment *= 2", AttributeError, "segment is not assigned to"),
])
def test_files(call, text, kind, message):
    assert message in str(call(text, kind))

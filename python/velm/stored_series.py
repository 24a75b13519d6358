"""The time series of a model, read and written."""

from typing import Any, Dict, Optional, Sequence, Tuple

import numpy
import pandas

from velm import removal, time_series, units
from velm.errors import ArgumentError, refuse_where
from velm.model_file import ModelFile

Key = Tuple[int, int]
BASE_UNITS = {"flow": "m3/s", "exchange": "m2/s", "boundary": "mg/L", "load": "kg/day"}
# where a kind of series has its items, and where its factors, with what stands before their names
ITEMS = {"flow": "flow_function", "exchange": "exchange_function"}
FACTORS = {"flow": ("flow_field", ""), "exchange": ("exchange_field", ""), "boundary": ("system", "boundary_"),
           "load": ("system", "load_")}


class StoredSeries(ModelFile):
    def series(self, kind: str, *key: int, dates: Optional[bool] = None, factors: bool = False) -> Any:
        """A time series as a pandas.Series. `kind` is flow, exchange, boundary, load or time_function, `key` the
        numbers of the item: series("flow", 1, 2) is that of flow function 2 of flow field 1. On dates, or, with
        dates=False or where the start is no date, on days. With `factors`, times scale and conversion factor."""
        where = " AND ".join(f"{name} = ?" for name in self._owner(kind, key))
        rows = self._data.ask(f"SELECT time, value FROM {kind}_value WHERE {where} ORDER BY number", *key)
        days, values = numpy.array(rows, dtype=float).reshape(-1, 2).T
        index = pandas.Index(days, name="day")
        if dates or (dates is None and self.start is not None):
            if self.start is None:
                raise ArgumentError("dates", "the start of the run is no date; open the model with start=")
            room = (pandas.Timestamp.max.value - self.start.value) / 86400e9  # pandas would begin again in 1677
            refuse_where(abs(days) >= room, "dates", days, "days are beyond the dates of pandas; say dates=False")
            index = (self.start + pandas.to_timedelta(days * 86400, unit="s").round("ms")).rename("date")
        factor = self._factor(kind, key[0], "scale") * self._factor(kind, key[0], "conversion") if factors else 1
        return pandas.Series(values * factor, index=index, name=f"{kind} {key}")

    def set_series(self, kind: str, *key: int, series: Any, unit: Optional[str] = None, missing: str = "raise") -> None:
        """Puts a series in the place of the one that series(kind, *key) reads. The first with a unit gives its field or
        system the conversion factor, and its values stay as measured; every other is converted to that unit. Without a
        unit the values are taken to be in it already. missing="drop" leaves missing values out."""
        owner = self._owner(kind, key)
        days, values = time_series.pairs_of(series, self.start, self.end, missing)
        with self._data.transaction():
            pairs = pandas.DataFrame({"time": days, "value": values * self._to_unit_of(kind, key[0], unit)})
            removal.replace_rows(self._data, f"{kind}_value", owner, pairs)

    # The key of a series' item, as the columns that the table of its values has for it.
    def _owner(self, kind: str, key: Sequence[int]) -> Dict[str, int]:
        if kind not in (*FACTORS, "time_function"):
            raise ArgumentError("kind", "is none of flow, exchange, boundary, load, time_function", value=kind)
        self._data.named(ITEMS.get(kind, kind), key)
        return dict(zip(self._data.key(f"{kind}_value"), key))

    def _factor(self, kind: str, owner: int, which: str) -> float:
        table, prefix = FACTORS.get(kind, ("", ""))
        found = table and self._data.ask(f"SELECT {prefix}{which}_factor FROM {table} WHERE number = ?", owner)
        return float(found[0][0]) if found else 1.0

    # What values in `unit` are multiplied by. An owner's only series sets the owner's unit.
    def _to_unit_of(self, kind: str, owner: int, unit: Optional[str]) -> float:
        if unit is None:
            return 1.0
        if kind not in FACTORS:
            raise ArgumentError("unit", f"is given, but a {kind} has no conversion factor", value=unit)
        factor, (table, prefix), item = units.factor(unit, BASE_UNITS[kind]), FACTORS[kind], ITEMS.get(kind, kind)
        if self._next(item, **{self._data.key(item)[0]: owner}) <= 2:
            self._data.update(table, f"{prefix}conversion_factor", [(owner,)], [factor])
        held = self._factor(kind, owner, "conversion")
        if held == 0:
            raise ArgumentError("unit", f"has none to convert to: the factor of {table} {owner} is 0", value=unit)
        return factor / held

    def _add_item(self, table: str, owner: int, **columns: Any) -> Key:
        column = self._data.key(table)[0]
        for name, value in {column: owner, **columns}.items():
            if numpy.ndim(value):
                raise ArgumentError(name, "are several; each call adds one item", value=value)
        number = self._next(table, **{column: owner})
        self._data.insert(table, **{column: owner, "number": number}, **columns)
        return int(owner), number

    def _add_series(self, kind: str, owner: int, series: Any, unit: Optional[str], missing: str, **columns: Any) -> Key:
        with self._data.transaction():
            key = self._add_item(ITEMS.get(kind, kind), owner, **columns)
            self.set_series(kind, *key, series=series, unit=unit, missing=missing)
        return key

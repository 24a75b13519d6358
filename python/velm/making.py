"""Making a model: what is added to it."""

from numbers import Integral
from typing import Any, Dict, List, Mapping, Optional

import numpy
import pandas

from velm import network, removal
from velm.database import in_words
from velm.errors import ArgumentError, refuse_where
from velm.stored_series import Key, StoredSeries


class Making(StoredSeries):
    def add_segments(self, segments: Any, *, name: Any = None, length: Any = None, width: Any = None, depth: Any = None,
                     initial: Any = None, parameters: Any = None, **columns: Any) -> List[int]:
        """Adds segments; returns their numbers. `segments`: how many, their names, or a DataFrame of other arguments.

        length, width, depth in m: a number, or one for each segment; `depth` is the initial one, and the volume (m3) is
        their product unless `volume` is given. `name` of several gets a number: "Reach 1". x and y are places on the
        map; all else are columns of the table segment, of which type (1: surface water) and flow option are 1 unless
        given. Systems and parameters get rows for the new segments: the value that all segments have, or what `initial`
        (mg/L, a number or a mapping by system) and `parameters` (a mapping by key) say."""
        named = {"name": name, "length": length, "width": width, "depth": depth, **columns}
        table = segments if isinstance(segments, pandas.DataFrame) else {}
        data: Dict[str, Any] = {"type": 1, "flow_option": 1, **table}
        data.update((key, value) for key, value in named.items() if value is not None)
        count = int(segments) if isinstance(segments, Integral) else len(segments) if numpy.ndim(segments) else 0
        if count < 1:
            raise ArgumentError("segments", "is no number of segments, or has none", value=segments)
        if not isinstance(segments, (Integral, pandas.DataFrame)):
            data["name"] = list(segments)
        elif isinstance(name, str) and count > 1:
            data["name"] = [f"{name} {place}" for place in range(1, count + 1)]
        for key, values in data.items():
            if numpy.ndim(values) and len(values) != count:
                raise ArgumentError(key, f"has {len(values)} values for {count} segments")
        if {"length", "width", "depth"} <= set(data) and "volume" not in data:
            size = {key: numpy.asarray(pandas.to_numeric(data[key], errors="coerce")) for key in data}
            data["volume"] = numpy.broadcast_to(numpy.nan_to_num(size["length"] * size["width"] * size["depth"]), count)
        data.update({"initial_depth": data.pop("depth")} if "depth" in data else {})
        places = {key: data.pop(key) for key in ("x", "y") if key in data}
        new: List[int] = (self._next("segment") + numpy.arange(count)).tolist()
        numbers = numpy.broadcast_to(data.get("number", new), count)
        refuse_where(numbers != new, "number", numbers, f"is not the next; segments get {new[0]} and on in order")
        with self._data.transaction():
            self._data.insert("segment", **{**data, "number": new})
            if places:
                self._data.insert("segment_place", segment=new, **places)
            self._extend("initial_condition", ["system"], new, "initial", initial, "concentration")
            self._extend("parameter_value", ["parameter_type", "parameter"], new, "parameters", parameters, "value")
        return new

    def add_segment(self, name: str = "", **columns: Any) -> int:
        """Adds a segment, as add_segments does; returns its number."""
        return self.add_segments([name], **columns)[0]

    # Gives new segments their rows: by owner what is given, what all segments share, or what the owner was made with.
    def _extend(self, table: str, names: List[str], segments: Any, argument: str, given: Any, column: str) -> None:
        held = self._data.frame(table).reset_index("segment", drop=True).groupby(names if names[1:] else names[0])
        labels = self._data.frame(names[-1]).index.tolist()
        for label in set(given if isinstance(given, Mapping) else ()) - set(labels):
            raise ArgumentError(argument, f"is for no {names[-1]} that is there", position=label)
        for label in labels:
            owner = dict(zip(names, numpy.atleast_1d(label).tolist()))
            rows = held.get_group(label).drop_duplicates() if label in held.groups else ()
            row = dict(rows.iloc[0] if len(rows) == 1 else self._made_with.get((table, *owner.values()), {}))
            value = given.get(label) if isinstance(given, Mapping) else given
            if value is not None:
                row[column] = value
            if not row:
                raise ArgumentError(argument, "is needed: the segments that are there differ", position=in_words(owner))
            self._data.insert(table, **owner, segment=segments, **row)

    # Writes a value for each segment: one for all, one each in order, or a mapping or Series by number.
    def _per_segment(self, table: str, owner: Mapping[str, int], argument: str, values: Any, column: str,
                     **others: Any) -> None:
        numbers = [number for number, in self._data.ask("SELECT number FROM segment ORDER BY number")]
        if not numpy.ndim(values) and not isinstance(values, Mapping):
            self._made_with[(table, *owner.values())] = {column: values, **others}
            values = [values] * len(numbers)
        if isinstance(values, (Mapping, pandas.Series)):
            for number in sorted(set(numbers) ^ set(values.keys()), key=str):
                raise ArgumentError(argument, "has no value, or is no segment", position=f"segment {number}")
            values = list(map(values.__getitem__, numbers))
        if len(values) != len(numbers):
            raise ArgumentError(argument, f"has {len(values)} values for {len(numbers)} segments")
        self._data.insert(table, **owner, segment=numbers, **{column: values}, **others)

    def add_system(self, name: str, *, tag: str = "", initial: Any = 0.0, dissolved_fraction: float = 1.0,
                   **columns: Any) -> int:
        """Adds a constituent; returns its number. `initial` is what the segments hold at the start, in mg/L: a number,
        one for each segment in order, or a mapping or Series by number. Others are columns of the table system."""
        number = self._next("system")
        with self._data.transaction():
            self._data.insert("system", number=number, name=name, tag=tag, **columns)
            self._per_segment("initial_condition", {"system": number}, "initial", initial, "concentration",
                              dissolved_fraction=dissolved_fraction)
        return number

    def add_flow(self, series: Any, through: Any, *, unit: Optional[str] = None, field: int = 1, description: str = "",
                 missing: str = "raise", balanced: Optional[bool] = None) -> Key:
        """Adds a flow function, in m3/s or `unit` (see set_series); returns its key (flow field, number). `field`: 1
        surface water, 2 pore water, 3 to 5 solids, 6 evaporation and precipitation.

        `through` is a chain of segments, [0, 1, 2, 0]; a mapping of steps to parts of the flow, {(0, 1): 1, (1, 2):
        0.6, ...}; or a DataFrame of first_segment, second_segment and fraction. Of water (fields 1 and 2), each segment
        must pass on what it takes in, unless balanced=False."""
        steps = network.steps_of(through, "through", ["fraction"], self._next("segment") - 1)
        steps = steps if "fraction" in steps else steps.assign(fraction=1.0)
        if field in (1, 2) if balanced is None else balanced:
            network.refuse_imbalance(steps, "through")
        return self._add_ways("flow", "flow_path", field, steps, series, unit, missing, description)

    def add_exchange(self, series: Any, between: Any, *, unit: Optional[str] = None, field: int = 1,
                     description: str = "", missing: str = "raise") -> Key:
        """Adds an exchange function, in m2/s or `unit` (see set_series); returns its key (exchange field, number).
        `field`: 1 surface water, 2 pore water. `between` is a mapping of pairs of segments to area (m2) and mixing
        length (m), {(1, 2): (250, 1000)}; a list of such rows; or a DataFrame of first_segment, second_segment, area,
        length. For a chain, [1, 2, 3], or pairs alone both come from the segments' length, width and depth."""
        pairs = network.steps_of(between, "between", ["area", "length"], self._next("segment") - 1)
        if "area" not in pairs:
            pairs = network.with_geometry(pairs, self._data.frame("segment"), "between")
        return self._add_ways("exchange", "exchange_pair", field, pairs, series, unit, missing, description)

    def _add_ways(self, kind: str, table: str, field: int, ways: Any, series: Any, unit: Optional[str], missing: str,
                  description: str) -> Key:
        there = self._next(f"{kind}_field") - 1
        if field not in range(1, max(there, 6 if kind == "flow" else 2) + 1):
            raise ArgumentError("field", f"is no {kind} field", value=field)
        with self._data.transaction():
            for number in range(there + 1, field + 1):
                self._data.insert(f"{kind}_field", number=number)
            key = self._add_series(kind, field, series, unit, missing, description=description)
            removal.replace_rows(self._data, table, self._owner(kind, key), ways)
        return key

    def add_boundary(self, system: int, segment: int, series: Any, *, unit: Optional[str] = None,
                     missing: str = "raise") -> Key:
        """Adds the concentration of what enters a segment, in mg/L or `unit` (see set_series); returns its key (system,
        number)."""
        return self._add_series("boundary", system, series, unit, missing, segment=segment)

    def add_load(self, system: int, segment: int, series: Any, *, unit: Optional[str] = None,
                 missing: str = "raise") -> Key:
        """Adds a load to a segment, in kg/day or `unit` (see set_series); returns its key (system, number)."""
        return self._add_series("load", system, series, unit, missing, segment=segment)

    def add_time_function(self, isc: int, series: Any, *, description: str = "", used: bool = True,
                          missing: str = "raise") -> Key:
        """Adds an environmental time function of the engine's kind `isc`; returns its key (type, number)."""
        with self._data.transaction():
            key = self._add_of_type("time_function", isc, description=description, used=used)
            self.set_series("time_function", *key, series=series, missing=missing)
        return key

    def add_parameter(self, isc: int, values: Any, *, description: str = "", used: bool = True,
                      scale_factor: float = 1.0) -> Key:
        """Adds a parameter of the engine's kind `isc`; returns its key (type, number). `values`: a number, one for each
        segment in order, or a mapping or Series by number."""
        with self._data.transaction():
            key = self._add_of_type("parameter", isc, description=description, used=used, scale_factor=scale_factor)
            self._per_segment("parameter_value", dict(zip(("parameter_type", "parameter"), key)), "values", values,
                              "value")
        return key

    def add_constant(self, isc: int, value: float, *, description: str = "", used: bool = True) -> Key:
        """Adds a constant of the engine's kind `isc`; returns its key (type, number)."""
        with self._data.transaction():
            return self._add_of_type("constant", isc, description=description, used=used, value=value)

    # Adds an item to the type of that kind, which is made when it is not there.
    def _add_of_type(self, table: str, isc: int, **columns: Any) -> Key:
        found = self._data.ask(f"SELECT number FROM {table}_type WHERE isc = ?", isc)
        number = int(found[0][0]) if found else self._next(f"{table}_type")
        if not found:
            self._data.insert(f"{table}_type", number=number, isc=isc)
        return self._add_item(table, number, **columns)

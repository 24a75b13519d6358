"""Ways through the segments: chains, splits and joins as tables of steps, and the balance of what they carry."""

from typing import Any, Dict, List, Mapping, Sequence

import numpy
import pandas

from velm.errors import ArgumentError, refuse_where

ENDS = ["first_segment", "second_segment"]


def steps_of(way: Any, argument: str, amounts: Sequence[str], segments: int) -> Any:
    """A DataFrame of first_segment, second_segment and the `amounts` that `way` has, a row a step.

    `way` is a chain of segments ([0, 1, 2, 0]); a mapping of pairs to an amount or several ({(0, 1): 1.0}); a sequence
    of tuples; or a DataFrame with these columns. 0 is the world outside; `segments` is how many there are."""
    table = way if isinstance(way, pandas.DataFrame) else \
        pandas.DataFrame(_rows(way, argument, len(amounts))).rename(columns=dict(enumerate([*ENDS, *amounts])))
    kinds: Dict[str, type] = {**dict.fromkeys(ENDS, int), **{name: float for name in amounts if name in table}}
    for name in kinds:
        if name not in table:
            raise ArgumentError(argument, f"has no column {name}")
        values = pandas.to_numeric(table[name], errors="coerce").to_numpy(dtype=float)
        if name in ENDS:
            refuse_where((values % 1 != 0) | (values < 0) | (values > segments), argument, table[name].tolist(),
                         f"is no segment; there are {segments}, and 0 is outside")
        refuse_where(~numpy.isfinite(values), argument, table[name].tolist(), f"is no {name}; give a number")
    return table.astype(kinds).reset_index(drop=True)


def _rows(way: Any, argument: str, amounts: int) -> List[Any]:
    try:
        rows = [(*pair, *numpy.atleast_1d(amount).tolist()) for pair, amount in way.items()] \
            if isinstance(way, Mapping) else list(way)
    except TypeError as error:
        raise ArgumentError(argument, "is neither a chain of segments nor steps between them", value=way) from error
    if all(numpy.ndim(row) == 0 for row in rows):
        rows = list(zip(rows, rows[1:]))
    if not rows:
        raise ArgumentError(argument, "has no step; a chain has two segments or more", value=way)
    lengths = numpy.array([numpy.size(row) for row in rows])
    refuse_where((lengths != lengths[0]) | ~numpy.isin(lengths, [2, 2 + amounts]), argument, rows,
                 f"is not two segments and {amounts} or no more values, like the others")
    return rows


def refuse_imbalance(steps: Any, argument: str) -> None:
    """Raises ArgumentError when a segment passes on another part of the flow than it takes in."""
    taken, passed = (steps.groupby(end)["fraction"].sum() for end in ENDS[::-1])
    kept = taken.sub(passed, fill_value=0).drop(0, errors="ignore")
    for segment in kept.index[kept.abs() > 1e-6]:
        raise ArgumentError(argument, f"takes in {taken.get(segment, 0):g} of the flow and passes on "
                            f"{passed.get(segment, 0):g}; correct the fractions, or say balanced=False",
                            position=f"segment {segment}")


def around(steps: Any, segment: int) -> Any:
    """The steps without those at `segment`: what came in from each side goes on to each side that it left to."""
    leaves, enters = (steps[end] == segment for end in ENDS)
    out, left = steps[leaves & ~enters], steps.loc[~leaves & ~enters, [*ENDS, "fraction"]]
    on = pandas.DataFrame(
        [(before.first_segment, after.second_segment, before.fraction * after.fraction / out["fraction"].sum())
         for before in steps[enters & ~leaves].itertuples() for after in out.itertuples()
         if before.first_segment != after.second_segment and out["fraction"].sum()], columns=left.columns)
    at = (left.index < (leaves | enters).idxmax()).sum()
    return pandas.concat([left[:at], on.astype(left.dtypes), left[at:]]).groupby(ENDS, sort=False, as_index=False).sum()


def with_geometry(pairs: Any, segments: Any, argument: str) -> Any:
    """The pairs with `area` (m2), the mean cross section of the two segments, and `length` (m), the way between their
    middles. Next to the world outside, the segment's own. `segments` is the table segment."""
    ends = [pairs[name].where(pairs[name] > 0, pairs[other]) for name, other in (ENDS, ENDS[::-1])]
    sizes = segments.assign(area=segments["width"] * segments["initial_depth"])
    for name in ("area", "length"):
        pairs[name] = sum(end.map(sizes[name]).fillna(0) for end in ends) / 2
        refuse_where(pairs[name] <= 0, argument, pairs[ENDS].to_records(index=False).tolist(),
                     f"has no {name} by its segments' length, width and initial depth; give area and length")
    return pairs

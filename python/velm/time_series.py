"""Series: what a user has, as days and values without gaps in order; and the run's start, from which days count."""

import numbers
from typing import Any, Mapping, Optional, Tuple

import numpy
import pandas

from velm.errors import ArgumentError, refuse_where

DAY = pandas.Timedelta(days=1)
START = [f"start_{kind}_{place}" for kind in ("date", "time") for place in (1, 2, 3)]


def timestamp(time: Any, argument: str) -> Any:
    """A moment as a pandas.Timestamp: from a text, date, datetime, numpy.datetime64 or Timestamp."""
    try:
        moment = pandas.NaT if isinstance(time, numbers.Number) else pandas.Timestamp(time)
    except (TypeError, ValueError) as error:
        raise ArgumentError(argument, f"is no date: {error}", value=time) from error
    if moment is pandas.NaT:
        raise ArgumentError(argument, "is no date", value=time)
    return moment


def days_from(start: Optional[Any], times: Any, argument: str) -> Any:
    """Days from `start` (in UTC when aware), an array, of an index of dates, of durations, or of numbers, which are
    days. Raises ArgumentError for dates of another kind than the start's, a missing time, an index of anything else."""
    if isinstance(times, pandas.TimedeltaIndex):
        days = numpy.asarray(times / DAY, dtype=float)
    elif pandas.api.types.is_numeric_dtype(times) and not pandas.api.types.is_bool_dtype(times):
        days = numpy.asarray(times, dtype=float)
    else:
        dates = times if isinstance(times, pandas.DatetimeIndex) else _dates(times, argument)
        if start is None:
            raise ArgumentError(argument, "has dates, but the start of the run is none; give days")
        if len(dates) and (dates.tz is None) != (start.tzinfo is None):
            kinds = ["naive, without a time zone", "aware of its time zone"]
            raise ArgumentError(argument, f"is {kinds[dates.tz is not None]}, but the start of the run is "
                                f"{kinds[start.tzinfo is not None]}", position=0, value=dates[0])
        days = numpy.asarray((dates - start) / DAY, dtype=float)  # of moments, whatever their zones
    refuse_where(~numpy.isfinite(days), argument, times, "is no time")
    return days


# Dates of whatever form as a DatetimeIndex. Texts are refused, because the order of their parts would be a guess.
def _dates(times: Any, argument: str) -> Any:
    refuse_where([isinstance(time, str) for time in times], argument, times,
                 "is text, not a date; read it with parse_dates, or use pandas.to_datetime")
    aware = [getattr(time, "tzinfo", None) is not None for time in times]
    try:
        return pandas.to_datetime(list(times), utc=True if aware and all(aware) else None)
    except (TypeError, ValueError) as error:
        raise ArgumentError(argument, f"has no dates, {error}; to_timestamp() makes them of periods") from error


def pairs_of(series: Any, start: Optional[Any], end: float, missing: str) -> Tuple[Any, Any]:
    """Days and values, two arrays of one length. A number holds from day 0 to `end`; a series is a pandas.Series, or a
    mapping of times to values, with dates or days in order; missing="drop" leaves missing values out, "raise" not."""
    argument = "series"
    if missing not in ("raise", "drop"):
        raise ArgumentError("missing", "is neither 'raise' nor 'drop'", value=missing)
    if not isinstance(series, (pandas.Series, Mapping)):
        if numpy.ndim(series) != 0 or isinstance(series, str):
            raise ArgumentError(argument, "is neither a number nor a pandas.Series nor a mapping of times to values",
                                value=series if isinstance(series, str) else type(series).__name__)
        series = pandas.Series(series, index=[0.0, end] if end > 0 else [0.0])
    series, times = pandas.Series(series), pandas.Series(series).index
    days, values, found = days_from(start, times, argument), _numbers(series, argument), series.to_numpy()
    steps = numpy.diff(days, prepend=-numpy.inf)
    refuse_where(steps < 0, argument, times, "is before the time ahead of it; sort_index() sorts")
    refuse_where(steps == 0, argument, times, "is there twice; keep one value for each time")
    refuse_where(days < 0, argument, times, "is before the start of the run; leave it out, as by series[start:]")
    absent = numpy.isnan(values)
    refuse_where(abs(values) > 3.4028235e38, argument, found, "is not finite in single precision")
    if missing == "raise":
        refuse_where(absent, argument, found, "is missing; fill it, or say missing='drop'")
    if absent.all():
        raise ArgumentError(argument, "has no value")
    return days[~absent], values[~absent]


def _numbers(values: Any, argument: str) -> Any:
    read = pandas.to_numeric(values, errors="coerce")
    no_numbers = values.dtype.kind in "bcmM"  # truths, complex numbers, durations, dates
    refuse_where((read.isna() & values.notna()) | no_numbers, argument, values.to_numpy(), "is no number")
    return read.to_numpy(dtype=float, na_value=numpy.nan)


def start_columns(start: Any) -> Mapping[str, int]:
    """The six integers of a start, in UTC when it is aware: year, month, day; hour, minute, second."""
    if start.tzinfo is not None:
        start = start.tz_convert("UTC")
    if start.microsecond or start.nanosecond:
        raise ArgumentError("start", "has parts of a second, which a model's start cannot have", value=start)
    return dict(zip(START, start.timetuple()))


def start_of(run: Mapping[str, Any]) -> Optional[Any]:
    """The start that the row of the table model holds, as start_columns() has it; None where that is no date."""
    try:
        return pandas.Timestamp(*(int(run[name]) for name in START))
    except ValueError:
        return None

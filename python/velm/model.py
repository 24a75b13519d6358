"""A model in a database: made or opened, looked at, changed."""

import io
import numbers
import os
import tempfile
from typing import Any, Optional

import pandas

from velm import program, removal, time_series
from velm.database import Database
from velm.errors import ArgumentError
from velm.making import Making
from velm.model_file import LONGEST_STEP, SHORTEST_STEP, Path


class Model(Making):
    """A model database that is open. Each of its tables is an attribute: m.segment, m.flow_path, m.model.

    Every call is a transaction of its own: it is done whole, or raises and has changed nothing. Numbers of segments,
    systems, fields and so on count from 1; 0 is the world outside. A series is a number, which holds for the whole run,
    a pandas.Series on dates or on days from the start, or a mapping of such times to values."""

    def remove(self, table: str, *key: Any) -> None:
        """Removes an item: remove("segment", 5), remove("flow_function", 1, 2). Those behind it, and all that points to
        them, are renumbered. With a segment go its boundaries, loads and exchange pairs; flow paths lead past it. With
        a system, a field or a type goes all that it has."""
        removal.remove(self._data, table, *key)
        self._made_with.clear()


def create(path: Path, *, start: Any = None, end: Any, replace: bool = False, **options: Any) -> Model:
    """Makes a model database. In a `with` block it gets its name at the end, whole; when the block raises, nothing is
    left. Without one it is there from the first call on. A file that exists is refused, or, with `replace`, replaced.

    `start` and `end` are moments of one kind, naive or aware (then days count in UTC); or `end` is a number of days.
    Other arguments are columns of the table model. Where not given, model_type, solution_technique, time_optimization
    and print_interval (days) are 1, topt_factor is 0.9; the time steps are those of choose_time_steps()."""
    target = os.path.abspath(path)
    if os.path.lexists(target) and not replace:
        raise FileExistsError(f"{path} exists and is left as it is; give another name, or say replace=True")
    moment = None if start is None else time_series.timestamp(start, "start")
    last = end if isinstance(end, numbers.Number) else time_series.timestamp(end, "end")
    days = time_series.days_from(moment, pandas.Index([last]), "end")[0]
    if days <= 0:
        raise ArgumentError("end", "is not after the start", value=end)
    run = {"model_type": 1, "solution_technique": 1, "time_optimization": 1, "topt_factor": 0.9,
           "print_interval": min(1.0, days), "maximum_time_step": LONGEST_STEP, "minimum_time_step": SHORTEST_STEP,
           **options, "julian_end_time": days, **({} if moment is None else time_series.start_columns(moment))}
    model = _in_folder(os.path.dirname(target), "new")
    try:
        vars(model)["start"] = moment
        for name, value in run.items():
            model._database.update("model", name, [(1,)], [value])
    except BaseException:
        model._discard()
        raise
    model._target, model._replace = target, replace
    model._choose_steps = not {"maximum_time_step", "minimum_time_step"} & set(options)
    return model


def open(path: Path, *, start: Any = None) -> Model:
    """Opens a model database, or an input file, which is imported into a temporary database. `start` is the moment of
    day 0 where the database's, read as year, month, day, hour, minute and second, is in another order, or is aware."""
    with io.open(path, "rb") as opened:
        is_database = opened.read(16) == b"SQLite format 3\0"
    model = Model(Database(os.fspath(path)), None) if is_database else _in_folder(None, "import", os.fspath(path))
    model._source, run = os.fspath(path), model._database.frame("model")
    held = time_series.start_of(run.iloc[0]) if len(run) else None
    vars(model)["start"] = held if start is None else time_series.timestamp(start, "start")
    if None not in (held, start) and time_series.start_columns(model.start) != time_series.start_columns(held):
        raise ArgumentError("start", f"is not the start of the model, {held}", value=start)
    return model


# A model in a folder of its own below `parent`, made by a command of velm.
def _in_folder(parent: Optional[str], *command: str) -> Model:
    folder = tempfile.TemporaryDirectory(prefix=".velm-", dir=parent)
    model = Model(Database(os.path.join(folder.name, "model.db")), None)
    model._folder = folder
    program.run(*command, model._database.path)
    return model

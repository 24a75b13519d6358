"""The file of a model: opened, closed, given its name when it is whole; its tables, and what velm says of it."""

import os
import tempfile
from typing import Any, ContextManager, Dict, List, Optional, TypeVar, Union

import numpy
import pandas

from velm import program
from velm.database import Database
from velm.table import Table

LONGEST_STEP, SHORTEST_STEP = 0.1, 0.0001  # days, where no flow says more
Path = Union[str, "os.PathLike[str]"]
Self = TypeVar("Self", bound="ModelFile")


class ModelFile:
    """A model database, with the moment from which its days count."""

    def __init__(self, database: Database, start: Optional[Any]) -> None:
        self._database = database
        vars(self)["start"] = start  # a pandas.Timestamp; None when the database has no date
        self._folder: Optional[tempfile.TemporaryDirectory[str]] = None  # where the file is while it has no name
        self._target: Optional[str] = None  # the name that it gets
        self._source = database.path  # what was opened
        self._replace = self._in_block = self._choose_steps = False
        self._made_with: Dict[Any, Dict[str, Any]] = {}  # what segments to come get, by table and owner

    @property
    def _data(self) -> Database:
        if self._target is not None and not self._in_block:
            self._put_in_place(self._target)
        return self._database

    @property
    def path(self) -> str:
        """The database file; in the `with` block of a created one, the temporary one."""
        return self._data.path

    @property
    def end(self) -> float:
        """The length of the run in days."""
        return float(self._data.ask("SELECT julian_end_time FROM model")[0][0])

    def close(self) -> None:
        """Closes the file, which keeps what was written; it opens again when the model is used again."""
        self._data.close()

    def transaction(self) -> ContextManager[None]:
        """A block of changes that are all made or, if it raises, none. Until it ends, velm sees the file as it was."""
        return self._data.transaction()

    def __getattr__(self, name: str) -> Table:
        if name.startswith("_") or name not in self._data.tables():
            raise AttributeError(f"a model has neither a method nor a table {name}")
        return Table(self._data, name)

    def __setattr__(self, name: str, value: Any) -> None:
        if not name.startswith("_"):
            raise AttributeError(f"a model's {name} is not assigned to; m.segment['width'] = 5 changes a column")
        super().__setattr__(name, value)

    def __dir__(self) -> List[str]:
        return [*super().__dir__(), *self._data.tables()]

    def counts(self) -> Any:
        """How many rows each table has that has any, as a pandas.Series."""
        counts = {name: self._data.ask(f'SELECT count(*) FROM "{name}"')[0][0] for name in self._data.tables()}
        return pandas.Series(counts, name="rows", dtype=int).loc[lambda count: count > 0]

    def __repr__(self) -> str:
        return f"{os.path.basename(self._target or self._source)}: {self.counts().to_dict()}"

    def _repr_html_(self) -> str:
        table = self.counts().rename_axis(os.path.basename(self._target or self._source)).to_frame()
        return str(table._repr_html_())

    def check(self, *options: str) -> Any:
        """What velm check finds, as a DataFrame. `options` are those of the command: check("--ignore", "V301")."""
        files = program.run_for_json("check", self.path, *options)["files"]
        columns = ["code", "name", "level", "message", "remedy", "table", "row", "table_column", "value"]
        return pandas.DataFrame(files[0]["findings"] if files else [], columns=columns)

    def diff(self, other: Union["ModelFile", Path], *options: str) -> Any:
        """In what this model differs from `other`, a model or a file, as a DataFrame; `old` is this model's."""
        path = other.path if isinstance(other, ModelFile) else os.fspath(other)
        found = program.run_for_json("diff", self.path, path, *options)["differences"]
        named = ["section", "change", "item", "field", "old", "new"]
        return pandas.DataFrame(found, columns=list(dict.fromkeys([*named, *(name for one in found for name in one)])))

    def export(self, path: Path, *options: str) -> None:
        """Writes the input file, whole or not at all. `options` are those of velm export: "--strict"."""
        program.run("export", self.path, os.fspath(path), "--quiet", *options)

    def report(self, path: Optional[Path] = None, *options: str) -> str:
        """Writes velm's page about the model; returns its name: without `path` that of the model's file, with .html."""
        page = os.path.splitext(self._target or self._source)[0] + ".html" if path is None else os.fspath(path)
        program.run("report", self.path, page, *options)
        return page

    def choose_time_steps(self) -> None:
        """Sets the time steps by the water's stay, which velm info says: the longest to half of the shortest mean stay
        in a segment, 0.1 days at most; the shortest to a tenth of the stay at the highest outflow. The end of create's
        `with` block does it unless time steps were given."""
        segments = program.run_for_json("info", self._data.path)["files"][0]["segments"]
        with self._data.transaction():
            for name, stay, part, most, places in (("maximum", "residence_time", 0.5, LONGEST_STEP, 3),
                                                   ("minimum", "shortest_residence_time", 0.1, SHORTEST_STEP, 6)):
                step = min([most, *(part * segment[stay] for segment in segments if segment[stay])])
                step = max(numpy.floor(step * 10**places), 1) / 10**places  # what the input file shows of it
                self._data.update("model", f"{name}_time_step", [(1,)], [step])

    def __enter__(self: Self) -> Self:
        self._in_block = True
        return self

    def __exit__(self, kind: Any, *_: Any) -> None:
        whole = False
        try:
            if kind is None and self._target is not None and self._choose_steps:
                self.choose_time_steps()
            whole = kind is None
        finally:
            if self._target is not None and not whole:
                self._target = None
                self._discard()
            self._in_block = False
            self.close()

    def _discard(self) -> None:
        self._database.close()
        if self._folder is not None:
            self._folder.cleanup()

    def _put_in_place(self, target: str) -> None:
        self._database.close()
        put: Any = os.replace if self._replace else os.link  # a link refuses a name that is taken by now
        try:
            put(self._database.path, target)
        except FileExistsError:
            raise
        except OSError:
            os.rename(self._database.path, target)  # where there are no links
        self._target, self._source, self._database = None, target, Database(target)
        self._discard()

    # The number that the next row gets among its owner's.
    def _next(self, table: str, **owner: int) -> int:
        where = " AND ".join(["1", *(f"{name} = ?" for name in owner)])
        last = self._data.ask(f"SELECT ifnull(max(number), 0) FROM {table} WHERE {where}", *owner.values())[0][0]
        return int(last) + 1

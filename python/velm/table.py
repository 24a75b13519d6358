"""A table of a model as a DataFrame whose changes go into the database."""

from typing import Any

import pandas

from velm.database import Database
from velm.errors import ModelError


class _Place:
    """loc, iloc, at or iat of a table: reads as pandas does, and writes through."""

    def __init__(self, table: "Table", name: str) -> None:
        self._table, self._name = table, name

    def __getattr__(self, name: str) -> Any:
        return getattr(getattr(pandas.DataFrame(self._table), self._name), name)

    def __call__(self, axis: Any = None) -> Any:
        return getattr(pandas.DataFrame(self._table), self._name)(axis)

    def __getitem__(self, key: Any) -> Any:
        return getattr(pandas.DataFrame(self._table), self._name)[key]

    def __setitem__(self, key: Any, value: Any) -> None:
        self._table._write(lambda frame, what: getattr(frame, self._name).__setitem__(key, what), value)


class Table(pandas.DataFrame):  # type: ignore[misc]  # pandas has no types
    """The rows of one table of the schema, the key as the index. What [], loc, iloc, at and iat are assigned is written
    to the database at once, in one transaction; all else is as in pandas. copy() gives a DataFrame of its own."""

    _metadata = ["_database", "_name"]

    def __init__(self, database: Database, name: str) -> None:
        super().__init__(database.frame(name))
        self._database, self._name = database, name

    @property
    def _constructor(self) -> Any:
        return pandas.DataFrame

    loc = property(lambda self: _Place(self, "loc"))
    iloc = property(lambda self: _Place(self, "iloc"))
    at = property(lambda self: _Place(self, "at"))
    iat = property(lambda self: _Place(self, "iat"))

    def __setitem__(self, key: Any, value: Any) -> None:
        self._write(lambda frame, what: frame.__setitem__(key, what), value)

    # Writes the cells that `assign` reaches, and shows what the database holds then.
    def _write(self, assign: Any, value: Any) -> None:
        changed = self._database.frame(self._name)
        reached = pandas.DataFrame(False, index=changed.index, columns=changed.columns)
        shape = reached.shape
        assign(reached, True)
        try:
            if reached.shape != shape:
                row, column = ([*map(str, labels[held:]), None][0] for labels, held in zip(reached.axes, shape))
                raise ModelError("is not there; the add_ methods add rows", table=self._name, row=row, column=column)
            assign(changed, value)
            with self._database.transaction():
                for name in changed.columns:
                    cells = changed.loc[reached[name].to_numpy(dtype=bool), name]
                    self._database.update(self._name, name, cells.index, cells)
        finally:
            pandas.DataFrame.__init__(self, self._database.frame(self._name))

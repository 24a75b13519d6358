"""The SQLite file of a model: rows in and out, by columns that the file itself names, and errors that say where."""

import contextlib
import os
import re
import sqlite3
from typing import Any, Dict, Iterable, Iterator, List, Mapping, Optional, Sequence, Tuple

import numpy
import pandas

from velm.errors import ArgumentError, ModelError

APPLICATION_ID = 1447382093


def plain(values: Any) -> List[Any]:
    """A column of whatever kind as values that SQLite takes: Python's own numbers and texts."""
    if getattr(values, "dtype", object) != object:
        return list(values.tolist())
    return [value.item() if isinstance(value, numpy.generic) else value for value in values]


def in_words(keys: Mapping[str, Any]) -> str:
    """A row's key as people read it: "flow field 1, flow function 2, number 3"."""
    return ", ".join(f"{name.replace('_', ' ')} {value}" for name, value in keys.items())


class Database:
    """A connection to a model database, opened with the first use and again after close()."""

    def __init__(self, path: str) -> None:
        self.path = path
        self._connection: Optional[sqlite3.Connection] = None
        self._columns: Dict[str, Dict[str, Tuple[str, int]]] = {}

    @property
    def connection(self) -> sqlite3.Connection:
        """The open connection. Raises ModelError for a file that is no model database."""
        if self._connection is None:
            try:
                name = "file:" + os.path.abspath(self.path).replace("%", "%25").replace("?", "%3f").replace("#", "%23")
                opened = sqlite3.connect(name + "?mode=rw", uri=True, isolation_level=None)
                found = opened.execute("PRAGMA application_id").fetchone()[0]
            except sqlite3.Error as error:
                raise ModelError(f"{self.path} cannot be opened: {error}") from error
            if found != APPLICATION_ID:
                opened.close()
                raise ModelError(f"{self.path} is not a model database: its application_id is {found}")
            opened.executescript("PRAGMA foreign_keys = ON; PRAGMA trusted_schema = OFF")
            self._connection = opened
        return self._connection

    def close(self) -> None:
        if self._connection is not None:
            self._connection.close()
        self._connection = None

    def ask(self, sql: str, *values: Any) -> List[Tuple[Any, ...]]:
        try:
            return self.connection.execute(sql, plain(values)).fetchall()
        except sqlite3.Error as error:
            raise ModelError(f"{self.path}: {error}") from error

    def tables(self) -> List[str]:
        """The names of the file's tables, the user's own among them."""
        return [name for name, in self.ask("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid")]

    def columns(self, table: str) -> Dict[str, Tuple[str, int]]:
        """The columns of a table, each with its type and its place in the table's key, from 1 on; 0 outside it."""
        if table not in self._columns:
            self._columns[table] = {row[1]: (row[2], row[5]) for row in self.ask(f'PRAGMA table_info("{table}")')}
        if not self._columns[table]:
            raise ModelError("is missing in the database; velm schema prints it", table=table)
        return self._columns[table]

    def key(self, table: str) -> List[str]:
        """The columns of a table's key, in order."""
        places = {name: place for name, (_, place) in self.columns(table).items() if place}
        return sorted(places, key=places.__getitem__)

    def named(self, table: str, key: Sequence[Any]) -> Dict[str, Any]:
        """An item's key by column. Raises ArgumentError for a key that does not fit, ModelError where no row has it."""
        names = self.key(table)
        if names[-1] != "number" or len(key) != len(names) or table == "model":
            raise ArgumentError("key", f"does not name an item of {table} by {', '.join(names)}", value=key)
        if not self.ask(f"SELECT 1 FROM {table} WHERE {' AND '.join(name + ' = ?' for name in names)}", *key):
            raise ModelError("is not there", table=table, row=in_words(dict(zip(names, key))))
        return dict(zip(names, key))

    def frame(self, table: str) -> Any:
        """A table as a DataFrame, its key as the index."""
        names, key = list(self.columns(table)), self.key(table)
        rows = self.ask(f'SELECT * FROM "{table}" ORDER BY {", ".join(key)}')
        return pandas.DataFrame.from_records(rows, columns=names).set_index(key)

    @contextlib.contextmanager
    def transaction(self, defer: bool = False) -> Iterator[None]:
        """Everything in the block, or nothing; blocks may nest. With `defer`, foreign keys bind at the end."""
        outermost = not self.connection.in_transaction
        self.ask("SAVEPOINT velm")
        try:
            if defer:
                self.ask("PRAGMA defer_foreign_keys = ON")
            yield
            self.ask("RELEASE velm")
        except BaseException:
            if self.connection.in_transaction:  # a full disk has ended it already
                self.ask("ROLLBACK TO velm")
                self.ask("ROLLBACK" if outermost else "RELEASE velm")  # a release would write
            raise

    def insert(self, table: str, **columns: Any) -> None:
        """Adds rows: a sequence for each column, or a value that all have. Raises ModelError, with nothing added."""
        count = max((len(values) for values in columns.values() if numpy.ndim(values)), default=1)
        data = [plain(values) if numpy.ndim(values) else plain([values]) * count for values in columns.values()]
        sql = f'INSERT INTO "{table}" ({", ".join(columns)}) VALUES ({", ".join("?" * len(columns))})'
        self._run_many(table, sql, list(columns), list(zip(*data)))

    def update(self, table: str, column: str, keys: Iterable[Any], values: Sequence[Any]) -> None:
        """Changes a column in the rows of those keys. Raises ModelError, with nothing changed."""
        key = self.key(table)
        sql = f'UPDATE "{table}" SET {column} = ? WHERE {" AND ".join(name + " = ?" for name in key)}'
        rows = [(value, *(row if isinstance(row, tuple) else (row,))) for value, row in zip(plain(values), keys)]
        self._run_many(table, sql, [column, *key], rows)

    def _run_many(self, table: str, sql: str, names: Sequence[str], rows: List[Tuple[Any, ...]]) -> None:
        columns = self.columns(table)
        with self.transaction():
            for column, name in enumerate(names):
                if name not in columns:
                    raise ArgumentError(name, f"is no column of the table {table}: {', '.join(columns)}")
                for row in rows if columns[name][0] == "TEXT" else ():
                    self._refuse_characters(table, names, row, column)
            before = self.connection.total_changes
            try:
                self.connection.executemany(sql, rows)
            except (sqlite3.Error, OverflowError) as error:
                done = self.connection.total_changes - before
                raise self._explained(table, dict(zip(names, rows[min(done, len(rows) - 1)])), error) from error

    def _row(self, table: str, row: Mapping[str, Any]) -> str:
        return in_words({name: row[name] for name in self.key(table) if name in row})

    def _refuse_characters(self, table: str, names: Sequence[str], row: Sequence[Any], column: int) -> None:
        wrong = re.search("[^\x01-\x09\x0b\x0c\x0e-\xff]", str(row[column]))
        if wrong:
            raise ModelError(f"has {wrong[0]!r}; a text takes the characters of ISO 8859-1, in one line", table=table,
                             row=self._row(table, dict(zip(names, row))), column=names[column], value=row[column])

    # SQLite's refusal of a row, with the column that it is about.
    def _explained(self, table: str, row: Mapping[str, Any], error: Exception) -> ModelError:
        message = str(error)
        column = (re.findall(rf"\b{table}\.(\w+)", message) or [None])[-1]  # by a CHECK's name, too
        # of a value that SQLite does not have; Python 3.11 calls it another error than those before
        if isinstance(error, (OverflowError, sqlite3.InterfaceError, sqlite3.ProgrammingError)):
            column = next((name for name in row if not isinstance(row[name], (float, str)) and
                           not (isinstance(row[name], int) and -2**63 <= row[name] < 2**63)), None)
        if "FOREIGN" in message:
            column = self._pointing_nowhere(table, row)
            message = "names no row that is there"
        value: Any = row.get(column) if column else None
        if isinstance(value, float) and numpy.isnan(value):
            message = "is no number; missing values are never stored"
        return ModelError(f"is refused: {message}", table=table, row=self._row(table, row), column=column, value=value)

    def _pointing_nowhere(self, table: str, row: Mapping[str, Any]) -> Optional[str]:
        # columns: number, place, table, column here, column there
        for _, link in pandas.DataFrame(self.ask(f'PRAGMA foreign_key_list("{table}")')).groupby(0):
            where = " AND ".join(f"{there} = ?" for there in link[4])
            if not self.ask(f'SELECT 1 FROM "{link[2].iloc[0]}" WHERE {where}', *(row.get(name) for name in link[3])):
                return str(link[3].iloc[-1])
        return None

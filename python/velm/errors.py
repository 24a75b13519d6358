"""What the package raises. All of it is a ModelError but a missing or failing executable, which is a ProgramError."""

from typing import Any, Optional

import numpy


class ModelError(ValueError):
    """A model, or a change of one, that is not as it must be; the file is as it was. `table`, `row` (its key in words),
    `column` and `value` say where, as far as they apply; None where not."""

    def __init__(self, message: str, *, table: Optional[str] = None, row: Optional[str] = None,
                 column: Optional[str] = None, value: Any = None) -> None:
        place = ", ".join(part for part in (table and f"table {table}", row, column and f"column {column}") if part)
        shown = "" if value is None else f"{value!r} "
        super().__init__(f"{place}: {shown}{message}" if place else message)
        self.table, self.row, self.column, self.value = table, row, column, value


class ArgumentError(ModelError):
    """An argument that no model can have. `argument` is its name, `position` the place in it, counted from 0, or its
    key, and `value` what stands there; None where the whole is meant."""

    def __init__(self, argument: str, message: str, *, position: Any = None, value: Any = None) -> None:
        place = "" if position is None else f", position {position}"
        shown = "" if value is None else f"{value!r} "
        super().__init__(f"{argument}{place}: {shown}{message}")
        self.argument, self.position, self.value = argument, position, value


class ProgramError(RuntimeError):
    """The velm executable is missing, of another version, or has failed."""


def refuse_where(wrong: Any, argument: str, values: Any, message: str) -> None:
    """Raises ArgumentError for the first of `values` that is wrong; `wrong` has a bool for each."""
    if numpy.any(wrong):
        place = int(numpy.argmax(wrong))
        raise ArgumentError(argument, message, position=place, value=values[place])

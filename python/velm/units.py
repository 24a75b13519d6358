"""Units by name, through pint."""

import functools
import re
from typing import Any

from velm.errors import ArgumentError


@functools.lru_cache(maxsize=1)
def _registry() -> Any:
    import pint  # late: it takes longer to load than a small model to make

    registry = pint.UnitRegistry()
    registry.define("cfs = foot ** 3 / second")
    registry.define("MGD = 1e6 * gallon / day")
    return registry


@functools.lru_cache(maxsize=None)
def factor(unit: str, base: str) -> float:
    """What a value in `unit` is multiplied by to be in `base`: factor("ft3/s", "m3/s") is 0.028316846592.

    An exponent may follow its unit directly. Raises ArgumentError for what is no unit, or not one of that kind."""
    def parsed(name: str) -> Any:
        return _registry().parse_units(re.sub(r"(?<=[A-Za-z])-?\d+", lambda found: "**" + found[0], name))
    try:
        return float(_registry().convert(1.0, parsed(unit), parsed(base)))
    except Exception as error:  # pint's own errors have no common base, and its parser lets Python's through
        raise ArgumentError("unit", f"is no unit of {base}: {error}", value=unit) from error

"""Removing an item: what belongs to it goes, what comes after it moves up, and so does all that points there."""

from typing import Any

from velm.database import Database
from velm.network import ENDS, around

# columns that name an item without a foreign key; 0 stands for none, or for the world outside
POINTERS = {
    "segment": [("segment", "bottom_segment"), *((table, end) for table in ("flow_path", "exchange_pair")
                                                 for end in ENDS)],
    "flow_field": [("system", "solids_transport_field")],
    "system": [("model", "mass_balance_table_output")],
}


def remove(data: Database, table: str, *key: Any) -> None:
    """Removes a row of `table` by its key, whose last part is the number among its like."""
    owners = data.named(table, key)
    number = owners.pop("number")
    same_owner = "".join(f" AND {name} = {int(value)}" for name, value in owners.items())
    # tables of the user's own have no foreign keys into the model, or want to follow it
    related = [other for other in data.tables() if {table, *owners} <= set(data.columns(other))
               and data.ask(f'PRAGMA foreign_key_list("{other}")')]
    with data.transaction(defer=True):
        for other in related:
            if table == "segment":  # or each number that changes is looked for in all rows
                data.ask(f"CREATE INDEX velm_{other} ON {other} (segment)")
            if table in data.key(other):
                data.ask(f"DELETE FROM {other} WHERE {table} = ?{same_owner}", number)
            else:  # a boundary or load at the segment
                for row in data.ask(f"SELECT {', '.join(data.key(other))} FROM {other} WHERE {table} = ? "
                                    "ORDER BY number DESC", number):
                    remove(data, other, *row)
        if table == "segment":
            _lead_around(data, number)
        data.ask(f"DELETE FROM {table} WHERE number = ?{same_owner}", number)
        for other, column in [(table, "number"), *((other, table) for other in related)]:
            data.ask(f"UPDATE {other} SET {column} = {column} - 1 WHERE {column} > ?{same_owner}", number)
        for other, column in POINTERS.get(table, []):
            data.ask(f"UPDATE {other} SET {column} = iif({column} = ?1, 0, {column} - 1) WHERE {column} >= ?1", number)
        for other in related:
            data.ask(f"DROP INDEX IF EXISTS velm_{other}")


# Takes a segment out of the flow paths, whose water goes on past it, and out of the exchange pairs.
def _lead_around(data: Database, segment: int) -> None:
    for table in ("flow_path", "exchange_pair"):
        *owner, _ = data.key(table)
        for key in data.ask(f"SELECT DISTINCT {', '.join(owner)} FROM {table} WHERE ? IN ({', '.join(ENDS)})", segment):
            rows = data.frame(table).loc[key].reset_index(drop=True)
            left = around(rows, segment) if table == "flow_path" else rows[(rows[ENDS] != segment).all(axis=1)]
            replace_rows(data, table, dict(zip(owner, key)), left)


def replace_rows(data: Database, table: str, owner: Any, rows: Any) -> None:
    """Puts rows, numbered from 1, in the place of those that the owner has."""
    with data.transaction():
        data.ask(f"DELETE FROM {table} WHERE " + " AND ".join(f"{name} = ?" for name in owner), *owner.values())
        if len(rows):
            data.insert(table, **owner, number=range(1, len(rows) + 1), **{name: rows[name] for name in rows})

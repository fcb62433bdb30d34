"""Tables of PostgreSQL, through any connection of the DB-API."""

from __future__ import annotations

import re
from collections.abc import Sequence
from typing import Any

import numpy as np

from . import _sql
from ._interrupt import run_with
from ._sql import Answer, Column, Dialect

# Days from 1970 on; what is infinite cannot be subtracted from.
_DAYS = "CASE WHEN isfinite({0}) THEN {0} - DATE '1970-01-01' ELSE EXTRACT(EPOCH FROM {0}) END"

# The types of PostgreSQL by their number, which never changes, and their values as numbers.
_NUMBERS = {
    16: ("boolean", "CAST({} AS integer)"),
    20: ("bigint", "{}"),
    21: ("smallint", "{}"),
    23: ("integer", "{}"),
    700: ("real", "{}"),
    701: ("double precision", "{}"),
    1700: ("numeric", "{}"),
    1082: ("date", _DAYS),
    1083: ("time", "(EXTRACT(EPOCH FROM {}) * 1000000)"),
    1114: ("timestamp", "(EXTRACT(EPOCH FROM {}) * 1000000)"),
    1184: ("timestamp with time zone", "(EXTRACT(EPOCH FROM {}) * 1000000)"),
}
_TEXTS = {19: "name", 25: "text", 1042: "character", 1043: "character varying"}


def _quote_text(text: str) -> str:
    return "E'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"


DIALECT = Dialect(
    name="postgresql",
    quote='"',
    number=lambda value: f"float8 '{float(value)!r}'",
    text=_quote_text,
    is_nan="{} = float8 'NaN'",
    double="double precision",
    whole="integer",
)


class PostgresTable:
    """A table or query of PostgreSQL 14 or newer.

    Parameters
    ----------
    connection
        Of the DB-API, such as that of psycopg. In a transaction of ``REPEATABLE READ`` all rounds
        see the same rows; elsewhere rows that change are noticed, and the run ends.
    query
        The name of a table, or a SELECT.

    Examples
    --------
    >>> rows = PostgresTable(psycopg.connect("dbname=shop"), "customers")
    >>> bins = mb.fit(rows, target="churned")
    """

    dialect = DIALECT
    most_ranges = 65_536
    most_values = 524_288
    side_by_side = 1
    ignores_case = False

    def __init__(self, connection: Any, query: str) -> None:
        is_name = re.fullmatch(r'\s*(\w+|"[^"]+")(\.(\w+|"[^"]+"))*\s*', query)
        self._connection = connection
        self.query = f"SELECT * FROM {query}" if is_name else query.rstrip().rstrip(";")
        with connection.cursor() as cursor:
            cursor.execute(f"SELECT * FROM ({self.query}) AS q LIMIT 0")
            self.columns = [_describe(str(one[0]), one[1]) for one in cursor.description]

    def ask(self, queries: Sequence[str]) -> list[Answer]:
        """Run queries one after the other."""
        return [self._ask(query) for query in queries]

    def _ask(self, query: str) -> Answer:
        cancel = getattr(self._connection, "cancel_safe", None)
        cancel = cancel or getattr(self._connection, "cancel", None)
        return run_with(cancel, lambda: self._run(query))

    def _run(self, query: str) -> Answer:
        with self._connection.cursor() as cursor:
            cursor.execute(self.derive(query).query)
            names = [one[0] for one in cursor.description]
            rows = cursor.fetchall()
        columns = zip(*rows, strict=True) if rows else [()] * len(names)
        return {name: np.array(column) for name, column in zip(names, columns, strict=True)}

    def inline(self, rows: Sequence[Sequence[float]], names: Sequence[str]) -> str:
        """Write rows as VALUES."""
        return _sql.write_values(DIALECT, rows, names)

    def derive(self, query: str) -> PostgresTable:
        """Make the table of a query; nothing is run but for its columns."""
        return PostgresTable(self._connection, f"WITH {_sql.ROWS} AS ({self.query}) {query}")

    def wrap(self, table: PostgresTable) -> PostgresTable:
        """Make an engine of a table that was derived."""
        return table


def _describe(name: str, kind: int) -> Column:
    quoted = DIALECT.column(name)
    if kind in _NUMBERS:
        called, expression = _NUMBERS[kind]
        return Column(
            name, called, "number", f"CAST({expression.format(quoted)} AS double precision)"
        )
    if kind in _TEXTS:
        return Column(name, _TEXTS[kind], "text", f'CAST({quoted} AS text) COLLATE "C"')
    return Column(name, f"type {kind}", "other")

"""Tables of PostgreSQL, through any connection of the DB-API."""

from __future__ import annotations

import contextlib
import re
from collections.abc import Iterator, Mapping, Sequence
from typing import Any

import numpy as np

from . import _sql
from ._interrupt import run_with
from ._sql import Answer, Column, Dialect

# What is beyond the doubles cannot be cast to one.
_NUMERIC = (
    "CASE WHEN {0} = 'NaN' THEN {0} WHEN ABS({0}) < 2.4703282292062328e-324 THEN 0 "
    "WHEN {0} >= 1.797693134862315808e308 THEN numeric 'Infinity' "
    "WHEN {0} <= -1.797693134862315808e308 THEN numeric '-Infinity' ELSE {0} END"
)

# The types of PostgreSQL by their number, which never changes, and their values as numbers.
_NUMBERS = {
    16: ("boolean", "CAST({} AS integer)"),
    20: ("bigint", "{}"),
    21: ("smallint", "{}"),
    23: ("integer", "{}"),
    700: ("real", "{}"),
    701: ("double precision", "{}"),
    1700: ("numeric", _NUMERIC),
    1082: ("date", "EXTRACT(EPOCH FROM {})"),
    1083: ("time", "(EXTRACT(EPOCH FROM {}) * 1000000)"),
    1114: ("timestamp", "EXTRACT(EPOCH FROM {})"),
    1184: ("timestamp with time zone", "EXTRACT(EPOCH FROM {})"),
}
_TIMES = {1082, 1114, 1184}
_NAME = r'(\w+|"([^"]|"")+")'
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
        see the same rows; elsewhere rows that change are noticed, and the run ends. Without
        autocommit a transaction stays open afterwards, as after any query; what fails is undone to
        a savepoint, so it goes on.
    query
        The name of a table, or a SELECT. What `Bins.apply` makes has such a `query`, too.

    Attributes
    ----------
    query : str
        A SELECT for the rows.

    Examples
    --------
    >>> rows = PostgresTable(psycopg.connect("dbname=shop"), "customers")
    >>> bins = mb.fit(rows, target="churned")
    """

    dialect = DIALECT
    most_ranges = 65_536
    most_values = 524_288
    packs = False
    side_by_side = 1
    ignores_case = False
    longest_name = 63

    def __init__(self, connection: Any, query: str) -> None:
        is_name = re.fullmatch(rf"\s*{_NAME}(\s*\.\s*{_NAME})*\s*", query)
        self._connection = connection
        self.query = f"SELECT * FROM {query}" if is_name else query.rstrip().rstrip(";")
        with self._lend_cursor() as cursor:
            cursor.execute(f"SELECT * FROM ({self.query}\n) AS q LIMIT 0")
            self.columns = [_describe(str(one[0]), one[1]) for one in cursor.description]

    @contextlib.contextmanager
    def _lend_cursor(self) -> Iterator[Any]:
        """Lend a cursor. When its query fails, the transaction is what it was before."""
        with contextlib.closing(self._connection.cursor()) as cursor:
            if getattr(self._connection, "autocommit", False):
                yield cursor
                return
            cursor.execute("SAVEPOINT mcbinning")
            try:
                yield cursor
            except BaseException:
                with contextlib.suppress(Exception):  # what went wrong first is what matters
                    cursor.execute("ROLLBACK TO SAVEPOINT mcbinning")
                    cursor.execute("RELEASE SAVEPOINT mcbinning")
                raise
            cursor.execute("RELEASE SAVEPOINT mcbinning")

    def ask(self, queries: Sequence[str]) -> list[Answer]:
        """Run queries one after the other."""
        return [self._ask(query) for query in queries]

    def _ask(self, query: str) -> Answer:
        cancel = getattr(self._connection, "cancel_safe", None)
        cancel = cancel or getattr(self._connection, "cancel", None)
        return run_with(cancel, lambda: self._run(query))

    def _run(self, query: str) -> Answer:
        with self._lend_cursor() as cursor:
            cursor.execute(self._with_rows(query))
            names = [str(one[0]) for one in cursor.description]
            rows = [
                tuple(row.values()) if isinstance(row, Mapping) else row
                for row in cursor.fetchall()
            ]
        columns = zip(*rows, strict=True) if rows else [()] * len(names)
        return {name: np.array(column) for name, column in zip(names, columns, strict=True)}

    def expect(self, rows: int) -> None:
        """Count as many rows as there are."""

    def join(self, query: str, rows: Sequence[Sequence[float]], names: Sequence[str]) -> str:
        """Write a join with rows that are arrays, a column each."""
        arrays = ", ".join(
            f"CAST('{{{', '.join(cells)}}}' AS {'bigint' if is_whole else 'float8'}[])"
            for is_whole, cells in _sql.write_columns(rows)
        )
        return _sql.join_by_id(query, f"unnest({arrays}) AS t({', '.join(names)})", names)

    def derive(self, query: str) -> PostgresTable:
        """Make the table of a query; nothing is run but for its columns."""
        return PostgresTable(self._connection, self._with_rows(query))

    def _with_rows(self, query: str) -> str:
        return f"WITH {_sql.ROWS} AS ({self.query}\n) {query}"

    def __repr__(self) -> str:
        return f"<PostgresTable: {', '.join(column.name for column in self.columns)}>"

    def wrap(self, table: PostgresTable) -> PostgresTable:
        """Make an engine of a table that was derived."""
        return table


def _describe(name: str, kind: int) -> Column:
    quoted = DIALECT.column(name)
    if kind in _NUMBERS:
        called, expression = _NUMBERS[kind]
        number = f"CAST({expression.format(quoted)} AS double precision)"
        return Column(name, called, "number", number, is_time=kind in _TIMES)
    if kind in _TEXTS:
        return Column(name, _TEXTS[kind], "text", f'CAST({quoted} AS text) COLLATE "C"')
    return Column(name, f"type {kind}", "other")

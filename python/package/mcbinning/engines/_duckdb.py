"""Tables of DuckDB: relations, and so files and everything else that DuckDB reads."""

from __future__ import annotations

import re
import sys
from collections.abc import Sequence
from typing import Any

import numpy as np

from . import _sql
from ._interrupt import run_with
from ._sql import Answer, Column, Dialect

_WHOLE = {
    "TINYINT", "SMALLINT", "INTEGER", "BIGINT", "UTINYINT", "USMALLINT", "UINTEGER", "UBIGINT",
}  # fmt: skip
_REAL = {"FLOAT", "DOUBLE"}

# Seconds since 1970; the nearest doubles to nanoseconds are those of their texts.
_TIMES = {
    "DATE": "(date_diff('day', DATE '1970-01-01', {}) * 86400)",
    "TIMESTAMP": "(CAST(epoch_us({}) AS DOUBLE) / 1e6)",
    "TIMESTAMP WITH TIME ZONE": "(CAST(epoch_us({}) AS DOUBLE) / 1e6)",
    "TIMESTAMP_S": "(epoch_us({}) // 1000000)",
    "TIMESTAMP_MS": "(CAST(epoch_ms({}) AS DOUBLE) / 1e3)",
    "TIMESTAMP_NS": "(CAST(epoch_ns({}) AS VARCHAR) || 'e-9')",
}

# What is infinite would be missing by these functions.
_INFINITE = (
    "CASE WHEN {0} IS NULL OR isfinite({0}) THEN CAST({1} AS DOUBLE) "
    "WHEN {0} > DATE '1970-01-01' THEN CAST('inf' AS DOUBLE) ELSE CAST('-inf' AS DOUBLE) END"
)


def _quote_text(text: str) -> str:
    return "'" + text.replace("'", "''") + "'"


DIALECT = Dialect(
    name="duckdb",
    quote='"',
    number=_sql.approximate,
    text=_quote_text,
    is_nan="isnan({})",
    double="DOUBLE",
    whole="INTEGER",
)


class DuckDbTable:
    """A relation. Nothing is kept in its database.

    Parameters
    ----------
    relation
        Of DuckDB.
    connection
        The relation's, by which Ctrl-C stops a query; before DuckDB 2 a relation does not know it.
    """

    dialect = DIALECT
    most_ranges = 65_536
    most_values = 1_048_576
    packs = False
    side_by_side = 1
    ignores_case = True
    longest_name = sys.maxsize

    def __init__(self, relation: Any, connection: Any = None) -> None:
        self._relation = relation
        self._connection = getattr(relation, "_con", None) if connection is None else connection
        self.columns = [
            _describe(name, str(kind))
            for name, kind in zip(relation.columns, relation.types, strict=True)
        ]

    def ask(self, queries: Sequence[str]) -> list[Answer]:
        """Run queries one after the other; each uses all threads of the database."""
        return [self._ask(query) for query in queries]

    def _ask(self, query: str) -> Answer:
        cancel = getattr(self._connection, "interrupt", None)
        found = run_with(cancel, self.derive(query).fetchnumpy)
        return {name: np.asarray(column) for name, column in found.items()}

    def expect(self, rows: int) -> None:
        """Count as many rows as there are."""

    def join(self, query: str, rows: Sequence[Sequence[float]], names: Sequence[str]) -> str:
        """Write a join with rows that are lists, a column each."""
        lists = []
        for name, (is_whole, cells) in zip(names, _sql.write_columns(rows), strict=True):
            kind = "BIGINT" if is_whole else "DOUBLE"
            lists.append(f"unnest(CAST('[{', '.join(cells)}]' AS {kind}[])) AS {name}")
        return _sql.join_by_id(query, f"(SELECT {', '.join(lists)}) AS t", names)

    def derive(self, query: str) -> Any:
        """Make the relation of a query."""
        return self._relation.query(_sql.ROWS, query)

    def wrap(self, table: Any) -> DuckDbTable:
        """Make an engine of a table that was derived."""
        return DuckDbTable(table, self._connection)


def _describe(name: str, kind: str) -> Column:
    quoted = DIALECT.column(name)
    text = f"CAST({quoted} AS VARCHAR)"
    if kind == "VARCHAR" or kind.startswith("ENUM"):
        return Column(name, kind, "text", f'{text} COLLATE "C"')
    decimal = re.fullmatch(r"DECIMAL\((\d+),(\d+)\)", kind)
    if kind in _WHOLE or kind in _REAL or (decimal and int(decimal[1]) <= 15):
        number = quoted
    elif decimal or kind in ("HUGEINT", "UHUGEINT"):
        number = text  # the nearest double, which a division may miss
    elif kind == "BOOLEAN":
        number = f"CAST({quoted} AS INTEGER)"
    elif kind == "TIME":
        number = f"epoch_us({quoted})"
    elif kind in _TIMES:
        number = _INFINITE.format(quoted, _TIMES[kind].format(quoted))
    else:
        return Column(name, kind, "other")
    is_whole = kind in _WHOLE or kind == "BOOLEAN"
    return Column(name, kind, "number", f"CAST({number} AS DOUBLE)", is_whole, kind in _TIMES)

"""Data frames of Spark, classic and Connect: nothing but DataFrame and SQL is used."""

from __future__ import annotations

import contextlib
import inspect
import re
import sys
import uuid
from collections.abc import Sequence
from typing import Any

import numpy as np

from . import _sql
from ._interrupt import run_with
from ._sql import Answer, Column, Dialect

_WHOLE = {"tinyint", "smallint", "int", "bigint"}
_REAL = {"float", "double"}

# Seconds since 1970.
_TIMES = {
    "date": "(unix_date({}) * 86400L)",
    "timestamp": "(CAST(unix_micros({}) AS DOUBLE) / 1e6D)",
    "timestamp_ntz": (
        "(CAST(timestampdiff(MICROSECOND, TIMESTAMP_NTZ'1970-01-01 00:00:00', {}) AS DOUBLE)"
        " / 1e6D)"
    ),
}


# A text, the rows, the name of a column, a brace.
_WORDS = re.compile(
    rf"'(?:[^'\\]|\\.)*'|(?<=FROM )(?P<rows>`?{_sql.ROWS}\b`?)|`(?:[^`]|``)*`|[{{}}]", re.DOTALL
)

# Stands for the dollar in names: `${...}` in a query is replaced even within quotes.
_DOLLAR = "\ue024"


def _quote_text(text: str) -> str:
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"


def write_query(query: str) -> str:
    """Write a query as a template in which only `{rows}` stands for something else.

    What a session reads in its own way, such as backslashes, is written as bytes.
    """

    def write(word: re.Match[str]) -> str:
        if word["rows"]:
            return "{rows}"
        text = _as_bytes(word[0]) if word[0][0] == "'" else word[0].replace("$", _DOLLAR)
        return text.replace("{", "{{").replace("}", "}}")

    return _WORDS.sub(write, query)


def _as_bytes(quoted: str) -> str:
    if not re.search(r"[\\$]", quoted):
        return quoted
    text = re.sub(r"\\u([0-9A-F]{4})|\\(.)", _unescape, quoted[1:-1], flags=re.DOTALL)
    return f"CAST(X'{text.encode().hex()}' AS STRING)"


def _unescape(found: re.Match[str]) -> str:
    return chr(int(found[1], 16)) if found[1] else found[2]


DIALECT = Dialect(
    name="spark",
    quote="`",
    number=lambda value: _sql.approximate(value) + "D",
    text=_quote_text,
    is_nan="isnan({})",
    double="DOUBLE",
    whole="INT",
    shift="shiftleft({}, {})",
    spread="posexplode(array({}))",
    drops_first=True,
)


class SparkTable:
    """A data frame, which each round reads anew: cache one that is costly to make."""

    dialect = DIALECT
    most_ranges = 8_192  # every task sends so many to others
    most_values = 16_384
    packs = True
    most_alone = 1_048_576  # so many rows are read by one task for the attributes of a query
    side_by_side = sys.maxsize  # in one job or two, and four where all values are collected
    longest_name = sys.maxsize

    def __init__(self, frame: Any) -> None:
        self._frame = self._counted = frame
        self.columns = [
            _describe(field.name, field.dataType.simpleString()) for field in frame.schema.fields
        ]

    @property
    def ignores_case(self) -> bool:
        """Whether names that differ in case alone are one, as they are by default."""
        told = self._frame.sparkSession.conf.get("spark.sql.caseSensitive", "false")
        return str(told).lower() != "true"

    def ask(self, queries: Sequence[str]) -> list[Answer]:
        """Run queries as one job."""
        numbered = (f"SELECT q.*, {i} AS query FROM ({one}) AS q" for i, one in enumerate(queries))
        session = self._frame.sparkSession
        views: list[str] = []
        try:
            union = _derive(self._counted, " UNION ALL ".join(numbered), views)
            found = _collect(session, union)
        finally:
            for view in views:
                session.catalog.dropTempView(view)
        place = found.pop("query")
        return [
            {name: column[place == i] for name, column in found.items()}
            for i in range(len(queries))
        ]

    def join(self, query: str, rows: Sequence[Sequence[float]], names: Sequence[str]) -> str:
        """Write a look-up in arrays: of the place of each r among the rows, then of what they have.

        A join would take several times as long, and what a filter asks for would be computed
        twice, below it too, but for the term that depends on the partition.
        """
        most = max(int(row[0]) for row in rows)
        places = np.zeros(most + 3, dtype=np.int64)  # 0 stands for none: -1, and what is beyond
        places[[int(row[0]) + 1 for row in rows]] = np.arange(1, len(rows) + 1)
        place = f"{_array(places.tolist())}[LEAST(r, {most + 1}) + 1]"
        columns = ", ".join(
            f"{_array([rows[0][i], *(row[i] for row in rows)])}[i] AS {name}"
            for i, name in enumerate(names)
            if i > 0
        )
        return (
            f"SELECT v, c, w, {columns} FROM (SELECT v, c, w, "
            f"{place} + 0 * spark_partition_id() AS i FROM ({query}) AS q) AS q WHERE i > 0"
        )

    def derive(self, query: str) -> Any:
        """Make the data frame of a query; in Connect of Spark 3.5 it reads a temporary view."""
        return _derive(self._frame, query, [])

    def expect(self, rows: int) -> None:
        """Have few rows counted by one task, which has nothing to send to others."""
        if rows <= self.most_alone:
            self._counted = self._frame.coalesce(1)

    def wrap(self, table: Any) -> SparkTable:
        """Make an engine of a table that was derived."""
        return SparkTable(table)


def _array(cells: Sequence[float]) -> str:
    """Write an array, as a text that is read once; as a table it is left out of printed plans."""
    [(is_whole, numbers)] = _sql.write_columns([[cell] for cell in cells])
    kind = "INT" if is_whole else "DOUBLE"
    return (
        f"(SELECT CAST(split(x, ',') AS ARRAY<{kind}>) FROM VALUES ('{','.join(numbers)}') AS t(x))"
    )


def _derive(frame: Any, query: str, views: list[str]) -> Any:
    """Make the data frame of a query; adds the names of the views that it will read.

    A session gives up what it has cached of a data frame when a view of that is dropped: so views
    are of another one, with the same rows.
    """
    rows = _rename(frame, "$", _DOLLAR).where("true")
    template, session = write_query(query), rows.sparkSession
    if _takes_frames(session):
        return _rename(session.sql(template, rows=rows), _DOLLAR, "$")
    views.append(f"mcbinning_{uuid.uuid4().hex}")
    rows.createOrReplaceTempView(views[-1])
    return _rename(session.sql(template.format(rows=views[-1])), _DOLLAR, "$")


def _takes_frames(session: Any) -> bool:
    """Whether data frames may stand in queries: not in Connect of Spark 3.5."""
    kinds = {one.kind for one in inspect.signature(session.sql).parameters.values()}
    return inspect.Parameter.VAR_KEYWORD in kinds


def _rename(frame: Any, old: str, new: str) -> Any:
    if not any(old in name for name in frame.columns):
        return frame
    return frame.toDF(*(name.replace(old, new) for name in frame.columns))


def _collect(session: Any, frame: Any) -> Answer:
    """Get the rows of a data frame, by a tagged job that Ctrl-C stops."""
    tag = f"mcbinning-{uuid.uuid4().hex}"
    without_tags = contextlib.suppress(RuntimeError)  # Spark 3.5 without Connect stops all jobs

    def run() -> Answer:  # in a thread of its own, and the tag is for its jobs alone
        with without_tags:
            session.addTag(tag)
        return _columns_of(frame)

    def cancel() -> None:
        with without_tags:
            session.interruptTag(tag)

    return run_with(cancel, run)


def _columns_of(frame: Any) -> Answer:
    if hasattr(frame, "toArrow"):  # from Spark 4
        table = frame.toArrow()
        return {name: table[name].to_numpy() for name in table.column_names}
    rows = frame.collect()
    columns = zip(*rows, strict=True) if rows else [()] * len(frame.columns)
    return {name: np.array(column) for name, column in zip(frame.columns, columns, strict=True)}


def _describe(name: str, kind: str) -> Column:
    quoted = DIALECT.column(name)
    if kind == "string":
        return Column(name, kind, "text", quoted)
    if kind in _WHOLE or kind in _REAL or kind.startswith("decimal"):
        number = quoted
    elif kind == "boolean":
        number = f"CAST({quoted} AS INT)"
    elif kind in _TIMES:
        number = _TIMES[kind].format(quoted)
    else:
        return Column(name, kind, "other")
    is_whole = kind in _WHOLE or kind == "boolean"
    return Column(name, kind, "number", f"CAST({number} AS DOUBLE)", is_whole, kind in _TIMES)

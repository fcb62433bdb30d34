"""Queries over the rows of an engine: what is counted, in the words of its SQL."""

from __future__ import annotations

from collections.abc import Callable, Sequence
from dataclasses import dataclass
from typing import Any, Literal, Protocol

import numpy as np

Array = np.ndarray[Any, Any]
Answer = dict[str, Array]

# The rows that are binned, in a query.
ROWS = "mcbinning_rows"

# A double that stands for a missing value wherever bins are made.
_LOWEST = float(np.finfo(np.float64).min)


@dataclass(frozen=True)
class Dialect:
    """What SQL is called in an engine. Patterns are filled with an expression.

    Attributes
    ----------
    name : str
        That of `Bins.to_sql`.
    quote : str
        What stands around the name of a column.
    number, text : callable
        Write a double, bit by bit, and a text.
    is_nan : str
        A condition.
    double, whole : str
        The types of 64 and of 32 bits.
    shift : str
        The first of two whole numbers, by as many bits to the left as the second says.
    spread : str
        What makes of each row one for each of some values: their place, and the value. Empty where
        a query for each of them is as good.
    drops_first : bool
        Whether nothing is computed of a row before a condition beneath has left it out, and a
        quotient may round to zero.
    """

    name: str
    quote: str
    number: Callable[[float], str]
    text: Callable[[str], str]
    is_nan: str
    double: str
    whole: str
    shift: str = "({} << {})"
    spread: str = ""
    drops_first: bool = False

    def column(self, name: str) -> str:
        """Quote the name of a column."""
        return self.quote + name.replace(self.quote, self.quote * 2) + self.quote


@dataclass(frozen=True)
class Column:
    """A column of an engine's table.

    Attributes
    ----------
    name, type : str
        As the engine calls them.
    role : {"number", "text", "other"}
        What it can be used as.
    expression : str
        Its values as doubles, or as text.
    is_whole : bool
        Whether they are small whole numbers, so that there is no NaN among them to look for.
    is_time : bool
        Whether they are dates, whose numbers are seconds since 1970.
    """

    name: str
    type: str
    role: Literal["number", "text", "other"]
    expression: str = ""
    is_whole: bool = False
    is_time: bool = False


class Engine(Protocol):
    """A table in an engine that answers queries.

    Attributes
    ----------
    dialect, columns
        Its SQL, and what the table has.
    most_ranges, most_values : int
        How much it should answer at a time: ranges, or values where few rows are left.
    packs : bool
        Whether little should leave a task, as it goes to another machine.
    side_by_side : int
        How many attributes are asked about at a time, whose answers are held together.
    ignores_case : bool
        Whether names of columns that differ in case alone are the same to it.
    longest_name : int
        How many bytes the name of a column may have before the rest is cut off.
    """

    dialect: Dialect
    columns: list[Column]
    most_ranges: int
    most_values: int
    packs: bool
    side_by_side: int
    longest_name: int

    @property
    def ignores_case(self) -> bool: ...

    def ask(self, queries: Sequence[str]) -> list[Answer]:
        """Run queries over `ROWS`: their columns are numbers without NULL, or texts.

        All have the same columns.

        Raises
        ------
        KeyboardInterrupt
            On Ctrl-C, when the engine has been told to stop.
        """

    def expect(self, rows: int) -> None:
        """Hear how many rows there are, before all but the first query."""

    def join(self, query: str, rows: Sequence[Sequence[float]], names: Sequence[str]) -> str:
        """Write the query for v, c and w of cases, and the row of a table whose first number is r.

        Cases without such a row are dropped. All r are whole numbers from -1 on, or NULL.
        """

    def derive(self, query: str) -> Any:
        """Make a table of the engine of a query."""

    def wrap(self, table: Any) -> Engine:
        """Make an engine of a table that was derived."""


@dataclass(frozen=True)
class MissingValues:
    """Values that are missing: numbers, texts, and an interval, whose open ends are None."""

    numbers: Sequence[float] = ()
    texts: Sequence[str] = ()
    interval: tuple[float | None, float | None] | None = None


def approximate(value: float) -> str:
    """Write a double with an exponent, which makes it one in most dialects."""
    text = repr(float(value))
    return text if "e" in text else text + "e0"


def value_of(dialect: Dialect, column: Column, missing: MissingValues) -> str:
    """Write the value of a column: NULL where it is missing."""
    value = column.expression
    if column.role == "text":
        gone = [f"{value} = {dialect.text(text)}" for text in missing.texts]
        return _without(gone, value)
    gone = [] if column.is_whole else [dialect.is_nan.format(value)]
    numbers = missing.numbers if column.is_whole else (_LOWEST, *missing.numbers)
    gone += [f"{value} = {dialect.number(number)}" for number in numbers]
    if missing.interval is not None:
        low, high = missing.interval
        ends = [f"{value} >= {dialect.number(low)}"] if low is not None else []
        ends += [f"{value} <= {dialect.number(high)}"] if high is not None else []
        gone.append(f"({' AND '.join(ends) or '1 = 1'})")
    return _without(gone, value)


def _without(gone: Sequence[str], value: str) -> str:
    return f"CASE WHEN {' OR '.join(gone)} THEN NULL ELSE {value} END" if gone else value


def with_one_zero(dialect: Dialect, value: str) -> str:
    """Write a value for grouping, where zeros of both signs are the same one."""
    zero = dialect.number(0.0)
    return f"CASE WHEN {value} = {zero} THEN {zero} ELSE {value} END"


def code_of(dialect: Dialect, value: str, categories: Sequence[Any], unknown: int = -1) -> str:
    """Write the place of a value among categories; -1 if it is missing, else `unknown`."""
    write = dialect.text if categories and isinstance(categories[0], str) else dialect.number
    whens = " ".join(f"WHEN {write(name)} THEN {code}" for code, name in enumerate(categories))
    other = "-1" if unknown == -1 else f"CASE WHEN {value} IS NULL THEN -1 ELSE {unknown} END"
    return f"CASE {value} {whens} ELSE {other} END" if categories else "-1"


def number_of_code(dialect: Dialect, code: str) -> str:
    """Write a code as a value that is binned."""
    return f"CAST(NULLIF({code}, -1) AS {dialect.double})"


def round_weight(value: str, truncates: bool) -> str:
    """Write a weight as a whole number."""
    return f"FLOOR({value})" if truncates else f"FLOOR({value} + 0.5e0)"


def query_weights(value: str, rounded: str, most: float) -> str:
    """Ask for the number of rows, of those that their weight drops, and for the extremes.

    Parameters
    ----------
    value
        The weight; NULL where it is missing.
    rounded
        The whole number that a weight called x becomes.
    most
        What a weight counts as in the total at most, so that this cannot overflow.
    """
    part = f"CASE WHEN {rounded} > 0 THEN LEAST({rounded}, {approximate(most)}) END"
    return (
        "SELECT COUNT(*) AS rows_all, COUNT(CASE WHEN x IS NULL THEN 1 END) AS rows_missing, "
        "COUNT(CASE WHEN x = 0 THEN 1 END) AS rows_zero, "
        f"COUNT(CASE WHEN x > 0 AND {rounded} <= 0 THEN 1 END) AS rows_rounded, "
        "COALESCE(MIN(x), 0) AS lowest, COALESCE(MAX(x), 0) AS highest, "
        f"COALESCE(SUM({part}), 0) AS total "
        f"FROM (SELECT {value} AS x FROM {ROWS}) AS q"
    )


def query_categories(dialect: Dialect, column: Column, value: str, kept: str, limit: int) -> str:
    """Ask for the different values of a column, but not for more than a limit.

    Numbers as they are go first, as there is less to do for them then. Texts as they are would be
    compared by their column's collation.
    """
    name = dialect.column(column.name)
    first = f"{column.expression} AS {name}" if column.role == "text" else name
    raw = f"SELECT DISTINCT {first} FROM {ROWS} WHERE {kept}"
    return (
        f"SELECT DISTINCT x AS category FROM (SELECT {value} AS x FROM ({raw}) AS q) AS q "
        f"WHERE x IS NOT NULL LIMIT {limit}"
    )


@dataclass(frozen=True)
class Cases:
    """An attribute, the codes of a target and the weights: what one summary is about.

    Attributes
    ----------
    value, code, weight : str
        Expressions; the code is -1 where there is no class.
    kept : str
        A condition: which rows have a weight.
    is_weighted : bool
        Whether rows can weigh anything but 1.
    """

    value: str
    code: str
    weight: str
    kept: str
    is_weighted: bool

    def write(self) -> str:
        """Write the query for the cases."""
        return self._select(f"{self.value} AS v")

    def write_with(self, dialect: Dialect, values: Sequence[str]) -> str:
        """Write the same for several values: a is which one."""
        names = [f"v{i}" for i in range(len(values))]
        columns = ", ".join(f"{value} AS {name}" for value, name in zip(values, names, strict=True))
        return (
            f"SELECT {dialect.spread.format(', '.join(names))} AS (a, v), c, w "
            f"FROM ({self._select(columns)}) AS q"
        )

    def _select(self, values: str) -> str:
        return (
            f"SELECT {values}, {self.code} AS c, {self.weight} AS w FROM {ROWS} WHERE {self.kept}"
        )


# Ranges by the sign of their values; a missing value is beside them.
MISSING, NEGATIVE, ZERO, POSITIVE = -1, 0, 1, 2
SIGNS = 4

# What a division of a range is made of: how it is called and what the first of its parts is, how
# many there are, what values are multiplied with for their size (1 or, where negative ones are
# divided by their logarithms, -1), whether they are, the least and the largest size, the least one
# or its logarithm, how far it is from there to the largest, and what is taken for nearer sizes, as
# some engines refuse a quotient that rounds to zero.
DIVISION = ("id", "base", "parts", "sign", "is_log", "small", "large", "low", "span", "least")


# That many divisions are written into a query.
_FEW = 2


# One case within the other, as Spark takes twice as long for several branches of one.
_SIGN = (
    f"CASE WHEN v IS NULL THEN {MISSING} ELSE CASE WHEN v < 0 THEN {NEGATIVE} "
    f"ELSE CASE WHEN v = 0 THEN {ZERO} ELSE {POSITIVE} END END END"
)


def divide(engine: Engine, query: str, divisions: Sequence[Sequence[float]]) -> str:
    """Write the query that gives the cases of some ranges the narrower range that they are in.

    Parameters
    ----------
    query
        Gives cases the range that they are in, r. Those of other ranges are dropped.
    divisions
        Rows of `DIVISION`.
    """
    dialect = engine.dialect
    if len(divisions) <= _FEW and not dialect.drops_first:
        places = " ".join(f"WHEN {row[0]} THEN {_place_with(dialect, row)}" for row in divisions)
        ids = ", ".join(str(row[0]) for row in divisions)
        return (
            f"SELECT CASE q.r {places} END AS r, q.v, q.c, q.w FROM ({query}) AS q "
            f"WHERE q.r IN ({ids}) AND q.c >= 0"
        )
    names = list(DIVISION)
    size, least = "q.v", "q.least"
    if any(row[DIVISION.index("sign")] < 0 for row in divisions):
        size = "q.sign * q.v"
    else:
        names.remove("sign")
    if dialect.drops_first:
        least = dialect.number(0.0)
        for name in "small", "large", "least":
            names.remove(name)
    else:
        size = f"LEAST(GREATEST({size}, q.small), q.large)"
    if any(row[DIVISION.index("is_log")] for row in divisions):
        size = f"CASE WHEN q.is_log = 1 THEN LN({size}) ELSE {size} END"
    else:
        names.remove("is_log")
    rows = [[row[DIVISION.index(name)] for name in names] for row in divisions]
    place = _place(dialect, size, "q.low", "q.span", least, "q.parts", "q.base")
    return (
        f"SELECT {place} AS r, q.v, q.c, q.w FROM ({engine.join(query, rows, names)}) AS q "
        "WHERE q.c >= 0"
    )


def _place_with(dialect: Dialect, division: Sequence[float]) -> str:
    """Write the place in one division, whose numbers are known: no table is joined for it."""
    _, base, parts, sign, is_log, _, _, low, span, least = division
    size = "q.v" if sign > 0 else "(-q.v)"
    return _place(dialect, f"LN({size})" if is_log else size, dialect.number(low),
                  dialect.number(span), dialect.number(least), str(parts), str(base))  # fmt: skip


def _place(
    dialect: Dialect, size: str, low: str, span: str, least: str, parts: str, base: str
) -> str:
    part = f"FLOOR(GREATEST({least}, {size} - {low}) / {span} * {parts})"
    return f"{base} + CAST(LEAST({parts} - 1, {part}) AS {dialect.whole})"


def open_ranges(query: str) -> str:
    """Write the query for cases with the ranges that every summary begins with."""
    return f"SELECT {_SIGN} AS r, v, c, w FROM ({query}) AS q"


def open_ranges_of_each(query: str) -> str:
    """Write the same for cases of several attributes, a: `SIGNS` ranges for each, from 0 on."""
    return f"SELECT {SIGNS} * a + {-MISSING} + {_SIGN} AS r, v, c, w FROM ({query}) AS q"


def with_value(dialect: Dialect, query: str, key: str = "") -> str:
    """Write the query for cases that have a value and a class; a key is kept as r."""
    value = with_one_zero(dialect, "v")
    first = f"{key} AS r, " if key else ""
    return f"SELECT {first}{value} AS v, c, w FROM ({query}) AS q WHERE v IS NOT NULL AND c >= 0"


def count_signs(dialect: Dialect, query: str, is_weighted: bool) -> str:
    """Ask for the same as `count`, and for the mean logarithm of the sizes."""
    size = "LN(CASE WHEN v <> 0 THEN ABS(v) END)"
    return count(dialect, query, is_weighted, f", COALESCE(AVG({size}), 0) AS middle")


def count(dialect: Dialect, query: str, is_weighted: bool, more: str = "") -> str:
    """Ask for the weight, the rows and the ends of every range and class."""
    return (
        f"SELECT r, c, {_sums(dialect, is_weighted)}, "
        f"CAST(COALESCE(MIN(v), 0) AS {dialect.double}) AS lo, "
        f"CAST(COALESCE(MAX(v), 0) AS {dialect.double}) AS hi{more} "
        f"FROM ({query}) AS q GROUP BY r, c"
    )


def count_values(dialect: Dialect, query: str, is_weighted: bool, limit: int, key: str = "") -> str:
    """Ask for the same of every value and class, but for no more than one above a limit."""
    return (
        f"SELECT {key or 0} AS r, c, {_sums(dialect, is_weighted)}, v AS lo, v AS hi "
        f"FROM ({query}) AS q GROUP BY {key and key + ', '}v, c LIMIT {limit + 1}"
    )


def _sums(dialect: Dialect, is_weighted: bool) -> str:
    weight = f"CAST(SUM(w) AS {dialect.double}) AS w, " if is_weighted else ""
    return f"{weight}COUNT(*) AS n"


def weights_of(answer: Answer) -> Array:
    """Get the weights of an answer: without weights, the numbers of rows."""
    return answer.get("w", answer["n"]).astype(np.float64)


def join_by_id(query: str, table: str, names: Sequence[str]) -> str:
    """Write a join with a table of some columns, t, whose first one is r."""
    columns = ", ".join(f"t.{name}" for name in names)
    return f"SELECT q.v, q.c, q.w, {columns} FROM ({query}) AS q JOIN {table} ON q.r = t.{names[0]}"


def write_columns(rows: Sequence[Sequence[float]]) -> list[tuple[bool, list[str]]]:
    """Write the columns of some rows: whether their numbers are whole, and each bit by bit.

    Engines plan with a long text of all numbers of a column in a small part of the time that they
    take with VALUES, where each is an expression of its own.
    """
    return [
        (all(isinstance(cell, int) for cell in column), [repr(cell) for cell in column])
        for column in zip(*rows, strict=True)
    ]


def count_distinct(dialect: Dialect, cases: Cases) -> str:
    """Ask for the number of different values of cases with a value and a class."""
    return f"SELECT COUNT(DISTINCT v) AS n FROM ({with_value(dialect, cases.write())}) AS q"


def place_among(dialect: Dialect, cut_points: Sequence[float]) -> str:
    """Write the place of a value v: 2 i below cut point i, 2 i + 1 at it, -1 if missing."""
    whens = [
        f"WHEN v {comparison} {dialect.number(cut)} THEN {2 * i + place}"
        for i, cut in enumerate(cut_points)
        for place, comparison in enumerate("<=")
    ]
    return f"CASE WHEN v IS NULL THEN {MISSING} {' '.join(whens)} ELSE {2 * len(cut_points)} END"


def place_cases(cases: Cases, dialect: Dialect, cut_points: Sequence[float]) -> str:
    """Write the query for cases with their places as ranges."""
    place = place_among(dialect, cut_points)
    return f"SELECT {place} AS r, v, c, w FROM ({cases.write()}) AS q"

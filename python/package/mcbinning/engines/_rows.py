"""The rows of an engine's table: what they weigh, and their categories."""

from __future__ import annotations

from collections.abc import Iterator, Sequence
from dataclasses import dataclass
from typing import Any

import numpy as np

from .. import _core
from .._errors import WeightError, make_error
from . import _plan, _sql
from ._sql import Array, Cases, Column, Engine, MissingValues

_MOST_CATEGORIES = 256


@dataclass(frozen=True)
class Weights:
    """What the weights of the rows are, in SQL, and what they come to.

    Attributes
    ----------
    rounded, kept : str
        The whole number that a row weighs, and the condition that it has one.
    records : int
        All rows.
    dropped : dict
        How many have no weight, by reason as a bin file says it.
    total, largest : float
        Of the rounded weights, and of the weights as they are.
    """

    rounded: str
    kept: str
    records: int
    dropped: dict[str, int]
    total: float
    largest: float
    is_weighted: bool

    def cases(self, value: str, code: str) -> Cases:
        """Make cases of expressions for the value and for the code of the class."""
        return Cases(value, code, self.rounded, self.kept, self.is_weighted)


def weigh(
    engine: Engine, column: Column | None, missing: MissingValues, truncates: bool
) -> Weights:
    """Count the rows and their weight, and refuse weights that make no sense."""
    if column is None:
        value = rounded = engine.dialect.number(1.0)
        kept = "1 = 1"
    else:
        value = _sql.value_of(engine.dialect, column, missing)
        rounded = _sql.round_weight(f"({value})", truncates)
        kept = f"{rounded} > 0"
    rounded_x = _sql.round_weight("x", truncates)
    [answer] = engine.ask([_sql.query_weights(value, rounded_x, 2.0 * _plan.LARGEST_WEIGHT)])
    found = {name: float(numbers[0]) for name, numbers in answer.items()}
    records = int(found["rows_all"])
    engine.expect(records)
    name = "" if column is None else column.name
    for weight in found["lowest"], found["highest"]:
        if weight < 0 or np.isinf(weight):
            kind = "negative" if weight < 0 else "infinite"
            text = (
                f"the weight {weight:g} in column {name!r} is {kind}; weights are numbers from 0 up"
            )
            raise make_error("bad-weight", "", name, f"{weight:g}", text)
    dropped = {
        "missing_weight": int(found["rows_missing"]),
        "zero_weight": int(found["rows_zero"]),
        "weight_rounded_to_zero": int(found["rows_rounded"]),
    }
    if 0 < records == sum(dropped.values()):
        counts = "{} missing, {} zero, {} rounded to zero".format(*dropped.values())
        raise make_error("no-records", "", name, "", f"no record has a usable weight: {counts}")
    if found["total"] > _plan.LARGEST_WEIGHT:
        raise WeightError(
            f"the weights in column {name!r} sum up to more than 2^51, and the largest is "
            f"{found['highest']:g}; what an engine counts is exact up to there, so divide them"
        )
    return Weights(
        rounded, kept, records, dropped, found["total"], found["highest"], column is not None
    )


def find_categories(engine: Engine, column: Column, missing: MissingValues, kept: str) -> list[Any]:
    """Find the categories of a column in ascending order, or one more than there may be."""
    value = _sql.value_of(engine.dialect, column, missing)
    if column.role == "number":
        value = _sql.with_one_zero(engine.dialect, f"({value})")
    query = _sql.query_categories(engine.dialect, column, value, kept, _MOST_CATEGORIES + 1)
    [answer] = engine.ask([query])
    kind = str if column.role == "text" else float
    return sorted(kind(category) for category in answer["category"])


def add_codes(table: _core.Table, name: str, categories: list[Any], codes: Array) -> None:
    """Add a column of categories; a code that is none of theirs, or NaN, is missing."""
    known = np.where(codes < len(categories), codes, -1).astype(np.int16)
    table.add_dictionary(name, known, categories, True)


def other_names(names: Sequence[str]) -> Iterator[str]:
    """Yield names that are not among others."""
    name = "weight"
    while True:
        if name not in names:
            yield name
        name += "_"

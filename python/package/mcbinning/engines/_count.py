"""What is counted of the cases of an attribute, and how several are counted in one query.

An engine that has to read, decode and take apart its rows for each query does so once for many
attributes: each row becomes as many cases, and the ranges of all attributes follow one another as
if they were of one.
"""

from __future__ import annotations

from collections.abc import Sequence
from dataclasses import dataclass
from typing import Literal

import numpy as np

from . import _sql
from ._pack import Packing
from ._sql import Answer, Cases, Engine

# So many attributes in one query at most, as their divisions are written into it, and of so many
# letters: what engines make of longer ones is too large for them to compile.
_TOGETHER = 16
_LETTERS = 4_000

Division = tuple[float, ...]


@dataclass(frozen=True)
class Count:
    """A question about the cases of an attribute.

    Attributes
    ----------
    cases : Cases
        The cases.
    levels : tuple of sequences
        How their ranges by sign are divided, then the parts: rows of `_sql.DIVISION`.
    by : {"sign", "range", "value"}
        What is counted; values without levels are all there are.
    packing : Packing, optional
        How weights of ranges are packed, where nothing else is asked for.
    limit : int
        How many values there may be, before it does not matter which ones are missing.
    """

    cases: Cases
    levels: tuple[Sequence[Division], ...]
    by: Literal["sign", "range", "value"]
    packing: Packing | None = None
    limit: int = 0


def ask(engine: Engine, counts: Sequence[Count], together: int = _TOGETHER) -> list[Answer]:
    """Have an engine count.

    Parameters
    ----------
    engine, counts
        What counts, and what is counted.
    together
        How many counts may share a query, where the engine is better at that.

    Returns
    -------
    list of dict
        Columns: the range `r` and the class `c`, weight `w` and rows `n`, the ends `lo` and `hi`,
        and `middle` by sign. Of packed weights only `r`, ascending, and `weights` of shape
        (ranges, classes).
    """
    found: dict[int, Answer] = {}
    for is_packed in False, True:
        groups = _group(counts, is_packed, together if engine.dialect.spread else 1)
        if not groups:
            continue
        texts = [_write(engine, [counts[i] for i in group]) for group in groups]
        cut_off: list[int] = []
        for group, answer in zip(groups, engine.ask(texts), strict=True):
            alike = [counts[i] for i in group]
            if len(group) > 1 and _is_cut_off(answer, alike):
                cut_off += group
            else:
                found |= zip(group, _read(answer, alike), strict=True)
        found |= zip(cut_off, ask(engine, [counts[i] for i in cut_off], 1), strict=True)
    return [found[i] for i in range(len(counts))]


def _group(counts: Sequence[Count], is_packed: bool, most: int) -> list[list[int]]:
    """Find which counts are packed or not, and of them which are asked for together."""
    groups: dict[object, list[list[int]]] = {}
    letters: dict[object, int] = {}
    for i, count in enumerate(counts):
        if (count.packing is not None) != is_packed:
            continue
        cases = count.cases
        kind = (cases.code, cases.weight, cases.kept, count.by, len(count.levels))
        alike = groups.setdefault(kind, [])
        letters[kind] = letters.get(kind, 0) + len(cases.value)
        if not alike or len(alike[-1]) == most or letters[kind] > _LETTERS:
            alike.append([])
            letters[kind] = len(cases.value)
        alike[-1].append(i)
    return [group for alike in groups.values() for group in alike]


def _write(engine: Engine, counts: Sequence[Count]) -> str:
    """Write the query for counts that are alike."""
    dialect, first = engine.dialect, counts[0]
    is_weighted = first.cases.is_weighted
    key = ""  # of the attribute, where values of several are counted
    if len(counts) == 1:
        query = first.cases.write()
        has_ranges = first.by != "value" or first.levels
        query = _sql.open_ranges(query) if has_ranges else _sql.with_value(dialect, query)
    else:
        query = first.cases.write_with(dialect, [count.cases.value for count in counts])
        key = "r" if first.by == "value" else ""
        if key and not first.levels:
            query = _sql.with_value(dialect, query, "a")
        else:
            query = _sql.open_ranges_of_each(query)
    for divisions in _join_levels(counts) if len(counts) > 1 else first.levels:
        query = _sql.divide(engine, query, divisions)
    if first.by == "sign":
        return _sql.count_signs(dialect, query, is_weighted)
    if first.by == "value":
        limit = sum(count.limit for count in counts)
        return _sql.count_values(dialect, query, is_weighted, limit, key)
    packing = _join_packing(counts)
    if packing is not None:
        return packing.count(dialect, query, is_weighted)
    return _sql.count(dialect, query, is_weighted)


def _join_packing(counts: Sequence[Count]) -> Packing | None:
    packings = [count.packing for count in counts if count.packing is not None]
    return max(packings, key=lambda packing: packing.bits) if packings else None


def _join_levels(counts: Sequence[Count]) -> list[list[Division]]:
    """Put the divisions of attributes one after the other, as if all were of one.

    Where values are counted, the last range of each is the place of its attribute.
    """
    levels: list[list[Division]] = []
    for level in range(len(counts[0].levels)):
        above, begins = _begins(counts, level), _begins(counts, level + 1)
        levels.append(
            [
                (called + before, begin if _is_last(counts, level) else base + begin, *rest)
                for count, before, begin in zip(counts, above, begins, strict=True)
                for called, base, *rest in count.levels[level]
            ]
        )
    return levels


def _begins(counts: Sequence[Count], level: int) -> list[int]:
    """Find what the ranges of each attribute begin with after some levels."""
    if level == 0:
        return [_sql.SIGNS * place - _sql.MISSING for place in range(len(counts))]
    if _is_last(counts, level - 1):
        return list(range(len(counts)))
    parts = [sum(int(division[2]) for division in count.levels[level - 1]) for count in counts]
    return [sum(parts[:place]) for place in range(len(parts))]


def _is_last(counts: Sequence[Count], level: int) -> bool:
    """Whether the parts of a level are the values that are counted."""
    return counts[0].by == "value" and level + 1 == len(counts[0].levels)


def _is_cut_off(answer: Answer, counts: Sequence[Count]) -> bool:
    return counts[0].by == "value" and len(answer["n"]) > sum(count.limit for count in counts)


def _read(answer: Answer, counts: Sequence[Count]) -> list[Answer]:
    """Take the answers for attributes apart."""
    packing = _join_packing(counts)
    if packing is not None:
        ranges, weights = packing.read(answer)
        answer = {"r": ranges, "weights": weights}
    if len(counts) == 1:
        return [answer]
    ranges = answer["r"].astype("int64")
    if counts[0].by == "sign":
        places, begins = ranges // _sql.SIGNS, _begins(counts, 0)
    elif counts[0].by == "value":
        places, begins = ranges, list(range(len(counts)))
    else:
        begins = _begins(counts, len(counts[0].levels))
        places = np.searchsorted(begins, ranges, side="right") - 1
    return [
        {
            name: (ranges[places == i] - begin if name == "r" else column[places == i])
            for name, column in answer.items()
        }
        for i, begin in enumerate(begins)
    ]

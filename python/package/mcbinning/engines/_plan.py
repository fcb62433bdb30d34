"""An exact summary of an attribute, found in rounds of counting in ranges.

Values are put into ranges; an engine counts the weight of every class in each, and its smallest and
largest value. Only the ranges that matter are divided further. How values find their range has no
influence on a result: that ranges are apart is seen by their ends, and that no case was lost by
their weights. Where little should leave a task the ends are not asked for: then ranges are divided
evenly, by arithmetic that no rounding brings out of order.
"""

from __future__ import annotations

import math
import sys
from collections.abc import Generator, Sequence
from dataclasses import dataclass, replace
from typing import Literal

import numpy as np

from .._errors import InputError, RunError
from . import _sql
from ._count import Count, Division
from ._pack import Packing
from ._sql import Answer, Array, Cases, Engine

# Up to there a target weight is next to one whole number at most (docs/scale.md).
LARGEST_WEIGHT = 2.0**51

# The code of a class that no row had when classes were counted.
UNKNOWN_CLASS = -2

# From there on the ends of a range are apart by orders of magnitude, unless its values are known to
# be mostly near the larger one: by the mean of their logarithms.
_WIDE = 1024.0
_NEAR = math.log(256.0)

# How many parts a range is divided into at least, and how many times as many ranges as usual may
# be counted where that seems to save a round.
_LEAST_PARTS = 16
_MOST_TIMES = 8

# Of a range, a share that is in its first part, however many there are.
_NEGLIGIBLE = 2.0**-60

_SMALLEST = math.ulp(0.0)

_EPSILON = float(np.finfo(np.float64).eps)

Round = Generator[Count, Answer, "Summary"]


@dataclass(frozen=True)
class Demand:
    """What a summary must tell apart.

    Attributes
    ----------
    classes : int
        Of the target; 0 without one.
    bins : int
        Whose borders must be exact: those of equal-frequency binning, or of pre-bins; 0 when only
        the values themselves will do.
    all_values_up_to : int
        With that many different values or fewer, all of them must be known.
    most_values : int
        How many are collected at most when all of them must be known, by class.
    joins_runs : {"", "right", "left"}
        The closed side of bins, where the inside of a run of one class need not be known.
    """

    classes: int
    bins: int
    all_values_up_to: int
    most_values: int
    joins_runs: Literal["", "right", "left"] = ""


@dataclass(frozen=True)
class Summary:
    """Ranges of values, ascending and apart, and what has no value or no class.

    Attributes
    ----------
    low, high : numpy.ndarray of shape (ranges,)
        The smallest and the largest value of each range, or about where it begins and ends.
    knows_low, knows_high : numpy.ndarray of bool, of shape (ranges,)
        Which of the two, for either end.
    weights : numpy.ndarray of shape (ranges, max(classes, 1))
        Whole numbers.
    rows : numpy.ndarray of shape (ranges,)
        How many there are in each; an estimate where its ends are not exact.
    missing : numpy.ndarray of shape (max(classes, 1),)
        The weight of the cases without a value.
    no_class : float
        The weight of the cases without a class.
    distinct : int
        How many different values were met in the end, before ranges were joined.
    is_distinct_exact : bool
        Whether there are no others.
    """

    low: Array
    high: Array
    knows_low: Array
    knows_high: Array
    weights: Array
    rows: Array
    missing: Array
    no_class: float
    distinct: int = 0
    is_distinct_exact: bool = False

    @property
    def is_exact(self) -> Array:
        """Which ranges have both ends known."""
        return self.knows_low & self.knows_high

    @property
    def is_complete(self) -> bool:
        """Whether every range is one value."""
        return not self.has_several.any()

    @property
    def has_several(self) -> Array:
        """Which ranges may have several values."""
        return (self.low < self.high) | ~self.is_exact

    @property
    def total(self) -> float:
        """The weight of all cases."""
        return float(self.weights.sum() + self.missing.sum() + self.no_class)

    @property
    def distinct_at_least(self) -> int:
        """How many different values there are, or more."""
        return int(np.where((self.low < self.high) & self.is_exact, 2, 1).sum())


def summarise(engine: Engine, name: str, cases: Cases, demand: Demand, total: float) -> Round:
    """Find a summary that meets a demand: yields what is to be counted and is sent the answers.

    Parameters
    ----------
    engine
        What counts.
    name
        Of the attribute, for messages.
    cases, demand
        What is summarised, and how finely.
    total
        The weight of all cases.

    Raises
    ------
    InputError
        Infinite values; more values than may be collected.
    RunError
        Rows that changed between two rounds.
    """
    levels: tuple[Sequence[Division], ...] = ()
    answer = yield Count(cases, levels, "sign")
    if float(_sql.weights_of(answer).sum()) != total or (answer["c"] == UNKNOWN_CLASS).any():
        raise changed(name)
    _check_finite(name, answer)
    summary, ids = open_summary(answer, demand.classes)
    middles = _middles(answer, ids)
    before, few, is_first, is_short = math.inf, math.inf, True, True
    while True:
        if not _needs_all(summary, demand):
            demand = replace(demand, all_values_up_to=-1)  # for good: the others are left behind
        wanted = _wanted(summary, ids, demand, engine.most_values)
        if not wanted.any():
            return _finish(summary, demand)
        rows = int(summary.rows[wanted].sum())
        spares = demand.bins > 0 or rows <= before / 2
        by_value = is_short and (rows <= engine.most_values or not spares)
        # Even divisions that leave most rows where they were go on by orders of magnitude.
        packs = engine.packs and demand.bins > 0 and not by_value and rows <= few
        packs &= _may_be_many(summary, demand) if is_first else not _needs_all(summary, demand)
        before, few = rows, math.inf if is_first else rows / 4
        divisions: list[Division] = []
        undivided = levels
        if spares:
            if packs and not is_first:
                middles[:] = math.inf  # evenly
            parts = 1 if by_value else engine.most_ranges
            # Once percentiles are apart, one part of each range holds the rows that matter.
            shrinks = demand.bins > 0 and not is_first
            goal = engine.most_values / 2 if shrinks else math.inf
            divisions = _divide(summary, ids, wanted, parts, middles, goal)
            levels = (*levels, divisions)
        else:
            wanted[:] = True
            levels = ()
        if by_value:
            limit = max(engine.most_values, demand.most_values)
            answer = yield Count(cases, levels, "value", limit=limit)
            is_short = len(answer["n"]) <= limit
            if not is_short and summary.is_exact[wanted].all():
                raise _too_many(name, summary, demand)
            if not is_short:  # it was an estimate
                levels = undivided
                continue
            keys, found = _gather(answer, answer["lo"], summary.weights.shape[1])
            parents = _parents_by_weight(summary, wanted, found)
        elif packs and not any(division[4] for division in divisions):
            packing = Packing(
                summary.weights.shape[1], int(summary.weights[wanted].max()).bit_length()
            )
            answer = yield Count(cases, levels, "range", packing)
            found, keys, parents = _unpack(
                summary, wanted, divisions, answer["r"], answer["weights"]
            )
        else:
            answer = yield Count(cases, levels, "range")
            keys, found = _gather(answer, answer["r"], summary.weights.shape[1])
            parents = _parents(wanted, divisions, keys)
        is_short = True
        is_first = False
        summary, ids = _refine(name, summary, wanted, found, keys, parents)
        collected = np.count_nonzero(summary.weights)
        if collected > demand.most_values and _needs_all(summary, demand):
            raise _too_many(name, summary, demand)
        middles = np.full(len(ids), -math.inf)


def _needs_all(summary: Summary, demand: Demand) -> bool:
    return demand.bins == 0 or summary.distinct_at_least <= demand.all_values_up_to


def _may_be_many(summary: Summary, demand: Demand) -> bool:
    """Guess of ranges by sign whether there are more values than must all be known."""
    ends = np.r_[summary.low, summary.high]
    is_whole = np.isfinite(ends).all() and (ends == np.floor(ends)).all()
    return not is_whole or bool((summary.high - summary.low).sum() > demand.all_values_up_to)


def _too_many(name: str, summary: Summary, demand: Demand) -> InputError:
    """Make the error for more values than may be collected."""
    return InputError(
        f"{name!r} has more than {demand.most_values:,} different values by class in its "
        f"{int(summary.rows.sum()):,} rows, and all of them would be collected: set "
        "prebin_above=1000, so that only the borders of pre-bins are, or most_values= to "
        "more, some 100 bytes each"
    )


def changed(name: str) -> RunError:
    """Make the error for rows that are not what they were."""
    return RunError(
        f"the rows changed while {name!r} was binned: their weight is not what it was; keep a copy "
        "of the rows, and bin that"
    )


def _check_finite(name: str, answer: Answer) -> None:
    if np.isfinite(answer["lo"]).all() and np.isfinite(answer["hi"]).all():
        return
    error = InputError(
        f"an infinite number in column {name!r}; make it missing, or leave its row out"
    )
    error.code, error.subject = "infinite-number", name
    raise error


def _as_codes(codes: Array, classes: int) -> Array:
    return codes.astype(np.intp) if classes else np.zeros(len(codes), dtype=np.intp)


def _gather(answer: Answer, keys: Array, classes: int) -> tuple[Array, Summary]:
    """Add the classes of each key up, in the order of the values."""
    found, place = np.unique(keys, return_inverse=True)
    count = len(found)
    low, high = np.full(count, np.inf), np.full(count, -np.inf)
    np.minimum.at(low, place, answer["lo"] + 0.0)  # of zeros the one without a sign
    np.maximum.at(high, place, answer["hi"] + 0.0)
    weights = np.zeros((count, max(classes, 1)))
    np.add.at(weights, (place, _as_codes(answer["c"], classes)), _sql.weights_of(answer))
    rows = np.bincount(place, weights=answer["n"], minlength=count)
    order = np.argsort(low, kind="stable")
    known = np.ones(count, dtype=bool)
    summary = Summary(
        low[order], high[order], known, known, weights[order], rows[order],
        np.zeros(weights.shape[1]), 0.0,
    )  # fmt: skip
    return found[order], summary


def open_summary(answer: Answer, classes: int) -> tuple[Summary, Array]:
    """Make ranges of a first answer, and their ids."""
    ranges, codes, weight = answer["r"], answer["c"], _sql.weights_of(answer)
    has_class = codes >= 0 if classes else np.ones(len(codes), dtype=bool)
    is_missing = ranges == _sql.MISSING
    missing = np.zeros(max(classes, 1))
    without = is_missing & has_class
    np.add.at(missing, _as_codes(codes, classes)[without], weight[without])
    kept = ~is_missing & has_class
    some = {name: column[kept] for name, column in answer.items()}
    ids, summary = _gather(some, some["r"], classes)
    return replace(summary, missing=missing, no_class=float(weight[~has_class].sum())), ids


def _middles(answer: Answer, ids: Array) -> Array:
    """Get the mean logarithm of the sizes in each range."""
    place = np.searchsorted(np.sort(ids), answer["r"])
    order = np.argsort(ids)
    kept = np.isin(answer["r"], ids)
    sums, rows = np.zeros(len(ids)), np.zeros(len(ids))
    np.add.at(sums, order[place[kept]], (answer["n"] * answer["middle"])[kept])
    np.add.at(rows, order[place[kept]], answer["n"][kept])
    return sums / np.maximum(rows, 1)


def _wanted(summary: Summary, ids: Array, demand: Demand, few: int) -> Array:
    """Find the ranges that are to be divided; those of a few rows all together.

    Without an id are those whose rows the last query left behind.
    """
    several = summary.has_several
    if not _needs_all(summary, demand):
        return several & _at_borders(summary, demand.bins)[0]
    if not demand.joins_runs:
        return several
    several &= ids >= 0
    if summary.rows[several].sum() <= few:
        return several
    return several & ~(_inside_runs(summary, demand.joins_runs) & summary.is_exact)


def _inside_runs(summary: Summary, closed: Literal["right", "left"]) -> Array:
    """Find the ranges whose values need not be told apart, as all of a run have one class.

    Splits are evaluated at the first and at the last value of a run alone
    (docs/method.md#choosing-a-cut): after them when the right side is closed, before them
    otherwise. So the first, or else the last, must be known with its own weight; what follows it,
    or goes before it, only as a whole, with its own ends.
    """
    is_pure = np.count_nonzero(summary.weights, axis=1) == 1
    of = np.where(is_pure, summary.weights.argmax(axis=1), -1)
    goes_on = is_pure[1:] & (of[1:] == of[:-1])
    inside = np.insert(goes_on, 0, False) if closed == "right" else np.append(goes_on, False)
    return inside[: len(of)]


def percentile_targets(total: float, bins: int) -> Array:
    """Get the weights at which bins of equal weight end, as the library has them to the bit.

    Returns
    -------
    numpy.ndarray of shape (bins - 1,)
        Ascending.
    """
    percent = np.minimum((100.0 / bins) * np.arange(1, bins), 100.0)
    exact = np.abs(percent - 100.0) <= 100.0 * _EPSILON
    return np.where(exact, total, total * percent / 100.0)


def _is_equal(a: Array, b: Array) -> Array:
    with np.errstate(invalid="ignore", divide="ignore"):
        return np.asarray(np.abs(a - b) / np.maximum(a, b) < _EPSILON)


def _at_borders(summary: Summary, bins: int) -> tuple[Array, Array]:
    """Find the ranges that hold the value of a percentile, and those that a percentile ends with.

    A percentile that ends exactly with a range is the middle between its largest value and the
    next range's smallest; when these are not known, or that middle rounds onto one of them, the
    values of both must be known.

    Returns
    -------
    held, ended : numpy.ndarray of bool, of shape (ranges,)
        Which ranges they are.
    """
    up_to = np.cumsum(summary.weights.sum(axis=1))
    held, ended = np.zeros(len(up_to), dtype=bool), np.zeros(len(up_to), dtype=bool)
    if len(up_to) == 0:
        return held, ended
    targets = percentile_targets(float(up_to[-1]), bins)
    place = np.minimum(np.searchsorted(up_to, targets), len(up_to) - 1)
    ends_here = _is_equal(targets, up_to[place])
    ends_before = (place > 0) & _is_equal(targets, up_to[place - 1])
    held[place[~ends_here & ~ends_before]] = True
    below = np.concatenate([place[ends_here], place[ends_before & ~ends_here] - 1])
    below = below[below + 1 < len(up_to)]
    ended[below] = True
    with np.errstate(over="ignore"):
        middle = (summary.high[below] + summary.low[below + 1]) / 2.0
    is_between = (summary.high[below] < middle) & (middle < summary.low[below + 1])
    is_between &= summary.knows_high[below] & summary.knows_low[below + 1]
    touching = below[~is_between]
    held[touching] = True
    held[touching + 1] = True
    return held, ended


def _finish(summary: Summary, demand: Demand) -> Summary:
    """Count the values, and join the ranges between percentiles, or inside of runs."""
    counted = replace(
        summary, distinct=summary.distinct_at_least, is_distinct_exact=summary.is_complete
    )
    if len(summary.low) == 0:
        return counted
    low, high = _known_ends(summary)
    if not _needs_all(summary, demand):
        held, ended = _at_borders(summary, demand.bins)
        starts = held | np.roll(held | ended, 1)
    elif demand.joins_runs:
        inside = _inside_runs(summary, demand.joins_runs)
        starts = ~(inside & np.roll(inside, 1))
    else:
        return counted
    starts[0] = True
    first = np.flatnonzero(starts)
    last = np.append(first[1:], len(starts)) - 1
    low, high, weights = low[first], high[last], np.add.reduceat(summary.weights, first)
    if weights[-1].sum() == 1.0:
        low[-1] = high[-1]  # one case, the largest
    known = np.ones(len(first), dtype=bool)
    return replace(
        counted,
        low=low,
        high=high,
        knows_low=known,
        knows_high=known,
        weights=weights,
        rows=np.add.reduceat(summary.rows, first),
    )


def _known_ends(summary: Summary) -> tuple[Array, Array]:
    """Give ranges whose ends are about known those of the gap between the values around them.

    The first and the last one of all end with the smallest and the largest value there are.
    """
    lows, highs = (summary.knows_low, summary.low), (summary.knows_high, summary.high)
    least = np.minimum(np.where(*lows, np.inf), np.where(*highs, np.inf))
    most = np.maximum(np.where(*lows, -np.inf), np.where(*highs, -np.inf))
    below = np.maximum.accumulate(np.append(-np.inf, most))[:-1]
    above = np.minimum.accumulate(np.append(np.inf, least[::-1]))[-2::-1]
    with np.errstate(over="ignore"):
        low, high = np.nextafter(below, np.inf), np.nextafter(above, -np.inf)
    low = np.where(np.isfinite(below), low, summary.low.min())
    high = np.where(np.isfinite(above), high, summary.high.max())
    return np.where(*lows, low), np.where(*highs, high)


def _divide(
    summary: Summary, ids: Array, wanted: Array, all_parts: int, middles: Array, goal: float
) -> list[Division]:
    """Describe how ranges are divided: evenly, or by orders of magnitude.

    Where it is affordable, into so many parts that one of each range leaves `goal` rows in all.
    """
    divisions: list[Division] = []
    base, rows = 0, float(summary.rows[wanted].sum())
    enough = math.ceil(rows / goal)
    is_affordable = np.count_nonzero(wanted) * enough <= _MOST_TIMES * all_parts
    least = max(_LEAST_PARTS, enough) if is_affordable else _LEAST_PARTS
    for place in np.flatnonzero(wanted):
        parts = 1 if all_parts == 1 else max(least, int(all_parts * (summary.rows[place] / rows)))
        low, high = float(summary.low[place]), float(summary.high[place])
        sign = 1 if low > 0 else -1
        small, large = (low, high) if low > 0 else (-high, -low)
        if not summary.is_exact[place]:
            small = max(math.nextafter(small, 0.0), _SMALLEST)
            large = min(math.nextafter(large, math.inf), sys.float_info.max)
        is_log = large / small > _WIDE and middles[place] < math.log(large) - _NEAR
        if sign < 0 and not is_log:
            sign, small, large = 1, -large, -small
        ends = (math.log(small), math.log(large)) if is_log else (small, large)
        span = ends[1] - ends[0]
        divisions.append(
            (int(ids[place]), base, parts, sign, int(is_log), small, large, ends[0], span,
             span * _NEGLIGIBLE)
        )  # fmt: skip
        base += parts
    return divisions


def _parents(wanted: Array, divisions: Sequence[Division], ranges: Array) -> Array:
    """Find the range that each of its parts is of."""
    bases = np.array([division[1] for division in divisions])
    return np.asarray(np.flatnonzero(wanted)[np.searchsorted(bases, ranges, side="right") - 1])


def _parents_by_weight(summary: Summary, wanted: Array, found: Summary) -> Array:
    """Find the range that each value is of, by what they and all below weigh."""
    parents = np.flatnonzero(wanted)
    ends = np.cumsum(summary.weights[parents].sum(axis=1))
    place = np.searchsorted(ends, np.cumsum(found.weights.sum(axis=1)))
    return np.asarray(parents[np.minimum(place, len(parents) - 1)])


def _unpack(
    summary: Summary,
    wanted: Array,
    divisions: Sequence[Division],
    ranges: Array,
    weights: Array,
) -> tuple[Summary, Array, Array]:
    """Make ranges, of which the weights are known, in the order of their values.

    Of the ends that the divided ranges begin and end with, what is known is kept: a percentile that
    ends there may be between two values, of which the other was left behind.
    """
    parents = _parents(wanted, divisions, ranges)
    _, bases, parts, _, _, small, large, _, span, _ = np.array(divisions).T[
        :, np.searchsorted(np.flatnonzero(wanted), parents)
    ]
    place = ranges - bases
    far = np.where(place + 1 < parts, small + span * ((place + 1) / parts), large)
    low = np.maximum(small + span * (place / parts), summary.low[parents])
    high = np.minimum(far, summary.high[parents])
    order = np.lexsort((place, parents))
    each = np.maximum(summary.weights[parents].sum(axis=1), 1.0) / summary.rows[parents]
    low, high, weights, parents = low[order], high[order], weights[order], parents[order]
    is_other = parents[1:] != parents[:-1]
    knows_low = np.append(True, is_other)[: len(parents)] & summary.knows_low[parents]
    knows_high = np.append(is_other, True)[: len(parents)] & summary.knows_high[parents]
    found = Summary(
        np.where(knows_low, summary.low[parents], low),
        np.where(knows_high, summary.high[parents], high),
        knows_low,
        knows_high,
        weights,
        np.ceil(weights.sum(axis=1) / each[order]),
        summary.missing,
        summary.no_class,
    )
    return found, ranges[order], parents


def _take(summary: Summary, order: Array) -> Summary:
    return replace(
        summary,
        low=summary.low[order],
        high=summary.high[order],
        knows_low=summary.knows_low[order],
        knows_high=summary.knows_high[order],
        weights=summary.weights[order],
        rows=summary.rows[order],
    )


def _refine(
    name: str, summary: Summary, wanted: Array, found: Summary, keys: Array, parents: Array
) -> tuple[Summary, Array]:
    """Put narrower ranges in the place of those that were divided."""
    sums = np.zeros_like(summary.weights)
    np.add.at(sums, parents, found.weights)
    if not np.array_equal(sums[wanted], summary.weights[wanted]):
        raise changed(name)
    kept = ~wanted
    joined = Summary(
        np.concatenate([summary.low[kept], found.low]),
        np.concatenate([summary.high[kept], found.high]),
        np.concatenate([summary.knows_low[kept], found.knows_low]),
        np.concatenate([summary.knows_high[kept], found.knows_high]),
        np.concatenate([summary.weights[kept], found.weights]),
        np.concatenate([summary.rows[kept], found.rows]),
        summary.missing,
        summary.no_class,
    )
    order = np.argsort(np.concatenate([np.flatnonzero(kept), parents]), kind="stable")
    refined = _take(joined, order)
    exact = refined.is_exact
    if not (refined.high[exact][:-1] < refined.low[exact][1:]).all():
        raise changed(name)
    return refined, np.concatenate([np.full(int(kept.sum()), -1), keys])[order]


def records_of(summary: Summary, has_target: bool) -> tuple[Array, Array, Array]:
    """Make weighted cases that give the library what the cases themselves would.

    A range of several values becomes its two ends; how its weight is shared between them has no
    influence, as neither a percentile nor a split that is evaluated lies within.

    Returns
    -------
    values, codes, weights : numpy.ndarray of shape (records,)
        NaN is a missing value, and a code of -1 a missing class.
    """
    weights = summary.weights.copy()
    several = np.flatnonzero(summary.low < summary.high)
    first = (weights[several] > 0).argmax(axis=1)
    weights[several, first] -= 1.0
    place, code = np.nonzero(weights)
    values = [summary.low[several], summary.high[place]]
    codes = [first, code]
    parts = [np.ones(len(several)), weights[place, code]]
    gone = np.flatnonzero(summary.missing)
    values.append(np.full(len(gone), np.nan))
    codes.append(gone)
    parts.append(summary.missing[gone])
    if has_target and summary.no_class > 0:
        values.append(np.array([np.nan]))
        codes.append(np.array([-1]))
        parts.append(np.array([summary.no_class]))
    return np.concatenate(values), np.concatenate(codes), np.concatenate(parts)

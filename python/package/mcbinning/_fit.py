"""Making bins: of a table, or of cut points."""

from __future__ import annotations

import itertools
from collections.abc import Iterable, Mapping, Sequence
from typing import Any, Literal

from . import _core
from ._arguments import (
    Closed,
    as_adjustment,
    as_cut_points,
    as_events,
    as_mapping,
    as_names,
    as_share,
    at_least,
    is_right,
)
from ._attribute import results_of
from ._bins import Bins
from ._engine import find_engine
from ._errors import InputError, TargetError
from ._files import Path
from ._progress import Progress, reporting
from ._request import FitCall, Request
from ._table import check_names
from ._warning import warn

_ONE_BIN = (120017, 120019)  # that no cut point says anything is an answer like any other


def fit(
    table: Any,
    target: Any,
    *,
    weight: Any = None,
    attributes: Sequence[str] | None = None,
    categorical: Iterable[str] = (),
    missing: Mapping[str, Any] | None = None,
    prebins: int = 1000,
    prebin_above: int = 1000,
    small_bins: float = 0.0,
    event: Any = None,
    woe_adjust: float = 0.0,
    closed: Closed = "right",
    rounding: Literal["closest", "truncate"] = "closest",
    names: Sequence[str] | None = None,
    threads: int = 1,
    progress: Progress = None,
    temp_dir: Path | None = None,
    distinct: bool = False,
    most_values: int = 2_000_000,
) -> Bins:
    """Cut attributes where the classes of a target change, by minimum description length.

    Parameters
    ----------
    table
        Columns of n rows: a data frame of pandas or polars, an Arrow table, a structured or
        two-dimensional NumPy array, or a dict of columns. NaN and null are missing. Dates are
        seconds since 1970, those without a zone in UTC; times of day and durations are numbers in
        the unit that they are stored in. Or a table of an engine, which counts without handing its
        rows out: a relation of DuckDB, a data frame of Spark, a `mcbinning.engines.PostgresTable`.
    target
        The name of a column, several names, or a column of n values. Classes may be numbers or
        texts; there are 2 to 256. Each target is binned against on its own.
    weight
        A column of frequency weights, by name or as n values: a row of weight 3 counts as three.
        Rows whose weight is missing, or rounds to 0, take no part.
    attributes
        What to bin. Without it every other column of numbers or of ordered categories; texts and
        unordered categories are binned, by the order in which they appear, when they are named.
    categorical
        Attributes whose numbers are categories.
    missing
        Values that are missing, by column: a value, or a list of values and of one interval
        ``(low, high)``, both ends included; None is an open end.
    prebins, prebin_above
        An attribute with more than `prebin_above` distinct values is first cut into `prebins` bins
        of equal weight, and only their borders can become cut points. 0 for never.
    small_bins
        A share from 0 to 1: an inner bin is merged when it weighs less than this share of its
        smaller neighbour.
    event
        The class that weight of evidence is about, or several of them for several targets. Without
        it the larger number, or the text that comes later, as 1 and yes.
    woe_adjust
        A weight from 0 up, added to both classes of every bin before weights of evidence are taken,
        so that none is infinite.
    closed
        The bin that a cut point belongs to: the one whose right end it is, or the other.
    rounding
        How weights become whole numbers; halves go up.
    names
        Of the columns of a two-dimensional array; x0, x1 and so on without it.
    threads
        How many work at a time; 0 is one for every core. The bins are the same for any number.
    progress
        True for a bar of tqdm, or a function of the work done and of all of it.
    temp_dir
        Where temporary files go; the system's place for them without it.
    distinct
        Of an engine's table: count the distinct values of every attribute, for which all values
        must meet. Otherwise `AttributeBins.distinct_values` is ``prebin_above + 1`` where there are
        more than `prebin_above` and not all were met, 1,001 for `fit_equal_frequency`. Tables in
        memory always count them.
    most_values
        Of an engine's table: how many different values of an attribute are collected at most where
        all must be known, as without pre-bins; counted by class. Some 100 bytes each.

    Returns
    -------
    Bins
        A result for each attribute and target. What went wrong with one attribute is said there,
        and in one warning.

    Raises
    ------
    InputError, UnknownColumnError, CategoryError, WeightError
        Input that makes no sense; each is a ValueError.
    TableTypeError
        A table or column of a type that cannot be binned; a TypeError.
    KeyboardInterrupt
        On Ctrl-C, within some 50 ms or when the attribute at hand is done; no file is left.
    """
    settings = {
        "right_closed": is_right(closed),
        "prebins": at_least("prebins", prebins, 2),
        "prebin_above": at_least("prebin_above", prebin_above, 0),
        "small_bins": as_share("small_bins", small_bins),
        "woe_adjust": as_adjustment("woe_adjust", woe_adjust),
    }
    attributes, categorical = _names(attributes, categorical)
    only = _wanted(attributes, categorical, missing, target, weight)
    request = _make_request(table, names, only)
    targets = request.add_targets(target)
    call, left_out = request.plan(
        settings, targets, weight, attributes, categorical, missing, rounding, threads, temp_dir,
        as_events(event), distinct=distinct,
        most_values=at_least("most_values", most_values, 1),
    )  # fmt: skip
    return _run(request, call, left_out, progress)


def fit_equal_frequency(
    table: Any,
    bins: int = 10,
    *,
    target: Any = None,
    weight: Any = None,
    attributes: Sequence[str] | None = None,
    categorical: Iterable[str] = (),
    missing: Mapping[str, Any] | None = None,
    event: Any = None,
    woe_adjust: float = 0.0,
    closed: Closed = "right",
    rounding: Literal["closest", "truncate"] = "closest",
    names: Sequence[str] | None = None,
    threads: int = 1,
    progress: Progress = None,
    temp_dir: Path | None = None,
    distinct: bool = False,
) -> Bins:
    """Cut attributes into bins of about equal weight. Equal values always share a bin.

    Parameters
    ----------
    table
        As for `fit`.
    bins
        How many, from 2 up. There are fewer where values are few or repeated.
    target
        As for `fit`: its classes are counted in the bins, which then have weights of evidence and
        can be refined by event rates. Cut points do not depend on it; weights are those of the
        rows that have a class. Not of an engine's table.
    weight, attributes, categorical, missing, event, woe_adjust, closed, rounding, names, threads,
    progress, temp_dir, distinct
        As for `fit`.

    Returns
    -------
    Bins
        A result for each attribute, and each target.

    Raises
    ------
    InputError, TableTypeError
        As for `fit`.
    """
    if target is None and (event is not None or woe_adjust):
        raise TargetError("event and woe_adjust are about a target; name it with target=")
    settings = {
        "right_closed": is_right(closed),
        "bins": at_least("bins", bins, 2),
        "woe_adjust": as_adjustment("woe_adjust", woe_adjust),
    }
    if target is not None and find_engine(table) is not None:
        raise TargetError("equal-frequency bins of an engine's table do not count a target")
    attributes, categorical = _names(attributes, categorical)
    only = _wanted(attributes, categorical, missing, target, weight)
    request = _make_request(table, names, only)
    targets = [] if target is None else request.add_targets(target)
    call, left_out = request.plan(
        settings, targets, weight, attributes, categorical, missing, rounding, threads, temp_dir,
        as_events(event), distinct=distinct,
    )  # fmt: skip
    return _run(request, call, left_out, progress)


def from_cut_points(
    cut_points: Mapping[str, Sequence[float]],
    table: Any = None,
    *,
    target: Any = None,
    weight: Any = None,
    closed: Closed = "right",
    names: Sequence[str] | None = None,
) -> Bins:
    """Make bins of cut points that you have.

    Parameters
    ----------
    cut_points
        For each attribute its finite cut points, ascending: numbers or dates.
    table
        Data to count, as for `fit`; without it all weights are 0.
    target, weight
        Of the table, as for `fit`; one target.
    closed, names
        As for `fit`.

    Returns
    -------
    Bins
        With the counts of the table.

    Raises
    ------
    InputError
        Cut points that do not ascend or are not finite, and what `fit` refuses.
    """
    cuts, times = [], []
    for name, points in as_mapping("cut_points", cut_points).items():
        values, are_dates = as_cut_points(name, points)
        times.append(are_dates)
        if not all(a < b for a, b in itertools.pairwise(values)):
            raise InputError(f"the cut points of {name!r} do not ascend")
        cuts.append(values)
    if not cuts:
        raise InputError("there are no cut points")
    attributes = list(cut_points)
    check_names(attributes)
    if table is None:
        if target is not None or weight is not None:
            raise InputError("a target and a weight need a table")
        return Bins(_core.from_cut_points(attributes, cuts, times, is_right(closed), None, None))
    only = [*attributes, *(name for name in (target, weight) if isinstance(name, str))]
    request = _make_request(table, names, set(only))
    targets = [] if target is None else request.add_targets(target)
    if len(targets) > 1:
        raise TargetError("one target is expected")
    times = [
        are_dates or request.table.is_time(request.index(name))
        for name, are_dates in zip(attributes, times, strict=True)
    ]
    engine = find_engine(table)
    if engine is not None:
        from .engines._evaluate import count_cut_points

        against = targets[0] if targets else None
        points = dict(zip(attributes, cuts, strict=True))
        return Bins(count_cut_points(engine, points, times, is_right(closed), against, weight))
    place = request.index(targets[0]) if targets else None
    model = _core.from_cut_points(attributes, cuts, times, is_right(closed), request.table, place)
    counted, _ = model.count_on(
        list(range(len(model))),
        request.table,
        {name: request.index(name) for name in [*attributes, *targets]},
        request.add_weight(weight),
        None,
    )
    return Bins(counted)


def _names(attributes: Any, categorical: Any) -> tuple[list[str] | None, list[str]]:
    chosen = None if attributes is None else as_names("attributes", attributes)
    return chosen, as_names("categorical", () if categorical is None else categorical)


def _wanted(attributes: list[str] | None, *others: Any) -> set[str] | None:
    """Tell which columns are looked at: all of them, unless attributes are named."""
    if attributes is None:
        return None
    wanted = set(attributes)
    for other in others:
        named = [other] if isinstance(other, str) else other
        if isinstance(named, (list, tuple, Mapping)):
            wanted.update(name for name in named if isinstance(name, str))
    return wanted


def _make_request(data: Any, names: Sequence[str] | None, only: set[str] | None) -> Request:
    """Make the request for a table in memory, or for one of an engine."""
    engine = find_engine(data)
    if engine is None:
        return Request(data, names, only)
    from .engines._fit import EngineRequest

    return EngineRequest(engine)


def _run(request: Request, call: FitCall, left_out: list[str], progress: Progress) -> Bins:
    with reporting(progress) as report:
        model, anew = request.fit(call, report)
    warn(_notes(model, anew, left_out))
    return Bins(model, left_out)


def _notes(model: _core.Model, anew: list[int], left_out: list[str]) -> list[str]:
    notes = []
    results = results_of(model)
    is_of_several = len(model.target_names()) > 1
    for result in results:
        if result.code and result.code not in _ONE_BIN:
            against = f" against {result.target}" if is_of_several else ""
            notes.append(f"{result.name}{against}: {result.message} ({result.code})")
    notes += [
        f"{results[index].name}: a cut point fell between neighbouring doubles, so its bins were "
        "counted anew"
        for index in anew
    ]
    if left_out:
        notes.append(f"not binned, as they are no numbers: {', '.join(left_out)}")
    return notes

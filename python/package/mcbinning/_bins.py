"""Bins: making them, and what becomes of them."""

from __future__ import annotations

import contextlib
import itertools
import os
import warnings
from collections.abc import Callable, Iterable, Iterator, Mapping, Sequence
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, Literal

import numpy as np

from . import _core
from ._errors import BinningWarning, InputError, TableTypeError, TargetError, unknown_column
from ._frame import Frame, make_frame
from ._table import add_column, as_table, check_names, column_of
from .engines import find_engine

if TYPE_CHECKING:
    from matplotlib.axes import Axes

Form = Literal["index", "label", "woe", "interval"]
Closed = Literal["right", "left"]
Trend = Literal["increasing", "decreasing", "either", "peak", "valley"]
Progress = bool | Callable[[int, int], object] | None
Path = str | os.PathLike[str]
Report = Callable[[int, int], object] | None

_ONE_BIN = (120017, 120019)  # that no cut point says anything is an answer like any other

_FORMS = {
    "index": _core.Form.INDEX,
    "label": _core.Form.LABEL,
    "woe": _core.Form.WOE,
    "interval": _core.Form.INTERVAL,
}

_TRENDS = {
    None: _core.RateTrend.ANY,
    "increasing": _core.RateTrend.INCREASING,
    "decreasing": _core.RateTrend.DECREASING,
    "either": _core.RateTrend.EITHER,
    "peak": _core.RateTrend.PEAK,
    "valley": _core.RateTrend.VALLEY,
}

_OBJECTIVES = {"gain": _core.RefineObjective.GAIN, "iv": _core.RefineObjective.IV}


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
) -> Bins:
    """Cut attributes where the classes of a target change, by minimum description length.

    Parameters
    ----------
    table
        Columns of n rows: a data frame of pandas or polars, an Arrow table, a structured or
        two-dimensional NumPy array, or a dict of columns. NaN and null are missing. Dates and times
        are numbers in the unit that they are stored in. Or a table of an engine, which counts
        without handing its rows out: a relation of DuckDB, a data frame of Spark, a
        `mcbinning.engines.PostgresTable`.
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
        must meet. Otherwise there may be more than `AttributeBins.distinct_values` when it is above
        `prebin_above`; that of `fit_equal_frequency` is what was met, 1,001 at most. Tables in
        memory always count them.

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
        "right_closed": _is_right(closed),
        "prebins": _at_least("prebins", prebins, 2),
        "prebin_above": _at_least("prebin_above", prebin_above, 0),
        "small_bins": _share("small_bins", small_bins),
        "woe_adjust": _weight("woe_adjust", woe_adjust),
    }
    request = _request(table, names)
    targets = request.add_targets(target)
    return request.run(
        settings, targets, weight, attributes, categorical, missing, rounding, threads, progress,
        temp_dir, _events(event), distinct=distinct,
    )  # fmt: skip


def fit_equal_frequency(
    table: Any,
    bins: int = 10,
    *,
    weight: Any = None,
    attributes: Sequence[str] | None = None,
    categorical: Iterable[str] = (),
    missing: Mapping[str, Any] | None = None,
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
    weight, attributes, categorical, missing, closed, rounding, names, threads, progress, temp_dir,
    distinct
        As for `fit`.

    Returns
    -------
    Bins
        A result for each attribute.

    Raises
    ------
    InputError, TableTypeError
        As for `fit`.
    """
    settings = {"right_closed": _is_right(closed), "bins": _at_least("bins", bins, 2)}
    return _request(table, names).run(
        settings, [], weight, attributes, categorical, missing, rounding, threads, progress,
        temp_dir, distinct=distinct,
    )  # fmt: skip


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
        For each attribute its finite cut points, ascending.
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
    if not cut_points:
        raise InputError("there are no cut points")
    cuts = []
    for name, points in cut_points.items():
        values = _numbers(name, points)
        if not all(a < b for a, b in itertools.pairwise(values)):
            raise InputError(f"the cut points of {name!r} do not ascend")
        cuts.append(values)
    attributes = list(cut_points)
    check_names(attributes)
    if table is None:
        if target is not None or weight is not None:
            raise InputError("a target and a weight need a table")
        return Bins(_core.from_cut_points(attributes, cuts, _is_right(closed), None, None))
    request = Request(table, names)
    targets = [] if target is None else request.add_targets(target)
    if len(targets) > 1:
        raise TargetError("one target is expected")
    place = request.index(targets[0]) if targets else None
    model = _core.from_cut_points(attributes, cuts, _is_right(closed), request.table, place)
    counted, _ = model.count_on(
        list(range(len(model))),
        request.table,
        {name: request.index(name) for name in [*attributes, *targets]},
        request.add_weight(weight),
        "the table",
    )
    return Bins(counted)


def load(path: Path) -> Bins:
    """Read a bin file, which `Bins.save` or the tool ``mcbin`` has written.

    Raises
    ------
    BinFileError
        It is none, or makes no sense; the message says where.
    OSError
        It cannot be read.
    """
    with open(path, encoding="utf-8") as file:
        try:
            text = file.read()
        except UnicodeDecodeError as error:
            raise _core_text_error(path, error) from None
    return Bins(_core.Model.parse(text, os.fspath(path)))


def _core_text_error(path: Path, error: UnicodeDecodeError) -> Exception:
    from ._errors import BinFileError

    return BinFileError(f"{os.fspath(path)}: this is no bin file: {error}")


def sql_dialects() -> list[str]:
    """Get the names of the dialects that `Bins.to_sql` writes."""
    return _core.sql_dialects()


def _from_json(text: str, left_out: Sequence[str] = ()) -> Bins:
    return Bins(_core.Model.parse(text, "bins"), left_out)


def _first_of_json(text: str) -> AttributeBins:
    return AttributeBins(_core.Model.parse(text, "bins"), 0)


class Bins:
    """The bins of some attributes. A plain value: it does not change, and threads may share it.

    ``bins["age"]`` is the result of an attribute, of several targets ``bins["age", "y"]``;
    iterating gives the names of the attributes. It can be pickled, copied and compared.
    """

    __slots__ = ("__weakref__", "_attributes", "_left_out", "_model", "_selected", "_targets")

    def __init__(self, model: _core.Model, left_out: Sequence[str] = ()) -> None:
        self._model = model
        self._attributes = [variable["name"] for variable in model.attributes()]
        self._targets = [variable["name"] for variable in model.targets()]
        self._left_out = tuple(left_out)
        self._selected: dict[str | None, dict[str, int]] = {}

    @property
    def attributes(self) -> list[str]:
        """The names of the attributes."""
        return list(self._attributes)

    @property
    def targets(self) -> list[str]:
        """The names of the targets; none for bins without one."""
        return list(self._targets)

    @property
    def left_out(self) -> list[str]:
        """Columns of the table that were not binned, as they are no numbers and were not named."""
        return list(self._left_out)

    @property
    def settings(self) -> dict[str, Any]:
        """How the bins were made, and of how many records."""
        return self._model.settings()

    @property
    def closed(self) -> str:
        """The end of an interval that belongs to it: "right" or "left"."""
        closed: str = self._model.settings()["closed"]
        return closed

    def _results(self, target: str | None) -> dict[str, int]:
        """Find the results for a target, by attribute."""
        found = self._selected.get(target)
        if found is None:
            found = {}
            for index in self._model.select(target):
                found[self._attributes[self._model.result(index)["attribute"]]] = index
            self._selected[target] = found
        return found

    def __getitem__(self, key: str | tuple[str, str]) -> AttributeBins:
        name, target = key if isinstance(key, tuple) else (key, None)
        results = self._results(target)
        if name not in results:
            raise KeyError(name)
        return AttributeBins(self._model, results[name])

    def __iter__(self) -> Iterator[str]:
        return iter(self._attributes)

    def __len__(self) -> int:
        return len(self._attributes)

    def __contains__(self, name: object) -> bool:
        return name in self._attributes

    def _all(self) -> list[AttributeBins]:
        return [AttributeBins(self._model, index) for index in range(len(self._model))]

    def summary(self) -> Frame:
        """Rank the attributes: of each target, those that tell most about it come first.

        Returns
        -------
        Frame
            A row for each result: attribute, target, number of bins, gain (bits), information value
            (of two classes), weights of the valid and of the missing cases, status.
        """
        results = self._all()
        order = {name: place for place, name in enumerate(self._targets)}
        results.sort(
            key=lambda result: (
                order.get(result.target or "", 0),
                -(result.information_gain or 0.0),
            )
        )
        columns: dict[str, list[Any]] = {"attribute": [result.name for result in results]}
        if self._targets:
            columns["target"] = [result.target for result in results]
        columns["bins"] = [len(result.weights) for result in results]
        if self._targets:
            columns["gain"] = [result.information_gain for result in results]
            columns["information_value"] = [result.information_value for result in results]
        columns["valid"] = [result.valid_weight for result in results]
        columns["missing"] = [result.missing_weight for result in results]
        columns["status"] = [result.status for result in results]
        return make_frame(columns)

    def apply(
        self,
        table: Any,
        as_: Form = "index",
        *,
        target: str | None = None,
        attributes: Sequence[str] | None = None,
        suffix: str = "_bin",
        names: Sequence[str] | None = None,
    ) -> Any:
        """Give values their bins.

        Parameters
        ----------
        table
            As for `fit`; a dict of single values is one row. The columns of a two-dimensional array
            are the attributes in their order, unless `names` says otherwise.
        as_
            "index" from 0 up, "label" such as ``(4.3, 5.4]``, "woe" (weight of evidence, of a
            target with two classes) or "interval" (its two ends).
        target
            Whose bins, of several.
        attributes
            Which ones; all of them without it.
        suffix
            New columns have the name of their attribute and this.
        names
            Of the columns of a two-dimensional array.

        Returns
        -------
        Frame
            A column for each attribute; infinities are in the outermost bins. A missing value, or a
            category that the bins do not know, has the label "missing" and its own weight of
            evidence where the bins have counted missing cases; otherwise, and as index or
            interval, it is null. Of an engine's table (see `fit`): a table of the engine, which has
            these columns beside its own; there are no intervals.

        Raises
        ------
        UnknownColumnError
            The table lacks an attribute.
        TargetError
            Weight of evidence without a target of two classes, or several targets and none chosen.
        """
        form = _one_of("as_", as_, _FORMS)
        if names is None and isinstance(table, np.ndarray) and table.ndim == 2:
            names = self._attributes
        results = self._results(target)
        if attributes is not None:
            results = {name: _get(results, name) for name in attributes}
        usable, notes = self._model.usable(list(results.values()))
        engine = find_engine(table)
        if engine is not None:
            _warn(notes)
            form = _exported_form(as_)
            named = [self._attributes[self._model.result(i)["attribute"]] for i in usable]
            from .engines._apply import apply_on

            return apply_on(engine, self._model, usable, named, form, suffix)
        core = as_table(table, names)
        columns = {name: index for index, name in enumerate(core.names())}
        for name in results:
            if name not in columns:
                raise unknown_column(name, core.names())
        frame, unknown = self._model.apply(usable, core, columns, form, suffix)
        if unknown:
            notes = [*notes, *(f"{name}: {n} unknown categories" for name, n in unknown.items())]
        _warn(notes)
        return Frame(frame, self.closed if as_ == "interval" else "right")

    def evaluate(
        self,
        table: Any,
        *,
        target: str | None = None,
        weight: Any = None,
        unweighted: bool = False,
        names: Sequence[str] | None = None,
    ) -> Evaluation:
        """Count other data with these bins and compare.

        Parameters
        ----------
        table
            As for `fit`, with the attributes and the target.
        target
            Which one, of several.
        weight
            A column as for `fit`. Without it, the one that the bins were made with.
        unweighted
            Every row counts once, whatever the bins were made with.
        names
            Of the columns of a two-dimensional array.

        Returns
        -------
        Evaluation
            The counts, and how far the bins' shares moved.

        Raises
        ------
        UnknownColumnError, InputError
            As for `fit`.
        """
        results = self._model.select(target)
        before = [AttributeBins(self._model, i) for i in results]
        engine = find_engine(table)
        if engine is not None:
            name = None if unweighted else self.settings["weight"] if weight is None else weight
            from .engines._evaluate import evaluate_on

            counted, text = evaluate_on(engine, self._model, results, name)
            return Evaluation(self, before, Bins(counted), text)
        request = Request(table, names)
        wanted = {self._attributes[self._model.result(i)["attribute"]] for i in results}
        wanted |= {
            self._targets[t] for t in {self._model.result(i)["target"] for i in results} - {None}
        }
        columns = {name: request.index(name) for name in sorted(wanted)}
        place = None
        if not unweighted:
            place = request.add_weight(self.settings["weight"] if weight is None else weight)
        counted, text = self._model.count_on(results, request.table, columns, place, "other data")
        return Evaluation(self, before, Bins(counted), text)

    def refine(
        self,
        *,
        max_bins: int | None = None,
        min_bins: int = 1,
        min_share: float = 0.0,
        min_weight: float = 0.0,
        min_event_weight: float = 0.0,
        min_nonevent_weight: float = 0.0,
        monotonic: Trend | None = None,
        min_rate_difference: float = 0.0,
        breaks: Mapping[str, Sequence[float]] | None = None,
        keep: Mapping[str, Sequence[float]] | None = None,
        objective: Literal["gain", "iv"] = "gain",
        attributes: Sequence[str] | None = None,
    ) -> Bins:
        """Join neighbouring bins to the best ones that are as you want them. No data are needed.

        What is best is found exactly, among all joinings. Cut points are dropped, never moved, so
        make more bins than you need. Missing cases take no part.

        Parameters
        ----------
        max_bins, min_bins
            How many, of every attribute, from 1 up; any number without `max_bins`.
        min_share, min_weight
            What every bin has of the weight: a share from 0 to 1, and a weight.
        min_event_weight, min_nonevent_weight
            What every bin has of the two classes of a target; `event` of `fit` is which is which.
        monotonic
            How the event's share goes from the lowest bin up: "increasing", "decreasing",
            "either" of these, or with one "peak" or "valley". Equal shares are allowed.
        min_rate_difference
            By how much the event's shares of neighbours differ at least, from 0 to 1.
        breaks
            By attribute: cut points that stay, and no others.
        keep
            By attribute: cut points that stay.
        objective
            What is kept most of: "gain", the information about the target (without one, about the
            bins that are joined), or "iv", the information value of a target of two classes, which
            every bin has then.
        attributes
            Which are refined; all of them without it.

        Returns
        -------
        Bins
            New ones, whose `settings` have what was asked for under "refinements". These stay.

        Raises
        ------
        InputError
            There are no such bins of an attribute, and what contradicts each other; a cut point or
            attribute that is not there. Nothing is refined then.
        TargetError
            Event, non-event or information value without a target of two classes.
        KeyboardInterrupt
            On Ctrl-C, when the attribute at hand is done.
        """
        settings = _core.RefineSettings()
        if max_bins is not None:
            settings.max_bins = _at_least("max_bins", max_bins, 1)
        settings.min_bins = _at_least("min_bins", min_bins, 1)
        settings.min_share = _share("min_share", min_share)
        settings.min_weight = _weight("min_weight", min_weight)
        settings.min_event_weight = _weight("min_event_weight", min_event_weight)
        settings.min_nonevent_weight = _weight("min_nonevent_weight", min_nonevent_weight)
        settings.trend = _one_of("monotonic", monotonic, _TRENDS)
        settings.min_rate_difference = _share("min_rate_difference", min_rate_difference)
        settings.breaks = {name: _numbers(name, cuts) for name, cuts in (breaks or {}).items()}
        settings.keep = {name: _numbers(name, cuts) for name, cuts in (keep or {}).items()}
        settings.objective = _one_of("objective", objective, _OBJECTIVES)
        if attributes is not None:
            settings.attributes = _names(attributes)
            if not settings.attributes:
                raise InputError("there are no attributes to refine")
        return Bins(self._model.refine(settings), self._left_out)

    def to_json(self) -> str:
        """Get the text of a bin file; every number reads back as the same double."""
        return self._model.write()

    def save(self, path: Path) -> None:
        """Write a bin file, which `load` and the tool ``mcbin`` read. It is replaced as a whole."""
        _write(path, self.to_json())

    def to_sql(
        self,
        dialect: str = "ansi",
        table: str = "data",
        as_: Form = "index",
        *,
        target: str | None = None,
        suffix: str = "_bin",
        missing: str | None = None,
    ) -> str:
        """Write a query that adds the bins to a table of a database.

        Parameters
        ----------
        dialect
            One of `sql_dialects()`.
        table
            Its name, which may have parts.
        as_, target, suffix
            As for `apply`, without intervals.
        missing
            What missing values become, as text; NULL without it.

        Raises
        ------
        ExportError
            Something that the dialect cannot say.
        """
        results, form = self._export(target, as_)
        return self._model.sql(results, form, suffix, missing, dialect, table)

    def to_pmml(
        self,
        as_: Form = "index",
        *,
        target: str | None = None,
        suffix: str = "_bin",
        missing: str | None = None,
    ) -> str:
        """Write a PMML 4.4 document that derives the bins. Parameters as for `to_sql`."""
        results, form = self._export(target, as_)
        return self._model.pmml(results, form, suffix, missing)

    def to_python(
        self,
        as_: Form = "index",
        *,
        target: str | None = None,
        suffix: str = "_bin",
        missing: str | None = None,
    ) -> str:
        """Write a module that assigns the bins with NumPy alone. Parameters as for `to_sql`."""
        results, form = self._export(target, as_)
        return self._model.python(results, form, suffix, missing)

    def _export(self, target: str | None, as_: str) -> tuple[list[int], _core.Form]:
        form = _exported_form(as_)
        usable, notes = self._model.usable(self._model.select(target))
        _warn(notes)
        return usable, form

    def to_html(self, adjustment: float | None = None) -> str:
        """Make a page with a ranking, charts and tables.

        Parameters
        ----------
        adjustment
            A weight from 0 up, added to both classes before weights of evidence are taken; with 0 a
            bin that lacks a class has an infinite one. Without it, the one of the bins.
        """
        return self._model.html(adjustment)

    def to_text(self) -> str:
        """Make the tables that ``mcbin`` prints."""
        return self._model.text()

    def report(self, path: Path, adjustment: float | None = None) -> None:
        """Write the page of `to_html` to a file, which is replaced as a whole."""
        _write(path, self.to_html(adjustment))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Bins):
            return NotImplemented
        return self.to_json() == other.to_json()

    def __hash__(self) -> int:
        return hash(self.to_json())

    def __reduce__(self) -> tuple[Any, ...]:
        return _from_json, (self.to_json(), self._left_out)

    def __repr__(self) -> str:
        against = f" against {', '.join(self._targets)}" if self._targets else ""
        names = ", ".join(self._attributes[:8]) + (", ..." if len(self._attributes) > 8 else "")
        return f"<Bins of {len(self)} attributes{against}: {names}>"

    def _repr_html_(self) -> str:
        return _in_notebook(self._model)


class AttributeBins:
    """The bins of one attribute, against one target where there is one.

    Weights are sums of frequency weights, which are numbers of cases without weights. Arrays go by
    bin from the lowest up.
    """

    __slots__ = ("_index", "_model", "_result", "_variable")

    def __init__(self, model: _core.Model, index: int) -> None:
        self._model = model
        self._index = index
        self._result = model.result(index)
        self._variable = model.attributes()[self._result["attribute"]]

    @property
    def name(self) -> str:
        """The name of the attribute."""
        name: str = self._variable["name"]
        return name

    @property
    def kind(self) -> str:
        """continuous, numeric-categorical or string-categorical."""
        kind: str = self._variable["kind"]
        return kind

    @property
    def categories(self) -> list[str]:
        """Of a categorical attribute: the category of each code, which cut points divide."""
        return list(self._variable["categories"])

    @property
    def target(self) -> str | None:
        """The name of the target."""
        index = self._result["target"]
        return None if index is None else self._model.targets()[index]["name"]

    @property
    def classes(self) -> list[str]:
        """The categories of the target; the columns of `class_weights`."""
        index = self._result["target"]
        return [] if index is None else list(self._model.targets()[index]["categories"])

    @property
    def cut_points(self) -> np.ndarray[Any, np.dtype[np.float64]]:
        """Where the bins meet: shape (bins - 1,), ascending."""
        return np.array(self._result["cut_points"], dtype=np.float64)

    @property
    def labels(self) -> list[str]:
        """What the bins are called, such as ``(4.3, 5.4]``."""
        return self._model.labels(self._index)

    @property
    def weights(self) -> np.ndarray[Any, np.dtype[np.float64]]:
        """The weight of each bin: shape (bins,), or (0,) when an error left none."""
        return np.array(self._result["bin_weights"], dtype=np.float64)

    @property
    def class_weights(self) -> np.ndarray[Any, np.dtype[np.float64]]:
        """The weight of each class in each bin: shape (bins, classes)."""
        rows = self._result["class_weights"]
        return np.array(rows, dtype=np.float64).reshape(len(rows), -1)

    @property
    def valid_weight(self) -> float:
        """The weight of the cases with a value and a class."""
        weight: float = self._result["valid_weight"]
        return weight

    @property
    def missing_weight(self) -> float:
        """The weight of the other cases."""
        weight: float = self._result["weight_with_missing"]
        return weight - self.valid_weight

    @property
    def missing(self) -> dict[str, Any] | None:
        """The cases without a value whose class is known, as one more bin.

        Its ``"weight"``, and ``"class_weights"`` of shape (classes,); None where not counted.
        """
        missing = self._result["missing"]
        if missing is None:
            return None
        return {"weight": missing[0], "class_weights": np.array(missing[1], dtype=np.float64)}

    @property
    def distinct_values(self) -> int:
        """How many values the valid cases have."""
        count: int = self._result["distinct_values"]
        return count

    @property
    def range(self) -> tuple[float, float] | None:
        """The smallest and the largest value of the valid cases."""
        low, high = self._result["minimum"], self._result["maximum"]
        return None if low is None else (low, high)

    @property
    def information_gain(self) -> float | None:
        """What the bins tell about the target, in bits."""
        gain: float | None = self._result["information_gain"]
        return gain

    @property
    def best_split(self) -> dict[str, Any] | None:
        """Without a cut point: the split that came closest to being accepted, where there was one.

        Its ``"cut_point"``, its ``"gain"`` and the ``"threshold"`` that this did not exceed, in
        bits.
        """
        split: dict[str, Any] | None = self._result["best_split"]
        return None if split is None else dict(split)

    @property
    def information_value(self) -> float | None:
        """Of a target with two classes; infinite where a bin lacks one of them."""
        evidence = self._model.evidence(self._index, None)
        return None if evidence is None else evidence["information_value"]

    @property
    def event(self) -> str | None:
        """Of two classes the one that weight of evidence is about."""
        evidence = self._model.evidence(self._index, None)
        return None if evidence is None else evidence["event"]

    @property
    def status(self) -> str:
        """How it went: "ok", "warning" or "error"."""
        severity: str = self._result["severity"]
        return severity

    @property
    def code(self) -> int:
        """The status as a number, 0 when it is ok."""
        code: int = self._result["code"]
        return code

    @property
    def message(self) -> str:
        """The status in words."""
        text: str = self._result["text"]
        return text

    def weights_of_evidence(
        self, adjustment: float | None = None
    ) -> np.ndarray[Any, np.dtype[np.float64]] | None:
        """Get how much each bin speaks for the event: shape (bins,), or None without two classes.

        Parameters
        ----------
        adjustment
            A weight from 0 up, added to both classes of each bin; without it that of the bins.
        """
        evidence = self._model.evidence(self._index, adjustment)
        return None if evidence is None else np.array(evidence["weights"], dtype=np.float64)

    def table(self, adjustment: float | None = None) -> Frame:
        """Get the bins as rows: label, weight and share, and of a target what it has of each class.

        Parameters
        ----------
        adjustment
            As for `weights_of_evidence`.

        Returns
        -------
        Frame
            Of two classes also weight of evidence and what each bin adds to the information value.
            The last row is that of the missing cases, where they were counted.
        """
        weights = self.weights
        count = len(weights)
        total = weights.sum()
        missing = self.missing if count else None
        columns: dict[str, list[Any]] = {
            "bin": list(range(count)),
            "label": self.labels[:count],
            "weight": weights.tolist(),
            "share": (weights / total if total else np.full(count, np.nan)).tolist(),
        }
        for place, name in enumerate(self.classes if count else []):
            columns[f"weight of {name}"] = self.class_weights[:, place].tolist()
        evidence = self._model.evidence(self._index, adjustment)
        if evidence is not None:
            columns["woe"] = evidence["weights"]
            columns["information_value"] = evidence["values"]
        if missing is not None:
            row = {"bin": -1, "label": "missing", "weight": missing["weight"], "share": None}
            for name, weight in zip(self.classes, missing["class_weights"].tolist(), strict=True):
                row[f"weight of {name}"] = weight
            if evidence is not None:
                row["woe"] = evidence["missing_weight"]
                row["information_value"] = evidence["missing_value"]
            for name, values in columns.items():
                values.append(row[name])
        return make_frame(columns)

    def plot(self, ax: Axes | None = None) -> Axes:
        """Draw the bins with matplotlib: a bar for each, and the shares of the classes.

        Parameters
        ----------
        ax
            Where; a new figure without it.

        Returns
        -------
        matplotlib.axes.Axes
            With the bars.
        """
        from ._plot import plot_bins

        return plot_bins(self, ax)

    def _json(self) -> str:
        return self._model.only(self._index).write()

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, AttributeBins):
            return NotImplemented
        return self._json() == other._json()

    def __hash__(self) -> int:
        return hash(self._json())

    def __reduce__(self) -> tuple[Any, ...]:
        return _first_of_json, (self._json(),)

    def __repr__(self) -> str:
        against = f" against {self.target}" if self.target else ""
        cuts = ", ".join(f"{cut:.6g}" for cut in self.cut_points[:8])
        more = ", ..." if len(self.cut_points) > 8 else ""
        return f"<{len(self.weights)} bins of {self.name}{against}, {self.status}: {cuts}{more}>"

    def _repr_html_(self) -> str:
        return _in_notebook(self._model.only(self._index))


class Evaluation:
    """What other data say, counted with the cut points as they are.

    Attributes
    ----------
    bins : Bins
        The same bins with the counts of the other data.
    text : str
        Both side by side, as ``mcbin evaluate`` prints them.
    """

    __slots__ = ("_before", "_made", "bins", "text")

    def __init__(self, made: Bins, before: list[AttributeBins], bins: Bins, text: str) -> None:
        self._made = made
        self._before = before
        self.bins = bins
        self.text = text

    def stability_index(self, name: str) -> float | None:
        """Get how far the shares of an attribute's bins moved; None when a sample has no weight."""
        for before, after in zip(self._before, self.bins._all(), strict=True):
            if before.name == name:
                return _core.stability_index(
                    before._model, before._index, after._model, after._index
                )
        raise KeyError(name)

    def summary(self) -> Frame:
        """Compare the attributes.

        Returns
        -------
        Frame
            A row for each: attribute, population stability index, and with a target the gain (bits)
            and the information value before and now.
        """
        after = self.bins._all()
        columns: dict[str, list[Any]] = {
            "attribute": [bins.name for bins in after],
            "stability_index": [self.stability_index(bins.name) for bins in after],
        }
        if self.bins.targets:
            columns["gain"] = [bins.information_gain for bins in self._before]
            columns["gain_now"] = [bins.information_gain for bins in after]
            columns["information_value"] = [bins.information_value for bins in self._before]
            columns["information_value_now"] = [bins.information_value for bins in after]
        return make_frame(columns)

    def __repr__(self) -> str:
        return self.text

    def _repr_html_(self) -> str:
        return self.summary()._repr_html_()


@dataclass(frozen=True)
class FitCall:
    """What a run of the library is told; columns by their place in a table."""

    settings: dict[str, Any]
    attributes: list[int]
    targets: list[int]
    weight: int | None
    categorical: set[int]
    missing: dict[int, tuple[list[float], list[str], Any]]
    truncates_weights: bool
    events: list[str]
    threads: int
    temp_dir: str
    counts_distinct: bool = False

    def run(self, table: _core.Table, report: Report) -> tuple[_core.Model, list[int]]:
        """Bin a table; answers the bins, and which of them were counted anew."""
        return _core.fit(
            table,
            self.settings,
            self.attributes,
            self.targets,
            self.weight,
            self.categorical,
            self.missing,
            self.truncates_weights,
            self.events,
            self.threads,
            self.temp_dir,
            report,
        )


class Request:
    """A table on its way into a run, with the columns that were handed in by themselves."""

    def __init__(self, data: Any, names: Sequence[str] | None) -> None:
        self.table = as_table(data, names)

    def index(self, name: str) -> int:
        names = self.table.names()
        if name not in names:
            raise unknown_column(name, names)
        place = names.index(name)
        if self.table.role(place) == "other":
            raise TableTypeError(f"column {name!r} is of {self.table.type(place)}, not of values")
        return place

    def _add(self, data: Any, default_name: str) -> str:
        name, column = column_of(data, default_name)
        if name in self.table.names():
            name = default_name
        add_column(self.table, name, column)
        check_names(self.table.names())
        return name

    def add_targets(self, target: Any) -> list[str]:
        """Name the targets; those that are columns by themselves are added."""
        if isinstance(target, str):
            return [target]
        if isinstance(target, (list, tuple)) and all(isinstance(name, str) for name in target):
            if not target:
                raise TargetError("supervised binning needs a target")
            if all(name in self.table.names() for name in target) or len(target) != len(self.table):
                return list(target)
        if target is None:
            raise TargetError("supervised binning needs a target")
        return [self._add(target, "target")]

    def add_weight(self, weight: Any) -> int | None:
        """Find the column of the weights, and add it where it comes by itself."""
        if weight is None:
            return None
        name = weight if isinstance(weight, str) else self._add(weight, "weight")
        place = self.index(name)
        if self.table.role(place) != "number":
            raise TableTypeError(f"the weight {name!r} is no column of numbers")
        return place

    def _choose(
        self, attributes: Sequence[str] | None, used: set[int], categorical: set[int]
    ) -> tuple[list[int], list[str]]:
        if attributes is not None:
            return [self.index(name) for name in _names(attributes)], []
        chosen, left_out = [], []
        for place, name in enumerate(self.table.names()):
            if place in used:
                continue
            if place in categorical or self.table.role(place) in ("number", "ordered"):
                chosen.append(place)
            else:
                left_out.append(name)
        return chosen, left_out

    def run(
        self,
        settings: dict[str, Any],
        targets: list[str],
        weight: Any,
        attributes: Sequence[str] | None,
        categorical: Iterable[str],
        missing: Mapping[str, Any] | None,
        rounding: str,
        threads: int,
        progress: Progress,
        temp_dir: Path | None,
        events: Sequence[str] = (),
        *,
        distinct: bool = False,
    ) -> Bins:
        if rounding not in ("closest", "truncate"):
            raise InputError(f"rounding is 'closest' or 'truncate', not {rounding!r}")
        target_places = [self.index(name) for name in targets]
        weight_place = self.add_weight(weight)
        if isinstance(categorical, str):
            raise TableTypeError("categorical is a list of names")
        categorical_places = {self.index(name) for name in categorical}
        used = {*target_places} | ({weight_place} if weight_place is not None else set())
        chosen, left_out = self._choose(attributes, used, categorical_places)
        for place in [*chosen, *target_places]:
            if (chosen + target_places).count(place) > 1 or place == weight_place:
                raise InputError(f"column {self.table.names()[place]!r} is used twice")
        if not chosen:
            raise InputError("there is no column of numbers to bin; name others in attributes=")
        if len(self.table) == 0:
            raise InputError("the table has no rows")
        definitions = {
            self.index(name): _missing(name, given, self.table.role(self.index(name)))
            for name, given in (missing or {}).items()
        }
        call = FitCall(
            settings,
            chosen,
            target_places,
            weight_place,
            categorical_places,
            definitions,
            rounding == "truncate",
            list(events),
            _at_least("threads", threads, 0),
            os.fspath(temp_dir) if temp_dir is not None else _system_temp_dir(),
            distinct,
        )
        with _progress(progress) as report:
            model, anew = self.fit(call, report)
        bins = Bins(model, left_out)
        _warn(_notes(bins, anew, left_out))
        return bins

    def fit(self, call: FitCall, report: Report) -> tuple[_core.Model, list[int]]:
        """Run the library; answers the bins, and which of them were counted anew."""
        return call.run(self.table, report)


def _request(data: Any, names: Sequence[str] | None) -> Request:
    """Make the request for a table in memory, or for one of an engine."""
    engine = find_engine(data)
    if engine is None:
        return Request(data, names)
    from .engines._fit import EngineRequest

    return EngineRequest(engine)


def _notes(bins: Bins, anew: list[int], left_out: list[str]) -> list[str]:
    notes = []
    results = bins._all()
    for result in results:
        if result.code and result.code not in _ONE_BIN:
            against = f" against {result.target}" if len(bins.targets) > 1 else ""
            notes.append(f"{result.name}{against}: {result.message} ({result.code})")
    notes += [
        f"{results[index].name}: a cut point fell between neighbouring doubles, so its bins were "
        "counted anew"
        for index in anew
    ]
    if left_out:
        notes.append(f"not binned, as they are no numbers: {', '.join(left_out)}")
    return notes


def _warn(notes: list[str]) -> None:
    if notes:
        level = 2
        while _is_ours(level):
            level += 1
        warnings.warn("; ".join(notes), BinningWarning, stacklevel=level)


def _is_ours(level: int) -> bool:
    import sys

    try:
        name = sys._getframe(level).f_globals.get("__name__", "")
    except ValueError:
        return False
    return str(name).startswith("mcbinning.")


def _get(results: dict[str, int], name: str) -> int:
    if name not in results:
        raise unknown_column(name, list(results))
    return results[name]


def _is_right(closed: str) -> bool:
    if closed not in ("right", "left"):
        raise InputError(f"closed is 'right' or 'left', not {closed!r}")
    return closed == "right"


def _at_least(name: str, value: int, least: int) -> int:
    if isinstance(value, bool) or not isinstance(value, (int, np.integer)):
        raise TypeError(f"{name} is a whole number, not {type(value).__name__}")
    if not least <= value < 2**31:
        raise InputError(f"{name} is {least} or more, not {value}")
    return int(value)


def _share(name: str, value: float) -> float:
    if not 0.0 <= value <= 1.0:
        raise InputError(f"{name} is a share from 0 to 1, not {value}")
    return float(value)


def _weight(name: str, value: float) -> float:
    if not 0.0 <= value < float("inf"):
        raise InputError(f"{name} is a weight from 0 up, not {value}")
    return float(value)


def _one_of(name: str, value: Any, known: Mapping[Any, Any]) -> Any:
    """Look up what a word stands for."""
    if value not in known:
        words = ", ".join(repr(word) for word in known if word is not None)
        raise InputError(f"{name} is one of {words}, not {value!r}")
    return known[value]


def _exported_form(as_: str) -> _core.Form:
    """Look up a form that expressions can have."""
    if as_ not in _FORMS or as_ == "interval":
        raise InputError(f"as_ is 'index', 'label' or 'woe', not {as_!r}")
    return _FORMS[as_]


def _names(names: Sequence[str]) -> list[str]:
    if isinstance(names, str):
        raise TableTypeError("attributes is a list of names")
    return list(names)


def _numbers(name: str, points: Sequence[float]) -> list[float]:
    values = [float(point) for point in points]
    if not np.isfinite(values).all():
        raise InputError(f"the cut points of {name!r} are not finite")
    return values


def _events(event: Any) -> list[str]:
    """Write classes as texts: the library reads numbers in them where the target has numbers."""
    if event is None:
        return []
    several = event if isinstance(event, (list, tuple)) else [event]
    return [one if isinstance(one, str) else repr(float(one)) for one in several]


def _missing(name: str, given: Any, role: str) -> tuple[list[float], list[str], Any]:
    """Sort what is missing into numbers, texts and the interval."""
    values = list(given) if isinstance(given, (list, set, frozenset, np.ndarray)) else [given]
    intervals = [value for value in values if isinstance(value, tuple)]
    if len(intervals) > 1:
        raise InputError(f"missing: {name!r} has more than one interval")
    single = [value for value in values if not isinstance(value, tuple)]
    texts = [value for value in single if isinstance(value, str)]
    numbers = [float(value) for value in single if not isinstance(value, str)]
    interval = None
    if intervals:
        if len(intervals[0]) != 2:
            raise InputError(f"missing: an interval of {name!r} is (low, high)")
        low, high = (None if end is None else float(end) for end in intervals[0])
        if low is not None and high is not None and not low <= high:
            raise InputError(f"missing: the interval of {name!r} ends before it begins")
        interval = (low, high)
    if not np.isfinite([*numbers, *(end for end in interval or () if end is not None)]).all():
        raise InputError(f"missing: {name!r} has a value that is not finite")
    if texts and (numbers or interval or role == "number"):
        raise InputError(f"missing: {name!r} has texts among numbers")
    if role == "text" and (numbers or interval):
        raise InputError(f"missing: {name!r} has numbers, but the column is text")
    return numbers, texts, interval


@contextlib.contextmanager
def _progress(progress: Progress) -> Iterator[Callable[[int, int], object] | None]:
    """Make the function that a run reports to; a bar is closed in the end."""
    if progress is None or progress is False:
        yield None
    elif callable(progress):
        yield progress
    else:
        try:
            from tqdm.auto import tqdm
        except ImportError:
            raise InputError(
                "progress=True needs tqdm; or give a function of two numbers"
            ) from None
        with tqdm(unit="", unit_scale=True, desc="binning") as bar:

            def report(done: int, total: int) -> None:
                bar.total = total
                bar.update(done - bar.n)

            yield report


def _write(path: Path, text: str) -> None:
    """Write a file beside its place, then put it there: a failure leaves what was there."""
    folder, name = os.path.split(os.path.abspath(os.fspath(path)))
    import tempfile  # here, as importing it takes longer than importing this package

    descriptor, beside = tempfile.mkstemp(prefix=f".{name}.", dir=folder)
    try:
        with open(descriptor, "w", encoding="utf-8", newline="") as file:
            file.write(text)
        mode = os.stat(path).st_mode & 0o777 if os.path.exists(path) else 0o666 & ~_umask()
        os.chmod(beside, mode)
        os.replace(beside, path)
    except BaseException:
        os.unlink(beside)
        raise


def _system_temp_dir() -> str:
    import tempfile

    return tempfile.gettempdir()


def _umask() -> int:
    mask = os.umask(0o022)
    os.umask(mask)
    return mask


def _in_notebook(model: _core.Model) -> str:
    """Make a frame for the report's page, so that its styles stay within."""
    import html

    page = html.escape(model.html(None), quote=True)
    height = 520 if len(model) == 1 else 640
    return f'<iframe srcdoc="{page}" width="100%" height="{height}" style="border:0"></iframe>'

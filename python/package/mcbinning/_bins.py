"""The bins of some attributes, and what becomes of them."""

from __future__ import annotations

import os
from collections.abc import Iterator, Mapping, Sequence
from typing import Any, Literal

import numpy as np

from . import _core
from ._arguments import (
    as_adjustment,
    as_cut_points,
    as_events,
    as_mapping,
    as_names,
    as_share,
    as_text,
    as_weight,
    at_least,
    one_of,
)
from ._attribute import AttributeBins, results_of
from ._engine import find_engine
from ._errors import BinFileError, InputError, unknown_column
from ._evaluation import Evaluation
from ._files import Path, write_text
from ._frame import Frame, make_frame
from ._notebook import in_notebook
from ._request import Request
from ._warning import warn

Form = Literal["index", "label", "woe", "interval"]
Trend = Literal["increasing", "decreasing", "either", "peak", "valley"]

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


class Bins:
    """The bins of some attributes. A plain value: it does not change, and threads may share it.

    ``bins["age"]`` is the result of an attribute, of several targets ``bins["age", "y"]``;
    iterating gives the names of the attributes. It can be pickled, copied and compared.
    """

    __slots__ = ("__weakref__", "_attributes", "_left_out", "_model", "_selected", "_targets")

    def __init__(self, model: _core.Model, left_out: Sequence[str] = ()) -> None:
        self._model = model
        self._attributes = model.attribute_names()
        self._targets = model.target_names()
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
            found = {self._name_of(index): index for index in self._model.select(target)}
            self._selected[target] = found
        return found

    def _name_of(self, result: int) -> str:
        return self._attributes[self._model.variables_of(result)[0]]

    def __getitem__(self, key: str | tuple[str, str]) -> AttributeBins:
        if isinstance(key, tuple) and len(key) != 2:
            raise KeyError(key)
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

    def summary(self) -> Frame:
        """Rank the attributes: of each target, those that tell most about it come first.

        Returns
        -------
        Frame
            A row for each result: attribute, target, number of bins, gain (bits), information value
            (of two classes), weights of the valid and of the missing cases, status.
        """
        results = results_of(self._model)
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
        form = one_of("as_", as_, _FORMS)
        suffix = as_text("suffix", suffix)
        if names is None and isinstance(table, np.ndarray) and table.ndim == 2:
            names = self._attributes
        results = self._results(target)
        if attributes is not None:
            chosen = as_names("attributes", attributes)
            results = {name: _get(results, name) for name in chosen}
        usable, notes = self._model.usable(list(results.values()))
        engine = find_engine(table)
        if engine is not None:
            warn(notes)
            form = _exported_form(as_)
            named = [self._name_of(index) for index in usable]
            from .engines._apply import apply_on

            return apply_on(engine, self._model, usable, named, form, suffix)
        request = Request(table, names, only=results)
        core = request.table
        columns = {name: request.index(name) for name in results}
        frame, unknown = self._model.apply(usable, core, columns, form, suffix)
        if unknown:
            notes = [*notes, *(f"{name}: {n} unknown categories" for name, n in unknown.items())]
        warn(notes)
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
        if unweighted:
            weight = None
        elif weight is None:
            weight = self.settings["weight"]
        engine = find_engine(table)
        if engine is not None:
            from .engines._evaluate import evaluate_on

            counted, text = evaluate_on(engine, self._model, results, weight)
            return Evaluation(before, results_of(counted), Bins(counted), text)
        wanted = {self._name_of(index) for index in results}
        wanted |= {bins.target for bins in before if bins.target is not None}
        named = wanted | {weight} if isinstance(weight, str) else wanted
        request = Request(table, names, only=named)
        columns = {name: request.index(name) for name in sorted(wanted)}
        place = request.add_weight(weight)
        counted, text = self._model.count_on(results, request.table, columns, place, "other data")
        return Evaluation(before, results_of(counted), Bins(counted), text)

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
        event: Any = None,
        woe_adjust: float | None = None,
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
            What every bin has of the two classes of a target; the event is one of them.
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
        event, woe_adjust
            As for `fit`; those of the bins without them.

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
            settings.max_bins = at_least("max_bins", max_bins, 1)
        settings.min_bins = at_least("min_bins", min_bins, 1)
        settings.min_share = as_share("min_share", min_share)
        settings.min_weight = as_weight("min_weight", min_weight)
        settings.min_event_weight = as_weight("min_event_weight", min_event_weight)
        settings.min_nonevent_weight = as_weight("min_nonevent_weight", min_nonevent_weight)
        settings.trend = one_of("monotonic", monotonic, _TRENDS)
        settings.min_rate_difference = as_share("min_rate_difference", min_rate_difference)
        settings.breaks = _cuts_by_name("breaks", breaks)
        settings.keep = _cuts_by_name("keep", keep)
        settings.objective = one_of("objective", objective, _OBJECTIVES)
        if attributes is not None:
            settings.attributes = as_names("attributes", attributes)
            if not settings.attributes:
                raise InputError("there are no attributes to refine")
        adjustment = None if woe_adjust is None else as_adjustment("woe_adjust", woe_adjust)
        return Bins(self._model.refine(settings, as_events(event), adjustment), self._left_out)

    def to_json(self) -> str:
        """Get the text of a bin file; every number reads back as the same double."""
        return self._model.write()

    def save(self, path: Path) -> None:
        """Write a bin file, which `load` and the tool ``mcbin`` read. It is replaced as a whole."""
        write_text(path, self.to_json())

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
        results, form, suffix, missing = self._export(target, as_, suffix, missing)
        dialect, table = as_text("dialect", dialect), as_text("table", table)
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
        results, form, suffix, missing = self._export(target, as_, suffix, missing)
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
        results, form, suffix, missing = self._export(target, as_, suffix, missing)
        return self._model.python(results, form, suffix, missing)

    def _export(
        self, target: str | None, as_: str, suffix: str, missing: str | None
    ) -> tuple[list[int], _core.Form, str, str | None]:
        form = _exported_form(as_)
        text = None if missing is None else as_text("missing", missing)
        usable, notes = self._model.usable(self._model.select(target))
        warn(notes)
        return usable, form, as_text("suffix", suffix), text

    def to_html(self, adjustment: float | None = None) -> str:
        """Make a page with a ranking, charts and tables.

        Parameters
        ----------
        adjustment
            A weight from 0 up, added to both classes before weights of evidence are taken; with 0 a
            bin that lacks a class has an infinite one. Without it, the one of the bins.
        """
        checked = None if adjustment is None else as_adjustment("adjustment", adjustment)
        return self._model.html(checked)

    def to_text(self) -> str:
        """Make the tables that ``mcbin`` prints."""
        return self._model.text()

    def report(self, path: Path, adjustment: float | None = None) -> None:
        """Write the page of `to_html` to a file, which is replaced as a whole."""
        write_text(path, self.to_html(adjustment))

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
        return in_notebook(self._model)


def load(path: Path) -> Bins:
    """Read a bin file, which `Bins.save` or the tool ``mcbin`` has written.

    Raises
    ------
    BinFileError
        It is none, or makes no sense; the message says where.
    OSError
        It cannot be read.
    """
    name = os.fsdecode(path)
    with open(name, encoding="utf-8") as file:
        try:
            text = file.read()
        except UnicodeDecodeError as error:
            raise BinFileError(f"{name}: this is no bin file: {error}") from None
    return Bins(_core.Model.parse(text, name))


def sql_dialects() -> list[str]:
    """Get the names of the dialects that `Bins.to_sql` writes."""
    return _core.sql_dialects()


def _from_json(text: str, left_out: Sequence[str] = ()) -> Bins:
    return Bins(_core.Model.parse(text, "bins"), left_out)


def _get(results: dict[str, int], name: str) -> int:
    if name not in results:
        raise unknown_column(name, list(results))
    return results[name]


def _cuts_by_name(argument: str, cut_points: Any) -> dict[str, list[float]]:
    given = as_mapping(argument, cut_points)
    return {name: as_cut_points(name, points)[0] for name, points in given.items()}


def _exported_form(as_: str) -> _core.Form:
    """Look up a form that expressions can have."""
    if not isinstance(as_, str) or as_ not in _FORMS or as_ == "interval":
        raise InputError(f"as_ is 'index', 'label' or 'woe', not {as_!r}")
    return _FORMS[as_]

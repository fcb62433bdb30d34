"""What a run is asked for: a table, and what its columns are in it."""

from __future__ import annotations

import os
from collections import Counter
from collections.abc import Iterable, Mapping, Sequence
from dataclasses import dataclass
from typing import Any

import numpy as np

from . import _core
from ._arguments import as_mapping, as_number, as_seconds, at_least, is_date
from ._errors import InputError, TableTypeError, TargetError, unknown_column
from ._files import Path, system_temp_dir
from ._progress import Report
from ._table import add_column, as_table, column_of, names_of


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
    most_values: int = 0

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

    def __init__(
        self, data: Any, names: Sequence[str] | None, only: Iterable[str] | None = None
    ) -> None:
        self.table = as_table(data, names, only)
        self._data = data
        self._places: dict[str, int] = {}

    def index(self, name: str) -> int:
        """Find a column, and refuse one that has no values."""
        if len(self._places) != self.table.width():
            self._places = {known: place for place, known in enumerate(self.table.names())}
        if name not in self._places:
            raise unknown_column(name, names_of(self._data) or list(self._places))
        place = self._places[name]
        if self.table.role(place) == "other":
            raise TableTypeError(f"column {name!r} is of {self.table.type(place)}, not of values")
        return place

    def _add(self, data: Any, default_name: str) -> str:
        taken = set(self.table.names())
        name, column = column_of(data, default_name)
        if name in taken:
            name = default_name
        while name in taken:
            name += "_"
        add_column(self.table, name, column)
        return name

    def add_targets(self, target: Any) -> list[str]:
        """Name the targets; those that are columns by themselves are added."""
        if isinstance(target, str):
            return [target]
        if isinstance(target, (list, tuple)) and all(isinstance(name, str) for name in target):
            if not target:
                raise TargetError("supervised binning needs a target")
            if len(target) != len(self.table) or set(target) <= set(self.table.names()):
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
        if self.table.role(place) != "number" or self.table.is_time(place):
            raise TableTypeError(f"the weight {name!r} is no column of numbers")
        return place

    def _kind(self, place: int) -> str:
        return "time" if self.table.is_time(place) else self.table.role(place)

    def _choose(
        self, attributes: Sequence[str] | None, used: set[int], categorical: set[int]
    ) -> tuple[list[int], list[str]]:
        if attributes is not None:
            return [self.index(name) for name in attributes], []
        chosen, left_out = [], []
        for place, name in enumerate(self.table.names()):
            if place in used:
                continue
            if place in categorical or self.table.role(place) in ("number", "ordered"):
                chosen.append(place)
            else:
                left_out.append(name)
        return chosen, left_out

    def plan(
        self,
        settings: dict[str, Any],
        targets: list[str],
        weight: Any,
        attributes: Sequence[str] | None,
        categorical: Iterable[str],
        missing: Mapping[str, Any] | None,
        rounding: str,
        threads: int,
        temp_dir: Path | None,
        events: Sequence[str] = (),
        *,
        distinct: bool = False,
        most_values: int = 0,
    ) -> tuple[FitCall, list[str]]:
        """Check what a run is told; answers it, and the columns that are not binned."""
        if rounding not in ("closest", "truncate"):
            raise InputError(f"rounding is 'closest' or 'truncate', not {rounding!r}")
        target_places = [self.index(name) for name in targets]
        weight_place = self.add_weight(weight)
        categorical_places = {self.index(name) for name in categorical}
        used = {*target_places} | ({weight_place} if weight_place is not None else set())
        chosen, left_out = self._choose(attributes, used, categorical_places)
        uses = Counter([*chosen, *target_places])
        for place, count in uses.items():
            if count > 1 or place == weight_place:
                raise InputError(f"column {self.table.name(place)!r} is used twice")
        if not chosen:
            raise InputError("there is no column of numbers to bin; name others in attributes=")
        if len(self.table) == 0:
            raise InputError("the table has no rows")
        definitions = {
            self.index(name): _missing(name, given, self._kind(self.index(name)))
            for name, given in as_mapping("missing", missing).items()
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
            at_least("threads", threads, 0),
            os.fspath(temp_dir) if temp_dir is not None else system_temp_dir(),
            distinct,
            most_values,
        )
        return call, left_out

    def fit(self, call: FitCall, report: Report) -> tuple[_core.Model, list[int]]:
        """Run the library; answers the bins, and which of them were counted anew."""
        return call.run(self.table, report)


def _missing(name: str, given: Any, kind: str) -> tuple[list[float], list[str], Any]:
    """Sort what is missing into numbers, texts and the interval."""

    def read(value: Any) -> float:
        if kind == "time" and is_date(value):
            return as_seconds(name, value)
        return as_number(f"missing: a value of {name!r}", value)

    is_list = isinstance(given, Iterable) and not isinstance(given, (str, bytes, tuple))
    values = list(given) if is_list else [given]
    intervals = [value for value in values if isinstance(value, tuple)]
    if len(intervals) > 1:
        raise InputError(f"missing: {name!r} has more than one interval")
    single = [value for value in values if not isinstance(value, tuple)]
    texts = [value for value in single if isinstance(value, str) and kind != "time"]
    numbers = [read(value) for value in single if value not in texts]
    interval = None
    if intervals:
        if len(intervals[0]) != 2:
            raise InputError(f"missing: an interval of {name!r} is (low, high)")
        low, high = (None if end is None else read(end) for end in intervals[0])
        if low is not None and high is not None and not low <= high:
            raise InputError(f"missing: the interval of {name!r} ends before it begins")
        interval = (low, high)
    if not np.isfinite([*numbers, *(end for end in interval or () if end is not None)]).all():
        raise InputError(f"missing: {name!r} has a value that is not finite")
    if texts and (numbers or interval or kind == "number"):
        raise InputError(f"missing: {name!r} has texts among numbers")
    if kind == "text" and (numbers or interval):
        raise InputError(f"missing: {name!r} has numbers, but the column is text")
    return numbers, texts, interval

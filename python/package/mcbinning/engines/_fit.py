"""Bins of a table that an engine holds: what it counts, handed to the library."""

from __future__ import annotations

import json
from collections.abc import Sequence
from dataclasses import replace
from typing import Any, Literal

import numpy as np

from .. import _core
from .._errors import InputError, TableTypeError
from .._progress import Report
from .._request import FitCall, Request
from . import _count, _plan, _sql
from ._columns import find_categories_of, find_column
from ._rows import add_codes, find_categories, other_names, weigh
from ._sql import Array, Cases, Engine, MissingValues

# Up to there different values of bins of equal frequency are counted.
_DISTINCT_COUNTED = 1000

# So many attributes at a time where all their values are collected.
_COLLECTED = 4

# With so many categories of an attribute and a target, no limit of values is reached.
_MOST_PAIRS = 256 * 256


class EngineRequest(Request):
    """A table of an engine on its way into a run."""

    def __init__(self, engine: Engine) -> None:
        self._engine = engine
        self.table = _core.Table()  # columns of the same names and roles, without the values
        for column in engine.columns:
            if column.role == "number":
                unit = "s" if column.is_time else ""
                self.table.add_numbers(column.name, np.zeros(1), False, unit)
            else:
                self.table.add_texts(column.name, [""])

    def index(self, name: str) -> int:
        """Find a column, and refuse one that has no values."""
        return self._engine.columns.index(find_column(self._engine, name))

    def _add(self, data: Any, default_name: str) -> str:
        raise TableTypeError(f"the {default_name} of an engine's table is given by its name")

    def fit(self, call: FitCall, report: Report) -> tuple[_core.Model, list[int]]:
        """Have the engine count, and run the library on that for every attribute and target."""
        for place in call.attributes:
            find_column(self._engine, self._engine.columns[place].name)
        return _Run(self._engine, call, report).make()


class _Run:
    """One fit: which columns take part, and what is known of them before the first round."""

    def __init__(self, engine: Engine, call: FitCall, report: Report) -> None:
        self._engine = engine
        self._call = call
        self._report = report
        self._columns = engine.columns
        weight = None if call.weight is None else self._columns[call.weight]
        self._weights = weigh(engine, weight, self._missing_of(call.weight), call.truncates_weights)
        if self._weights.records == 0:
            raise InputError("the table has no rows")
        coded = [*call.targets, *(place for place in call.attributes if self._is_coded(place))]
        for place in coded:
            find_categories_of(engine, self._columns[place].name)
        self._categories = {
            place: find_categories(
                engine, self._columns[place], self._missing_of(place), self._weights.kept
            )
            for place in coded
        }

    def _is_coded(self, place: int) -> bool:
        return self._columns[place].role == "text" or place in self._call.categorical

    def _missing_of(self, place: int | None) -> MissingValues:
        if place is None or place not in self._call.missing:
            return MissingValues()
        return MissingValues(*self._call.missing[place])

    def make(self) -> tuple[_core.Model, list[int]]:
        """Rehearse what is refused, then count, then bin."""
        rehearsed, _ = self._call.run(self._rehearsal(), None)
        file = json.loads(rehearsed.write())
        file["source"]["records"] = self._weights.records
        file["source"]["dropped"] = self._weights.dropped
        file["results"] = []
        anew = []
        targets: list[int | None] = [*self._call.targets]
        pairs = [
            (attribute, target)
            for target in targets or [None]
            for attribute in self._call.attributes
        ]
        told = _Told(self._report, len(pairs))
        size = self._engine.side_by_side
        if self._needs_all_values:
            size = min(size, _COLLECTED)
        for first in range(0, len(pairs), size):
            batch = pairs[first : first + size]
            summaries = self._summarise(batch, told)
            distinct = self._count_distinct(batch, summaries, told)
            for pair, summary, number in zip(batch, summaries, distinct, strict=True):
                result, counted_anew = self._bin(*pair, summary)
                result["distinct_values"] = number
                if counted_anew:
                    anew.append(len(file["results"]))
                file["results"].append(result)
        told.end()
        return _core.Model.parse(json.dumps(file), "bins"), anew

    @property
    def _needs_all_values(self) -> bool:
        """Whether there are no pre-bins or bins whose borders would do."""
        return self._call.settings.get("prebin_above") == 0

    def _rehearsal(self) -> _core.Table:
        """Make a table with every category, which the library refuses where it refuses this one."""
        count = max([2, *(len(names) for names in self._categories.values())])
        table = _core.Table()
        for place, column in enumerate(self._columns):
            if place in self._categories:
                self._add_codes(table, place, np.arange(count))
            elif place == self._call.weight:
                table.add_numbers(column.name, np.full(count, self._weights.largest), False)
            elif column.role == "number":
                unit = "s" if column.is_time else ""
                table.add_numbers(column.name, np.zeros(count), False, unit)
            else:
                table.add_texts(column.name, [""] * count)
        return table

    def _add_codes(self, table: _core.Table, place: int, codes: Array) -> None:
        add_codes(table, self._columns[place].name, self._categories[place], codes)

    def _cases(self, attribute: int, target: int | None) -> Cases:
        dialect = self._engine.dialect
        value = _sql.value_of(dialect, self._columns[attribute], self._missing_of(attribute))
        if attribute in self._categories:
            code = _sql.code_of(dialect, f"({value})", self._categories[attribute])
            value = _sql.number_of_code(dialect, code)
        code = "0"
        if target is not None:
            known = _sql.value_of(dialect, self._columns[target], self._missing_of(target))
            code = _sql.code_of(
                dialect, f"({known})", self._categories[target], _plan.UNKNOWN_CLASS
            )
        return self._weights.cases(value, code)

    def _demand(self, attribute: int, target: int | None) -> _plan.Demand:
        settings = self._call.settings
        classes = 0 if target is None else len(self._categories[target])
        if attribute in self._categories:
            return _plan.Demand(classes, 0, 0, _MOST_PAIRS)
        if target is None:
            return _plan.Demand(0, settings["bins"], _DISTINCT_COUNTED, _DISTINCT_COUNTED)
        if self._needs_all_values:
            closed: Literal["right", "left"] = "right" if settings["right_closed"] else "left"
            return _plan.Demand(classes, 0, 0, self._call.most_values, closed)
        return _plan.Demand(
            classes, settings["prebins"], settings["prebin_above"], self._call.most_values
        )

    def _summarise(
        self, pairs: Sequence[tuple[int, int | None]], told: _Told
    ) -> list[_plan.Summary]:
        rounds = [
            _plan.summarise(
                self._engine,
                self._columns[attribute].name,
                self._cases(attribute, target),
                self._demand(attribute, target),
                self._weights.total,
            )
            for attribute, target in pairs
        ]
        return run_rounds(self._engine, rounds, told)

    def _count_distinct(
        self,
        pairs: Sequence[tuple[int, int | None]],
        summaries: Sequence[_plan.Summary],
        told: _Told,
    ) -> list[int]:
        """Count different values; where that takes another query, one above a limit is for more."""
        limit = self._call.settings.get("prebin_above", _DISTINCT_COUNTED) + 1
        numbers = [summary.distinct for summary in summaries]
        open_ones = [i for i, summary in enumerate(summaries) if not summary.is_distinct_exact]
        if not self._call.counts_distinct and not self._needs_all_values:
            for place in open_ones:
                numbers[place] = limit
            return numbers
        if not open_ones:
            return numbers
        told.begin(len(open_ones))
        answers = self._engine.ask(
            [
                _sql.count_distinct(self._engine.dialect, self._cases(*pairs[place]))
                for place in open_ones
            ]
        )
        for place, answer in zip(open_ones, answers, strict=True):
            numbers[place] = int(answer["n"][0])
        return numbers

    def _bin(
        self, attribute: int, target: int | None, summary: _plan.Summary
    ) -> tuple[dict[str, Any], bool]:
        """Run the library on a summary; answers a result of a bin file."""
        values, codes, weights = _plan.records_of(summary, target is not None)
        table = _core.Table()
        names = [self._columns[attribute].name]
        if attribute in self._categories:
            self._add_codes(table, attribute, values)
        else:
            table.add_numbers(names[0], values, False)
        missing = {0: self._call.missing[attribute]} if attribute in self._call.missing else {}
        if target is not None:
            self._add_codes(table, target, codes)
            if target in self._call.missing:
                missing[1] = self._call.missing[target]
            names.append(self._columns[target].name)
        table.add_numbers(next(other_names(names)), weights, False)
        settings = dict(self._call.settings)
        is_whole = summary.is_complete and summary.is_distinct_exact
        if target is not None and not self._needs_all_values and not is_whole:
            settings["prebin_above"] = 1  # the library must see that there are too many
        call = replace(
            self._call,
            settings=settings,
            attributes=[0],
            targets=[] if target is None else [1],
            weight=len(names),
            categorical=set(),
            missing=missing,
            events=[],
            threads=1,
        )
        model, anew = call.run(table, None)
        [result] = json.loads(model.write())["results"]
        return result, bool(anew)


class _Told:
    """How many queries are done, of those that are expected: three for a summary, or more."""

    def __init__(self, report: Report, summaries: int) -> None:
        self._report = report
        self._done, self._expected = 0, 3 * summaries

    def begin(self, queries: int) -> None:
        """Tell of queries that are asked next, when those before are done."""
        self._expected = max(self._expected, self._done + queries)
        if self._report is not None:
            self._report(self._done, self._expected)
        self._done += queries

    def end(self) -> None:
        """Tell that nothing is left to do."""
        if self._report is not None:
            self._report(self._expected, self._expected)


def run_rounds(engine: Engine, rounds: Sequence[_plan.Round], told: _Told) -> list[_plan.Summary]:
    """Run summaries side by side: a round of all of them, then the next one of those that go on."""
    summaries: list[Any] = [None] * len(rounds)
    waiting = {place: next(one) for place, one in enumerate(rounds)}
    while waiting:
        told.begin(len(waiting))
        answers = _count.ask(engine, list(waiting.values()))
        following = {}
        for place, answer in zip(waiting, answers, strict=True):
            try:
                following[place] = rounds[place].send(answer)
            except StopIteration as end:
                summaries[place] = end.value
        waiting = following
    return summaries

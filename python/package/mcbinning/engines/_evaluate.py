"""Bins counted anew on the rows that an engine holds."""

from __future__ import annotations

import json
from collections.abc import Mapping, Sequence
from typing import Any

import numpy as np

from .. import _core
from .._errors import TableTypeError
from . import _plan, _sql
from ._columns import find_binned, find_categories_of, find_column
from ._rows import add_codes, find_categories, other_names, weigh
from ._sql import Array, Engine, MissingValues


def evaluate_on(
    engine: Engine, model: _core.Model, results: Sequence[int], weight: Any
) -> tuple[_core.Model, str]:
    """Count the cases of each bin in the engine, in one round.

    Parameters
    ----------
    engine
        Whose table it is.
    model, results
        The bins, and which of them: of one target, or without.
    weight
        The name of the column of the weights; None to count rows.

    Returns
    -------
    tuple
        The bins with these counts, and both side by side as text.
    """
    if weight is not None and not isinstance(weight, str):
        raise TableTypeError("the weight of an engine's table is given by its name")
    file = json.loads(model.write())
    variables = {variable["name"]: variable for variable in file["attributes"]}
    targets = {variable["name"]: variable for variable in file.get("targets", [])}
    chosen = [file["results"][index] for index in results]
    target = targets.get(chosen[0].get("target")) if chosen else None
    settings = file["settings"]
    column = None if weight is None else find_column(engine, weight)
    if column is not None and column.role != "number":
        raise TableTypeError(f"the weight {weight!r} is no column of numbers")
    weights = weigh(
        engine,
        column,
        _missing(settings, "weight_user_missing"),
        settings.get("rounding") == "truncate",
    )
    dialect = engine.dialect
    code = "0" if target is None else _code(engine, target)
    queries = []
    for result in chosen:
        cases = weights.cases(_value(engine, variables[result["attribute"]]), code)
        query = _sql.place_cases(cases, dialect, result["cut_points"])
        queries.append(_sql.count(dialect, query, cases.is_weighted))
    classes = 0 if target is None else len(target["categories"])
    summaries = [_plan.open_summary(answer, classes)[0] for answer in engine.ask(queries)]
    for result, summary in zip(chosen, summaries, strict=True):
        if summary.total != weights.total:
            raise _plan.changed(result["attribute"])
    values, codes, parts = _side_by_side(
        [_plan.records_of(summary, target is not None) for summary in summaries], max(classes, 1)
    )
    table = _core.Table()
    for result, column_values in zip(chosen, values, strict=True):
        variable = variables[result["attribute"]]
        if "categories" in variable:
            add_codes(table, variable["name"], variable["categories"], column_values)
        else:
            unit = "s" if "unit" in variable else ""
            table.add_numbers(variable["name"], column_values, False, unit)
    if target is not None:
        add_codes(table, target["name"], target["categories"], codes)
    columns = {name: place for place, name in enumerate(table.names())}
    if weight is None and weights.records == 0:
        return model.count_on(list(results), table, columns, None, "other data")
    table.add_numbers(next(other_names(table.names())), parts, False)
    dropped = weights.dropped
    rows = (
        weights.records,
        dropped["missing_weight"],
        dropped["zero_weight"],
        dropped["weight_rounded_to_zero"],
        weight,
    )
    return model.count_on(list(results), table, columns, len(columns), "other data", rows)


def count_cut_points(
    engine: Engine,
    cut_points: Mapping[str, Sequence[float]],
    are_times: list[bool],
    right_closed: bool,
    target: str | None,
    weight: Any,
) -> _core.Model:
    """Make bins of cut points, and count the cases of each in the engine."""
    known = None
    if target is not None:
        column = find_categories_of(engine, target)
        categories = find_categories(engine, column, MissingValues(), "1 = 1")
        known = _core.Table()
        if column.role == "text":
            known.add_texts(target, categories)
        else:
            known.add_numbers(target, np.array(categories, dtype=np.float64), False)
    names, cuts = list(cut_points), [list(points) for points in cut_points.values()]
    place = None if known is None else 0
    model = _core.from_cut_points(names, cuts, are_times, right_closed, known, place)
    return evaluate_on(engine, model, range(len(model)), weight)[0]


def _missing(described: dict[str, Any], key: str) -> MissingValues:
    """Read the missing values of a bin file."""
    missing = described.get(key, {})
    values = missing.get("values", [])
    texts = [value for value in values if isinstance(value, str)]
    numbers = [float(value) for value in values if not isinstance(value, str)]
    interval = missing.get("interval")
    ends = None if interval is None else (interval.get("low"), interval.get("high"))
    return MissingValues(numbers, texts, ends)


def _code(engine: Engine, variable: dict[str, Any]) -> str:
    column = find_binned(engine, variable["name"], variable["kind"], False)
    value = _sql.value_of(engine.dialect, column, _missing(variable, "user_missing"))
    return _sql.code_of(engine.dialect, f"({value})", variable["categories"])


def _value(engine: Engine, variable: dict[str, Any]) -> str:
    if "categories" in variable:
        return _sql.number_of_code(engine.dialect, _code(engine, variable))
    column = find_binned(engine, variable["name"], variable["kind"], "unit" in variable)
    return _sql.value_of(engine.dialect, column, _missing(variable, "user_missing"))


def _side_by_side(
    records: Sequence[tuple[Array, Array, Array]], classes: int
) -> tuple[list[Array], Array, Array]:
    """Make one table of the weighted cases of several attributes.

    All have the same weight in each class, so its cases can stand side by side: a row goes as far
    as no attribute's value changes. What is counted of each attribute stays as it is.

    Returns
    -------
    values, codes, weights
        A column for each attribute, and one each.
    """
    columns: list[list[Array]] = [[] for _ in records]
    codes, weights = [], []
    for code in range(-1, classes):
        chosen = [codes_of == code for _, codes_of, _ in records]
        ends = [np.cumsum(parts[here]) for (_, _, parts), here in zip(records, chosen, strict=True)]
        borders = np.unique(np.concatenate(ends))
        for column, (values, _, _), here, end in zip(columns, records, chosen, ends, strict=True):
            column.append(values[here][np.searchsorted(end, borders)])
        codes.append(np.full(len(borders), code))
        weights.append(np.diff(borders, prepend=0.0))
    return (
        [np.concatenate(column) for column in columns],
        np.concatenate(codes),
        np.concatenate(weights),
    )

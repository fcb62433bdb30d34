"""Bins of the rows that an engine holds, by expressions of its own."""

from __future__ import annotations

import json
from collections.abc import Sequence
from typing import Any

from .. import _core
from .._errors import InputError
from . import _sql
from ._columns import check_name, find_binned, same_name
from ._sql import Engine


def apply_on(
    engine: Engine,
    model: _core.Model,
    results: Sequence[int],
    attributes: Sequence[str],
    form: _core.Form,
    suffix: str,
) -> Any:
    """Add a column for each result to a table.

    Parameters
    ----------
    engine
        Whose table it is.
    model, results, attributes
        The bins, which of them, and the attribute of each.
    form, suffix
        What the new columns hold, and what follows the attribute in their names.

    Returns
    -------
    object
        A table of the engine: all columns, and the new ones.
    """
    added = [name + suffix for name in attributes]
    names = [column.name for column in engine.columns]
    for name in names:
        check_name(engine, name)
    taken = {same_name(engine, name) for name in names}
    for name in added:
        if len(name.encode()) > engine.longest_name:
            raise InputError(
                f"{name!r} has more than the {engine.longest_name} bytes that the engine keeps of "
                "a column's name; rename the column that is binned"
            )
        if same_name(engine, name) in taken:
            raise InputError(f"there is a column {name!r} already; choose another suffix=")
    quote = engine.dialect.column
    kept = [quote(f"mcbinning_{place}") for place in range(len(names))]
    variables = [model.attribute(model.result(index)["attribute"]) for index in results]
    columns = [find_binned(engine, one["name"], one["kind"], one["is_time"]) for one in variables]
    numbers = [f"{column.expression} AS {quote(column.name)}" for column in columns]
    pairs = list(zip(kept, map(quote, names), strict=True))
    inner = ", ".join([*(f"{name} AS {other}" for other, name in pairs), *numbers])
    numbered = engine.derive(f"SELECT {inner} FROM {_sql.ROWS}")
    plain = _as_numbers(model)
    query = plain.sql(list(results), form, suffix, None, engine.dialect.name, _sql.ROWS)
    binned = engine.wrap(numbered).derive(query.rstrip().rstrip(";"))
    shown = [
        _as_dates(engine, model, plain, index, quote(name))
        if form == _core.Form.LABEL and variable["is_time"]
        else quote(name)
        for index, variable, name in zip(results, variables, added, strict=True)
    ]
    outer = ", ".join([*(f"{other} AS {name}" for other, name in pairs), *shown])
    return engine.wrap(binned).derive(f"SELECT {outer} FROM {_sql.ROWS}")


def _as_numbers(model: _core.Model) -> _core.Model:
    """Make bins of the seconds that columns of dates are here."""
    file = json.loads(model.write())
    for variable in file["attributes"]:
        variable.pop("unit", None)
    return _core.Model.parse(json.dumps(file), "bins")


def _as_dates(
    engine: Engine, model: _core.Model, plain: _core.Model, index: int, column: str
) -> str:
    """Write the labels of bins of seconds as those of dates."""
    text = engine.dialect.text
    pairs = zip(plain.labels(index), model.labels(index), strict=True)
    cases = " ".join(f"WHEN {text(number)} THEN {text(date)}" for number, date in pairs)
    return f"CASE {column} {cases} ELSE {column} END AS {column}"

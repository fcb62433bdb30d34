"""The columns of an engine's table: found by name, and refused where a name or a type says no."""

from __future__ import annotations

from .._errors import InputError, TableTypeError, unknown_column
from ._sql import Column, Engine


def same_name(engine: Engine, name: str) -> str:
    """Write a name so that names which the engine takes for the same are equal."""
    return name.lower() if engine.ignores_case else name


def check_name(engine: Engine, name: str) -> None:
    """Refuse the name of a column that another one has, too, in the eyes of the engine."""
    wanted = same_name(engine, name)
    alike = [one.name for one in engine.columns if same_name(engine, one.name) == wanted]
    if len(alike) > len(set(alike)):
        raise InputError(f"two columns are called {name!r}")
    if len(alike) > 1:
        raise InputError(
            f"columns {alike[0]!r} and {alike[1]!r} differ in case alone, and the engine takes "
            "them for one: rename one"
        )


def find_column(engine: Engine, name: str) -> Column:
    """Find a column that has values."""
    for column in engine.columns:
        if column.name == name:
            if column.role == "other":
                raise TableTypeError(f"column {name!r} is of {column.type}, not of values")
            check_name(engine, name)
            return column
    raise unknown_column(name, [column.name for column in engine.columns])


def find_categories_of(engine: Engine, name: str) -> Column:
    """Find a column of categories, which dates are not."""
    column = find_column(engine, name)
    if column.is_time:
        raise TableTypeError(
            f"column {name!r} holds dates, which are no categories; make them text first"
        )
    return column


def find_binned(engine: Engine, name: str, kind: str, is_time: bool) -> Column:
    """Find the column of a variable of bins, whose kind a bin file says."""
    column = find_column(engine, name)
    if column.role == "number" and column.is_time != is_time:
        raise TableTypeError(
            f"column {name!r} is of {column.type}, the bins are{'' if is_time else ' not'} of dates"
        )
    is_text = kind == "string-categorical"
    if is_text != (column.role == "text"):
        values = "text" if is_text else "numbers"
        raise TableTypeError(f"column {name!r} is of {column.type}, the bins are of {values}")
    return column

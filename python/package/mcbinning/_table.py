"""Tables of every kind as columns that the library reads where they lie."""

from __future__ import annotations

import datetime
import math
import numbers
import sys
from collections.abc import Iterable, Mapping, Sequence, Set
from typing import Any

import numpy as np

from . import _core
from ._arguments import as_names, as_seconds
from ._errors import InputError, TableTypeError

_PLAIN_KINDS = "biuf"


def as_table(
    data: Any, names: Sequence[str] | None = None, only: Iterable[str] | None = None
) -> _core.Table:
    """Make the columns of a table.

    Parameters
    ----------
    data
        A mapping of names to columns, a pandas data frame, anything with ``__arrow_c_stream__`` or
        ``__arrow_c_array__``, or a NumPy array: structured, or of rows.
    names
        Of the columns of an array of rows; x0, x1 and so on without it.
    only
        Which columns are wanted: others may be left out, whatever they hold.

    Returns
    -------
    _core.Table
        It keeps what it reads. Nothing is copied that the library can read where it is.
    """
    table = _core.Table()
    if isinstance(data, np.ndarray):
        _add_array(table, data, names)
    elif isinstance(data, Mapping):
        for name in _chosen(data, only):
            add_column(table, name, data[name])
    elif _is_pandas(data, "DataFrame"):
        chosen = _chosen(data.columns, only)
        check_names(chosen)
        for name in chosen:
            add_column(table, name, data[name])
    elif hasattr(data, "__arrow_c_stream__"):
        table.add_arrow_stream(data.__arrow_c_stream__(), "")
        check_names(table.names())
    elif hasattr(data, "__arrow_c_array__"):
        schema, array = data.__arrow_c_array__()
        table.add_arrow_array(schema, array, "")
        check_names(table.names())
    else:
        raise TableTypeError(
            f"a table is expected (a data frame, Arrow, a NumPy array or a dict of columns), "
            f"not {type(data).__name__}"
        )
    return table


def names_of(data: Any) -> list[str]:
    """Get the names of all columns where the table is not Arrow's or an array."""
    if isinstance(data, Mapping):
        return list(data)
    return list(data.columns) if _is_pandas(data, "DataFrame") else []


def _chosen(names: Iterable[Any], only: Iterable[str] | None) -> list[Any]:
    if only is None:
        return list(names)
    wanted = set(only)
    return [name for name in names if name in wanted]


def check_names(names: Iterable[str]) -> None:
    """Refuse columns without a name, with the same one, or with one that is no text."""
    seen: set[str] = set()
    for name in names:
        if not isinstance(name, str):
            raise TableTypeError(
                f"names of columns are text, but {name!r} is {type(name).__name__}; rename them"
            )
        if not _is_encodable(name):
            raise InputError(f"the name of column {name!r} is no valid text")
        if name in seen:
            raise InputError(f"two columns are called {name!r}")
        seen.add(name)
    if "" in seen:
        raise InputError("a column has no name")


def _is_encodable(text: str) -> bool:
    """Whether it has no half of a surrogate pair, which UTF-8 cannot say."""
    try:
        text.encode()
    except UnicodeEncodeError:
        return False
    return True


def add_column(table: _core.Table, name: str, column: Any) -> None:
    """Add a column of any kind; refuses what cannot be binned."""
    check_names([name])
    if isinstance(column, np.ndarray):
        _add_values(table, name, column)
    elif _is_pandas(column, "Index") or _is_pandas(column, "ExtensionArray"):
        _add_series(table, name, sys.modules["pandas"].Series(column))
    elif _is_pandas(column, "Series"):
        _add_series(table, name, column)
    elif hasattr(column, "__arrow_c_stream__") or hasattr(column, "__arrow_c_array__"):
        _add_arrow(table, name, column)
    elif isinstance(column, (bytes, bytearray, Mapping, Set)):
        raise TableTypeError(f"column {name!r} is {type(column).__name__}, which is no column")
    elif isinstance(column, datetime.date):
        _add_list(table, name, [column])  # a single row
    elif isinstance(column, (str, bool, int, float, np.generic)) or column is None:
        _add_values(table, name, np.array([column]))
    else:
        try:
            values = list(column)
        except TypeError:
            raise TableTypeError(
                f"column {name!r} is {type(column).__name__}, which is no column"
            ) from None
        _add_list(table, name, values)


def column_of(data: Any, default_name: str) -> tuple[str, Any]:
    """Tell the name of a column that is given by itself."""
    name = getattr(data, "name", None)
    return (name if isinstance(name, str) and name else default_name), data


def _add_arrow(table: _core.Table, name: str, column: Any) -> None:
    if hasattr(column, "__arrow_c_stream__"):
        table.add_arrow_stream(column.__arrow_c_stream__(), name)
    else:
        schema, array = column.__arrow_c_array__()
        table.add_arrow_array(schema, array, name)


def _add_array(table: _core.Table, data: np.ndarray[Any, Any], names: Sequence[str] | None) -> None:
    data = _as_plain(data)
    if data.dtype.names is not None:
        if data.ndim != 1:
            raise InputError("a structured array has one dimension")
        check_names(data.dtype.names)
        for name in data.dtype.names:
            _add_values(table, name, data[name])
        return
    if data.ndim != 2:
        raise InputError(f"a table has two dimensions, the array has {data.ndim}")
    if names is None:
        names = [f"x{i}" for i in range(data.shape[1])]
    names = as_names("names", names)
    check_names(names)
    if len(names) != data.shape[1]:
        raise InputError(f"{len(names)} names for {data.shape[1]} columns")
    if _is_plain(data):
        table.add_matrix(names, data)
    else:
        for i, name in enumerate(names):
            _add_values(table, name, data[:, i])


def _as_plain(values: np.ndarray[Any, Any]) -> np.ndarray[Any, Any]:
    """Look at a file in memory, a matrix or another kind of array as a plain one."""
    return values if isinstance(values, np.ma.MaskedArray) else np.asarray(values)


def _is_plain(values: np.ndarray[Any, Any]) -> bool:
    dtype = values.dtype
    return (
        type(values) is np.ndarray
        and dtype.kind in _PLAIN_KINDS
        and dtype.isnative
        and dtype.itemsize <= 8
    )


def _add_values(table: _core.Table, name: str, values: np.ndarray[Any, Any]) -> None:
    values = _as_plain(values)
    if values.ndim != 1:
        raise InputError(f"column {name!r} has {values.ndim} dimensions instead of one")
    if isinstance(values, np.ma.MaskedArray):
        if values.dtype.kind not in _PLAIN_KINDS:
            raise TableTypeError(f"column {name!r}: masked values are numbers, not {values.dtype}")
        values = np.ma.filled(values.astype(np.float64), np.nan)
    kind = values.dtype.kind
    if _is_plain(values):
        table.add_numbers(name, values, False)
    elif kind in _PLAIN_KINDS:
        table.add_numbers(name, np.asarray(values, dtype=np.float64), False)
    elif kind in "mM":
        native = values.astype(values.dtype.newbyteorder("="), copy=False)
        unit = "" if kind == "m" else _unit_of(name, native.dtype)
        native = native.astype(f"M8[{unit}]", copy=False) if unit else native
        table.add_numbers(name, np.asarray(native).view(np.int64), True, unit)
    elif kind in "UT" or kind == "O":
        _add_list(table, name, values.tolist())
    else:
        raise TableTypeError(f"column {name!r} is of type {values.dtype}, which has no order")


def _unit_of(name: str, dtype: np.dtype[Any]) -> str:
    """Choose the unit that times are counted in: theirs, or seconds for what is made of these."""
    unit = np.datetime_data(dtype)[0]
    if unit in ("ps", "fs", "as"):
        raise TableTypeError(f"column {name!r} is of type {dtype}; make it datetime64[ns] first")
    return unit if unit in ("ms", "us", "ns") else "s"


def _is_missing(value: object) -> bool:
    """Whether it is None, NaN, NaT or pandas' NA."""
    return (
        value is None
        or (isinstance(value, float) and math.isnan(value))
        or type(value).__name__ in ("NAType", "NaTType")
    )


def _add_list(table: _core.Table, name: str, values: list[Any]) -> None:
    """Add Python's own values, which are all texts or all numbers."""
    there = [value for value in values if not _is_missing(value)]
    kinds = {type(value) for value in there}
    if there and all(issubclass(kind, str) for kind in kinds):
        try:
            table.add_texts(name, [None if _is_missing(value) else value for value in values])
        except UnicodeEncodeError as error:
            raise InputError(f"column {name!r} has a text that is not valid: {error}") from None
        return
    if there and all(issubclass(kind, (datetime.date, np.datetime64)) for kind in kinds):
        read = np.array([np.nan if _is_missing(v) else as_seconds(name, v) for v in values])
        table.add_numbers(name, read, False, "s")
        return
    if not all(issubclass(kind, (numbers.Real, np.bool_)) or _is_decimal(kind) for kind in kinds):
        mixed = ", ".join(sorted(kind.__name__ for kind in kinds))
        raise TableTypeError(f"column {name!r} is neither all text nor all numbers, but {mixed}")
    try:
        read = np.array(
            [np.nan if _is_missing(value) else value for value in values], dtype=np.float64
        )
    except OverflowError:
        raise InputError(f"column {name!r} has a number beyond the largest double") from None
    table.add_numbers(name, read, False)


def _is_decimal(kind: type) -> bool:
    """Whether it is the decimal numbers of Python, which need not be imported."""
    return kind.__name__ == "Decimal" and kind.__module__ == "decimal"


def _is_pandas(data: object, kind: str) -> bool:
    """Whether it is pandas' data frame or series, which need not be installed."""
    return any(
        cls.__name__ == kind and cls.__module__.partition(".")[0] == "pandas"
        for cls in type(data).__mro__
    )


def _add_series(table: _core.Table, name: str, series: Any) -> None:
    dtype = series.dtype
    if isinstance(dtype, np.dtype):
        _add_values(table, name, series.to_numpy())
    elif hasattr(dtype, "categories") and hasattr(dtype, "ordered"):
        _add_categories(table, name, series)
    elif type(dtype).__name__ == "ArrowDtype":
        _add_arrow(table, name, series.array.__arrow_array__())
    elif getattr(dtype, "kind", "O") in _PLAIN_KINDS:  # pandas' own numbers with a mask
        table.add_numbers(name, series.to_numpy(dtype=np.float64, na_value=np.nan), False)
    elif getattr(dtype, "kind", "O") == "M":  # with a time zone
        _add_values(table, name, series.dt.tz_convert(None).to_numpy())
    else:
        _add_list(table, name, series.tolist())


def _add_categories(table: _core.Table, name: str, series: Any) -> None:
    categories = series.cat.categories.tolist()
    if not all(isinstance(category, str) for category in categories):
        if any(isinstance(category, str) for category in categories):
            raise TableTypeError(
                f"column {name!r}: categories are neither all text nor all numbers"
            )
        try:
            categories = [float(category) for category in categories]
        except (TypeError, ValueError):
            raise TableTypeError(
                f"column {name!r}: categories are texts or numbers, not "
                f"{series.cat.categories.dtype}"
            ) from None
    table.add_dictionary(name, series.cat.codes.to_numpy(), categories, bool(series.cat.ordered))

"""Results as columns."""

from __future__ import annotations

from collections.abc import Iterator
from typing import Any

import numpy as np

from . import _core

_ROWS_SHOWN = 20


class Frame:
    """Columns of results, which pyarrow, pandas, polars and DuckDB take without a copy.

    ``pyarrow.table(frame)``, ``polars.DataFrame(frame)`` and ``duckdb.sql("from frame")`` read it
    by Arrow's capsules; ``frame["name"]`` is a NumPy array. A frame does not change.

    Parameters
    ----------
    core
        The columns.
    closed
        Which end of an interval belongs to it: ``"right"`` or ``"left"``.
    """

    __slots__ = ("_closed", "_core", "_names", "_places")

    def __init__(self, core: _core.Frame, closed: str = "right") -> None:
        self._core = core
        self._closed = closed
        self._names = core.names()
        self._places = {name: place for place, name in enumerate(self._names)}

    @property
    def columns(self) -> list[str]:
        """The names of the columns."""
        return list(self._names)

    @property
    def shape(self) -> tuple[int, int]:
        """The numbers of rows and columns."""
        return len(self._core), len(self._names)

    def __len__(self) -> int:
        return len(self._core)

    def __iter__(self) -> Iterator[str]:
        return iter(self._names)

    def __getitem__(self, name: str) -> np.ndarray[Any, Any]:
        """Get a column as a NumPy array of shape (rows,).

        Returns
        -------
        numpy.ndarray
            Indexes of bins are int32 and -1 where a value is missing, other numbers int64, or
            float64 and NaN where there is none; labels are objects and None. Intervals have
            two columns, left and right: shape (rows, 2). Arrays of numbers share the frame's
            memory and are read-only.

        Raises
        ------
        KeyError
            There is no such column.
        """
        index = self._places[name]
        form = self._core.format(index)
        if form == "+s":
            return np.column_stack(self._core.ends(index))
        labels = self._core.labels(index)
        if form == "U":
            return np.array(labels, dtype=object)
        if labels:
            texts: np.ndarray[Any, Any] = np.array([*labels, None], dtype=object)
            return np.asarray(texts[self._core.array(index)])
        return self._core.array(index)

    def to_dict(self) -> dict[str, list[Any]]:
        """Get the columns as lists."""
        return {name: self[name].tolist() for name in self._names}

    def to_pandas(self) -> Any:
        """Make a pandas data frame.

        Returns
        -------
        pandas.DataFrame
            Indexes are int32, or Int32 where one is missing; labels are ordered categories,
            intervals pandas' own.
        """
        import pandas as pd

        return pd.DataFrame({name: self._to_pandas(pd, i) for i, name in enumerate(self._names)})

    def _to_pandas(self, pd: Any, index: int) -> Any:
        form = self._core.format(index)
        if form == "+s":
            left, right = self._core.ends(index)
            return pd.arrays.IntervalArray.from_arrays(left, right, closed=self._closed)
        labels = self._core.labels(index)
        if form == "U":
            return pd.array(labels, dtype=object)
        values = self._core.array(index)
        if labels:
            return pd.Categorical.from_codes(values, labels, ordered=True)
        if form == "i" and self._core.missing_count(index):
            return pd.arrays.IntegerArray(values.copy(), values < 0)
        return values

    def __arrow_c_schema__(self) -> object:
        """Export the schema as an Arrow capsule."""
        return self._core.arrow_schema()

    def __arrow_c_stream__(self, requested_schema: object = None) -> object:
        """Export the columns as an Arrow capsule: a stream of one batch."""
        return self._core.arrow_stream()

    def __copy__(self) -> Frame:
        return self

    def __deepcopy__(self, memo: object) -> Frame:
        return self

    def __reduce__(self) -> tuple[Any, ...]:
        return _from_columns, ([self._parts(i) for i in range(len(self._names))], self._closed)

    def _parts(self, index: int) -> tuple[Any, ...]:
        """Get what makes a column again: how it is added, its name, and the rest."""
        name, form, labels = self._names[index], self._core.format(index), self._core.labels(index)
        if form == "+s":
            return "add_intervals", name, *self._core.ends(index)
        if form == "U":
            return "add_texts", name, labels
        values = self._core.array(index)
        if labels:
            return "add_labels", name, values, labels
        adding = {"i": "add_indexes", "l": "add_counts", "g": "add_numbers"}[form]
        return adding, name, values

    def _rows(self, count: int) -> list[list[str]]:
        columns = [self[name][:count] for name in self._names]
        return [[_show(column[row]) for column in columns] for row in range(min(count, len(self)))]

    def __repr__(self) -> str:
        rows = [self._names, *self._rows(_ROWS_SHOWN)]
        widths = [max(len(row[i]) for row in rows) for i in range(len(self._names))]
        lines = [
            "  ".join(text.rjust(width) for text, width in zip(row, widths, strict=True)).rstrip()
            for row in rows
        ]
        if len(self) > _ROWS_SHOWN:
            lines.append(f"... {len(self)} rows")
        return "\n".join(lines)

    def _repr_html_(self) -> str:
        import html

        def line(cells: list[str], tag: str) -> str:
            return "<tr>" + "".join(f"<{tag}>{html.escape(c)}</{tag}>" for c in cells) + "</tr>"

        body = "".join(line(row, "td") for row in self._rows(_ROWS_SHOWN))
        more = f"<p>{len(self)} rows</p>" if len(self) > _ROWS_SHOWN else ""
        return f"<table><thead>{line(self._names, 'th')}</thead><tbody>{body}</tbody></table>{more}"


def _show(value: Any) -> str:
    if value is None or (isinstance(value, float) and value != value):
        return ""
    if isinstance(value, np.ndarray):
        return f"{value[0]:.6g} to {value[1]:.6g}"
    return f"{value:.6g}" if isinstance(value, float) else str(value)


def make_frame(columns: dict[str, list[Any]]) -> Frame:
    """Make a frame of lists of float, of int, or of str or None."""
    core = _core.Frame()
    for name, values in columns.items():
        if any(isinstance(value, str) for value in values):
            core.add_texts(name, values)
        elif all(isinstance(value, int) for value in values) and values:
            core.add_counts(name, np.array(values, dtype=np.int64))
        else:
            core.add_numbers(name, np.array(values, dtype=np.float64))  # NaN for None
    return Frame(core)


def _from_columns(columns: list[tuple[Any, ...]], closed: str) -> Frame:
    core = _core.Frame()
    for adding, *parts in columns:
        getattr(core, adding)(*parts)
    return Frame(core, closed)

"""Arguments that several functions take: each is checked, and answered as the library reads it."""

from __future__ import annotations

import datetime
from collections.abc import Hashable, Iterable, Mapping
from typing import Any, Literal

import numpy as np

from . import _core
from ._errors import InputError, TableTypeError

Closed = Literal["right", "left"]


def is_right(closed: str) -> bool:
    """Say whether the right end of an interval belongs to it."""
    if closed not in ("right", "left"):
        raise InputError(f"closed is 'right' or 'left', not {closed!r}")
    return closed == "right"


def at_least(name: str, value: int, least: int) -> int:
    """Take a whole number, from the least one up."""
    if isinstance(value, bool) or not isinstance(value, (int, np.integer)):
        raise TypeError(f"{name} is a whole number, not {type(value).__name__}")
    if not least <= value < 2**31:
        raise InputError(f"{name} is a whole number from {least} to {2**31 - 1}, not {value}")
    return int(value)


def as_number(name: str, value: Any) -> float:
    """Take what Python reads as a number, but no text."""
    try:
        if not isinstance(value, (str, bytes)):
            return float(value)
    except (TypeError, ValueError):
        pass
    raise TypeError(f"{name} is a number, not {type(value).__name__}")


def as_share(name: str, value: float) -> float:
    """Take a number from 0 to 1."""
    share = as_number(name, value)
    if not 0.0 <= share <= 1.0:
        raise InputError(f"{name} is a share from 0 to 1, not {value}")
    return share


def as_weight(name: str, value: float) -> float:
    """Take a finite number from 0 up."""
    weight = as_number(name, value)
    if not 0.0 <= weight < float("inf"):
        raise InputError(f"{name} is a weight from 0 up, not {value}")
    return weight


def as_adjustment(name: str, value: float) -> float:
    """Take a weight that is added to classes before weights of evidence are taken."""
    weight = as_number(name, value)
    if not 0.0 <= weight <= _core.largest_woe_adjust:
        raise InputError(f"{name} is a weight from 0 to {_core.largest_woe_adjust:g}, not {value}")
    return weight


def as_events(event: Any) -> list[str]:
    """Write classes as texts: the library reads numbers in them where the target has numbers."""
    if event is None:
        return []
    several = list(event) if isinstance(event, (list, tuple, np.ndarray)) else [event]
    return [
        one if isinstance(one, str) else repr(as_number("event (a class: text or number)", one))
        for one in several
    ]


def one_of(name: str, value: Any, known: Mapping[Any, Any]) -> Any:
    """Look up what a word stands for."""
    if not isinstance(value, Hashable) or value not in known:
        words = ", ".join(repr(word) for word in known if word is not None)
        raise InputError(f"{name} is one of {words}, not {value!r}")
    return known[value]


def as_text(name: str, value: Any) -> str:
    """Take a text."""
    if not isinstance(value, str):
        raise TypeError(f"{name} is a text, not {type(value).__name__}")
    return value


def as_names(argument: str, names: Any) -> list[str]:
    """Take names of columns, but no name by itself."""
    if isinstance(names, str) or not isinstance(names, Iterable):
        raise TableTypeError(f"{argument} is a list of names")
    listed = list(names)
    for name in listed:
        if not isinstance(name, str):
            raise TableTypeError(f"{argument}: a name is text, but {name!r} is not")
    return listed


def as_mapping(argument: str, value: Any) -> Mapping[Any, Any]:
    """Take a dict of what is said of columns, by their names; None for nothing."""
    if value is None:
        return {}
    if not isinstance(value, Mapping):
        raise TypeError(f"{argument} is a dict by names of columns, not {type(value).__name__}")
    as_names(argument, value)
    return value


def as_seconds(name: str, date: Any) -> float:
    """Take a date of an attribute: of Python, NumPy or pandas, or a text of ISO 8601."""
    if isinstance(date, np.datetime64):
        unit = np.datetime_data(date.dtype)[0]
        date = date if unit in ("D", "s", "ms", "us", "ns") else date.astype("M8[s]")
    return _core.parse_time(
        name, date.isoformat() if isinstance(date, datetime.date) else str(date)
    )


def is_date(value: Any) -> bool:
    """Whether it is a date, or a text that should be one."""
    return isinstance(value, (datetime.date, np.datetime64, str))


def as_cut_points(name: str, points: Any) -> tuple[list[float], bool]:
    """Take the finite cut points of an attribute; answers them, and whether they are dates."""
    if isinstance(points, str) or not isinstance(points, Iterable):
        raise TypeError(f"the cut points of {name!r} are a list of numbers")
    given = list(points)
    are_dates = bool(given) and all(map(is_date, given))
    values = [
        as_seconds(name, point) if are_dates else as_number(f"a cut point of {name!r}", point)
        for point in given
    ]
    if not np.isfinite(values).all():
        raise InputError(f"the cut points of {name!r} are not finite")
    return values, are_dates

"""Arguments that several functions take: each is checked, and answered as the library reads it."""

from __future__ import annotations

from collections.abc import Mapping, Sequence
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
        raise InputError(f"{name} is {least} or more, not {value}")
    return int(value)


def as_share(name: str, value: float) -> float:
    """Take a number from 0 to 1."""
    if not 0.0 <= value <= 1.0:
        raise InputError(f"{name} is a share from 0 to 1, not {value}")
    return float(value)


def as_weight(name: str, value: float) -> float:
    """Take a finite number from 0 up."""
    if not 0.0 <= value < float("inf"):
        raise InputError(f"{name} is a weight from 0 up, not {value}")
    return float(value)


def as_adjustment(name: str, value: float) -> float:
    """Take a weight that is added to classes before weights of evidence are taken."""
    if not 0.0 <= value <= _core.largest_woe_adjust:
        raise InputError(f"{name} is a weight from 0 to {_core.largest_woe_adjust:g}, not {value}")
    return float(value)


def as_events(event: Any) -> list[str]:
    """Write classes as texts: the library reads numbers in them where the target has numbers."""
    if event is None:
        return []
    several = event if isinstance(event, (list, tuple)) else [event]
    return [one if isinstance(one, str) else repr(float(one)) for one in several]


def one_of(name: str, value: Any, known: Mapping[Any, Any]) -> Any:
    """Look up what a word stands for."""
    if value not in known:
        words = ", ".join(repr(word) for word in known if word is not None)
        raise InputError(f"{name} is one of {words}, not {value!r}")
    return known[value]


def as_names(names: Sequence[str]) -> list[str]:
    """Take the names of attributes, but no name by itself."""
    if isinstance(names, str):
        raise TableTypeError("attributes is a list of names")
    return list(names)


def as_cut_points(name: str, points: Sequence[float]) -> list[float]:
    """Take the finite cut points of an attribute."""
    values = [float(point) for point in points]
    if not np.isfinite(values).all():
        raise InputError(f"the cut points of {name!r} are not finite")
    return values

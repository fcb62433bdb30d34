"""One warning for what went wrong with single attributes of a run."""

from __future__ import annotations

import sys
import warnings

from ._errors import BinningWarning


def warn(notes: list[str]) -> None:
    """Warn, as if the line outside this package that came here did it."""
    if notes:
        level = 2
        while _is_ours(level):
            level += 1
        warnings.warn("; ".join(notes), BinningWarning, stacklevel=level)


def _is_ours(level: int) -> bool:
    try:
        name = sys._getframe(level).f_globals.get("__name__", "")
    except ValueError:
        return False
    return str(name).startswith("mcbinning.")

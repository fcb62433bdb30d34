"""Which tables an engine holds, told without importing what speaks to engines."""

from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from .engines._sql import Engine

_PACKAGES = frozenset({"duckdb", "_duckdb", "pyspark", "mcbinning"})


def find_engine(table: object) -> Engine | None:
    """Get the engine of a table; None for a table in memory."""
    if _PACKAGES.isdisjoint(cls.__module__.partition(".")[0] for cls in type(table).__mro__):
        return None
    from . import engines

    return engines.find_engine(table)

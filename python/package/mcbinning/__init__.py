"""Bins of variables: supervised by minimum description length, or of equal frequency.

import mcbinning as mb

bins = mb.fit(table, target="y")        # or mb.fit_equal_frequency(table, bins=20)
bins.summary()                          # the attributes, the most informative first
bins["age"].cut_points
bins.apply(table, as_="label")
"""

from typing import TYPE_CHECKING, Any

from ._attribute import AttributeBins
from ._bins import Bins, load, sql_dialects
from ._core import version as __version__
from ._errors import (
    BinFileError,
    BinningError,
    BinningWarning,
    CancelledError,
    CategoryError,
    ExportError,
    InputError,
    RunError,
    TableTypeError,
    TargetError,
    UnknownColumnError,
    WeightError,
)
from ._evaluation import Evaluation
from ._fit import fit, fit_equal_frequency, from_cut_points
from ._frame import Frame

if TYPE_CHECKING:
    from . import engines as engines

__all__ = [
    "AttributeBins",
    "BinFileError",
    "BinningError",
    "BinningWarning",
    "Bins",
    "CancelledError",
    "CategoryError",
    "Evaluation",
    "ExportError",
    "Frame",
    "InputError",
    "RunError",
    "TableTypeError",
    "TargetError",
    "UnknownColumnError",
    "WeightError",
    "__version__",
    "fit",
    "fit_equal_frequency",
    "from_cut_points",
    "load",
    "sql_dialects",
]


def __getattr__(name: str) -> Any:
    """Import `engines` when it is asked for, as most tables are in memory."""
    if name == "engines":
        import importlib

        return importlib.import_module(".engines", __name__)
    raise AttributeError(f"module {__name__!r} has no attribute {name!r}")

"""How far a run is: told to a function, or shown as a bar."""

from __future__ import annotations

import contextlib
from collections.abc import Callable, Iterator

from ._errors import InputError

Report = Callable[[int, int], object] | None
Progress = bool | Report


@contextlib.contextmanager
def reporting(progress: Progress) -> Iterator[Report]:
    """Make the function that a run reports to; a bar is closed in the end."""
    if progress is None or progress is False:
        yield None
    elif callable(progress):
        yield progress
    elif progress is not True:
        raise TypeError("progress is True, False or a function of two numbers")
    else:
        try:
            from tqdm.auto import tqdm
        except ImportError:
            raise InputError(
                "progress=True needs tqdm; or give a function of two numbers"
            ) from None
        with tqdm(unit="", unit_scale=True, desc="binning") as bar:

            def report(done: int, total: int) -> None:
                bar.total = total
                bar.update(done - bar.n)

            yield report

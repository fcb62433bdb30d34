"""Ctrl-C while an engine works."""

from __future__ import annotations

from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from typing import TypeVar

Answer = TypeVar("Answer")


def run_with(cancel: Callable[[], object] | None, run: Callable[[], Answer]) -> Answer:
    """Run a query beside the thread that Ctrl-C comes to, which then has the engine stop.

    Parameters
    ----------
    cancel
        Stops the query from another thread; None where nothing can, so it runs in this one.
    run
        Runs it.

    Raises
    ------
    KeyboardInterrupt
        When the query has ended.
    """
    if cancel is None:
        return run()
    with ThreadPoolExecutor(1) as pool:
        running = pool.submit(run)
        try:
            return running.result()
        except KeyboardInterrupt:
            cancel()
            raise

"""Ctrl-C while an engine works."""

from __future__ import annotations

import threading
from collections.abc import Callable
from concurrent.futures import Future, wait
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
    answer: Future[Answer] = Future()

    def work() -> None:
        try:
            answer.set_result(run())
        except BaseException as error:
            answer.set_exception(error)

    thread = threading.Thread(target=work)
    try:
        thread.start()
        return answer.result()
    except KeyboardInterrupt:
        while thread.is_alive() and not answer.done():
            cancel()  # again where the engine was about to begin and did not hear
            wait([answer], timeout=0.05)
        raise
    finally:
        if thread.is_alive():
            thread.join()

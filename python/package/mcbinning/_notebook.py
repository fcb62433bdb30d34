"""Bins as a notebook shows them."""

from __future__ import annotations

from . import _core


def in_notebook(model: _core.Model) -> str:
    """Make a frame for the report's page, so that its styles stay within."""
    import html  # here, as it is slow to import

    page = html.escape(model.html(None), quote=True)
    height = 520 if len(model) == 1 else 640
    return f'<iframe srcdoc="{page}" width="100%" height="{height}" style="border:0"></iframe>'

"""Bins compared with their counts in other data."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

from ._attribute import AttributeBins, stability_index
from ._frame import Frame, make_frame

if TYPE_CHECKING:
    from ._bins import Bins


class Evaluation:
    """What other data say, counted with the cut points as they are.

    Attributes
    ----------
    bins : Bins
        The same bins with the counts of the other data.
    text : str
        Both side by side, as ``mcbin evaluate`` prints them.
    """

    __slots__ = ("_after", "_before", "bins", "text")

    def __init__(
        self, before: list[AttributeBins], after: list[AttributeBins], bins: Bins, text: str
    ) -> None:
        self._before = before
        self._after = after
        self.bins = bins
        self.text = text

    def stability_index(self, name: str) -> float | None:
        """Get how far the shares of an attribute's bins moved; None when a sample has no weight."""
        for before, after in zip(self._before, self._after, strict=True):
            if before.name == name:
                return stability_index(before, after)
        raise KeyError(name)

    def summary(self) -> Frame:
        """Compare the attributes.

        Returns
        -------
        Frame
            A row for each: attribute, population stability index, and with a target the gain (bits)
            and the information value before and now.
        """
        columns: dict[str, list[Any]] = {
            "attribute": [bins.name for bins in self._after],
            "stability_index": [
                stability_index(before, after)
                for before, after in zip(self._before, self._after, strict=True)
            ],
        }
        if self.bins.targets:
            columns["gain"] = [bins.information_gain for bins in self._before]
            columns["gain_now"] = [bins.information_gain for bins in self._after]
            columns["information_value"] = [bins.information_value for bins in self._before]
            columns["information_value_now"] = [bins.information_value for bins in self._after]
        return make_frame(columns)

    def __repr__(self) -> str:
        return self.text

    def _repr_html_(self) -> str:
        return self.summary()._repr_html_()

"""The bins of one attribute."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import numpy as np

from . import _core
from ._arguments import as_adjustment
from ._frame import Frame, make_frame
from ._notebook import in_notebook

if TYPE_CHECKING:
    from matplotlib.axes import Axes


class AttributeBins:
    """The bins of one attribute, against one target where there is one.

    Weights are sums of frequency weights, which are numbers of cases without weights. Arrays go by
    bin from the lowest up.
    """

    __slots__ = ("_index", "_model", "_result", "_target", "_variable")

    def __init__(self, model: _core.Model, index: int) -> None:
        self._model = model
        self._index = index
        self._result = model.result(index)
        self._variable = model.attribute(self._result["attribute"])
        target = self._result["target"]
        self._target = None if target is None else model.target(target)

    @property
    def name(self) -> str:
        """The name of the attribute."""
        name: str = self._variable["name"]
        return name

    @property
    def kind(self) -> str:
        """continuous, numeric-categorical or string-categorical."""
        kind: str = self._variable["kind"]
        return kind

    @property
    def is_time(self) -> bool:
        """Whether values are dates, whose numbers are seconds since 1970-01-01T00:00:00Z."""
        is_time: bool = self._variable["is_time"]
        return is_time

    @property
    def categories(self) -> list[str]:
        """Of a categorical attribute: the category of each code, which cut points divide."""
        return list(self._variable["categories"])

    @property
    def target(self) -> str | None:
        """The name of the target."""
        return None if self._target is None else self._target["name"]

    @property
    def classes(self) -> list[str]:
        """The categories of the target; the columns of `class_weights`."""
        return [] if self._target is None else list(self._target["categories"])

    @property
    def cut_points(self) -> np.ndarray[Any, np.dtype[np.float64]]:
        """Where the bins meet: shape (bins - 1,), ascending; of dates in seconds."""
        return np.array(self._result["cut_points"], dtype=np.float64)

    @property
    def labels(self) -> list[str]:
        """What the bins are called, such as ``(4.3, 5.4]``."""
        return self._model.labels(self._index)

    @property
    def weights(self) -> np.ndarray[Any, np.dtype[np.float64]]:
        """The weight of each bin: shape (bins,), or (0,) when an error left none."""
        return np.array(self._result["bin_weights"], dtype=np.float64)

    @property
    def class_weights(self) -> np.ndarray[Any, np.dtype[np.float64]]:
        """The weight of each class in each bin: shape (bins, classes)."""
        rows = self._result["class_weights"]
        return np.array(rows, dtype=np.float64).reshape(len(rows), -1)

    @property
    def valid_weight(self) -> float:
        """The weight of the cases with a value and a class."""
        weight: float = self._result["valid_weight"]
        return weight

    @property
    def missing_weight(self) -> float:
        """The weight of the other cases."""
        weight: float = self._result["weight_with_missing"]
        return weight - self.valid_weight

    @property
    def missing(self) -> dict[str, Any] | None:
        """The cases without a value whose class is known, as one more bin.

        Its ``"weight"``, and ``"class_weights"`` of shape (classes,); None where not counted.
        """
        missing = self._result["missing"]
        if missing is None:
            return None
        return {"weight": missing[0], "class_weights": np.array(missing[1], dtype=np.float64)}

    @property
    def distinct_values(self) -> int:
        """How many values the valid cases have.

        Of an engine's table, one more than `fit` counts exactly stands for more (see its
        `distinct`).
        """
        count: int = self._result["distinct_values"]
        return count

    @property
    def range(self) -> tuple[float, float] | None:
        """The smallest and the largest value of the valid cases."""
        low, high = self._result["minimum"], self._result["maximum"]
        return None if low is None else (low, high)

    @property
    def information_gain(self) -> float | None:
        """What the bins tell about the target, in bits."""
        gain: float | None = self._result["information_gain"]
        return gain

    @property
    def best_split(self) -> dict[str, Any] | None:
        """Without a cut point: the split that came closest to being accepted, where there was one.

        Its ``"cut_point"``, its ``"gain"`` and the ``"threshold"`` that this did not exceed, in
        bits.
        """
        split: dict[str, Any] | None = self._result["best_split"]
        return None if split is None else dict(split)

    @property
    def information_value(self) -> float | None:
        """Of a target with two classes; infinite where a bin lacks one of them."""
        evidence = self._evidence()
        return None if evidence is None else evidence["information_value"]

    @property
    def event(self) -> str | None:
        """Of two classes the one that weight of evidence is about."""
        evidence = self._evidence()
        return None if evidence is None else evidence["event"]

    @property
    def status(self) -> str:
        """How it went: "ok", "warning" or "error"."""
        severity: str = self._result["severity"]
        return severity

    @property
    def code(self) -> int:
        """The status as a number, 0 when it is ok."""
        code: int = self._result["code"]
        return code

    @property
    def message(self) -> str:
        """The status in words."""
        text: str = self._result["text"]
        return text

    def weights_of_evidence(
        self, adjustment: float | None = None
    ) -> np.ndarray[Any, np.dtype[np.float64]] | None:
        """Get how much each bin speaks for the event: shape (bins,), or None without two classes.

        Parameters
        ----------
        adjustment
            A weight from 0 up, added to both classes of each bin; without it that of the bins.
        """
        evidence = self._evidence(adjustment)
        return None if evidence is None else np.array(evidence["weights"], dtype=np.float64)

    def table(self, adjustment: float | None = None) -> Frame:
        """Get the bins as rows: label, weight and share, and of a target what it has of each class.

        Parameters
        ----------
        adjustment
            As for `weights_of_evidence`.

        Returns
        -------
        Frame
            Of two classes also weight of evidence and what each bin adds to the information value.
            The last row is that of the missing cases, where they were counted.
        """
        weights = self.weights
        count = len(weights)
        total = weights.sum()
        missing = self.missing if count else None
        columns: dict[str, list[Any]] = {
            "bin": list(range(count)),
            "label": self.labels[:count],
            "weight": weights.tolist(),
            "share": (weights / total if total else np.full(count, np.nan)).tolist(),
        }
        for place, name in enumerate(self.classes if count else []):
            columns[f"weight of {name}"] = self.class_weights[:, place].tolist()
        evidence = self._evidence(adjustment)
        if evidence is not None:
            columns["woe"] = evidence["weights"]
            columns["information_value"] = evidence["values"]
        if missing is not None:
            row = {"bin": -1, "label": "missing", "weight": missing["weight"], "share": None}
            for name, weight in zip(self.classes, missing["class_weights"].tolist(), strict=True):
                row[f"weight of {name}"] = weight
            if evidence is not None:
                row["woe"] = evidence["missing_weight"]
                row["information_value"] = evidence["missing_value"]
            for name, values in columns.items():
                values.append(row[name])
        return make_frame(columns)

    def plot(self, ax: Axes | None = None) -> Axes:
        """Draw the bins with matplotlib: a bar for each, and the shares of the classes.

        Parameters
        ----------
        ax
            Where; a new figure without it.

        Returns
        -------
        matplotlib.axes.Axes
            With the bars.
        """
        from ._plot import plot_bins

        return plot_bins(self, ax)

    def _evidence(self, adjustment: float | None = None) -> dict[str, Any] | None:
        checked = None if adjustment is None else as_adjustment("adjustment", adjustment)
        return self._model.evidence(self._index, checked)

    def _json(self) -> str:
        return self._model.only(self._index).write()

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, AttributeBins):
            return NotImplemented
        return self._json() == other._json()

    def __hash__(self) -> int:
        return hash(self._json())

    def __reduce__(self) -> tuple[Any, ...]:
        return _first_of_json, (self._json(),)

    def __repr__(self) -> str:
        against = f" against {self.target}" if self.target else ""
        write = _core.format_time if self.is_time else "{:.6g}".format
        cuts = ", ".join(write(cut) for cut in self.cut_points[:8]) or "no cut points"
        more = ", ..." if len(self.cut_points) > 8 else ""
        count = len(self.weights)
        bins = "bin" if count == 1 else "bins"
        return f"<{count} {bins} of {self.name}{against}, {self.status}: {cuts}{more}>"

    def _repr_html_(self) -> str:
        return in_notebook(self._model.only(self._index))


def results_of(model: _core.Model) -> list[AttributeBins]:
    """Get all results: the bins of every attribute, against every target."""
    return [AttributeBins(model, index) for index in range(len(model))]


def stability_index(before: AttributeBins, after: AttributeBins) -> float | None:
    """Get how far the shares of bins moved; None when a sample has no weight."""
    return _core.stability_index(before._model, before._index, after._model, after._index)


def _first_of_json(text: str) -> AttributeBins:
    return AttributeBins(_core.Model.parse(text, "bins"), 0)

"""Charts with matplotlib."""

from __future__ import annotations

from typing import TYPE_CHECKING

import numpy as np

if TYPE_CHECKING:
    from matplotlib.axes import Axes

    from ._attribute import AttributeBins

_MOST_CLASSES = 6


def plot_bins(bins: AttributeBins, ax: Axes | None) -> Axes:
    """Draw a bar for each bin, and a line for the share of each of the largest classes."""
    if ax is None:
        import matplotlib.pyplot as plt

        _, ax = plt.subplots(figsize=(1.5 + max(4.0, 0.7 * len(bins.weights)), 4.0))
    places = np.arange(len(bins.weights))
    ax.bar(places, bins.weights, color="#c9d3e0")
    ax.set_xticks(places, bins.labels[: len(places)], rotation=30, ha="right")
    ax.set_ylabel("weight")
    ax.set_title(bins.name if bins.target is None else f"{bins.name} by {bins.target}")
    if not bins.classes or not len(places):
        return ax
    class_weights = bins.class_weights
    if bins.event is not None:
        shown = [bins.classes.index(bins.event)]
    else:
        shown = np.argsort(-class_weights.sum(axis=0), kind="stable")[:_MOST_CLASSES].tolist()
    shares = ax.twinx()
    totals = np.where(bins.weights > 0, bins.weights, np.nan)
    for place in shown:
        shares.plot(places, class_weights[:, place] / totals, marker="o", label=bins.classes[place])
    shares.set_ylim(0.0, 1.0)
    if bins.event is not None:
        shares.set_ylabel(f"share of {bins.event}")
    else:
        shares.set_ylabel("share of the class")
        shares.set_ylim(0.0, 1.2)  # with room for the legend
        shares.set_yticks(np.linspace(0.0, 1.0, 6))
        ax.set_ylim(top=1.2 * bins.weights.max())
        shares.legend(frameon=False, loc="upper center", ncols=min(3, len(shown)))
    return ax

"""Draws docs/scale.svg: how many rows each query counts, down to exact percentiles.

Usage: rounds.py [ROWS]
"""

import pathlib
import sys

import duckdb
import matplotlib
import numpy as np
from matplotlib import pyplot

import mcbinning as mb
from mcbinning.engines import DuckDbTable

COLOURS = "#9aa5b1", "#52606d", "#d9480f"
PICTURE = pathlib.Path(__file__).parents[2] / "docs" / "scale.svg"

SPREADS = {
    "even": "random()",
    "normal": "sqrt(-2 * ln(1 - random())) * cos(6.283185307179586 * random())",
    "exponential": "-ln(1 - random())",
    "ages, cents": "round(random() * 100, 2)",
    "a lognormal of 9 orders": "exp(2 * sqrt(-2 * ln(1 - random())) * cos(6.28 * random()))",
    "1e-300 to 1e300": "pow(10, random() * 600 - 300)",
}


class Watched(DuckDbTable):
    """A table that notes how many rows the answers about its attribute are of."""

    def __init__(self, relation):
        super().__init__(relation)
        self.counted = []

    def ask(self, queries):
        answers = super().ask(queries)
        self.counted += [int(one["n"].sum()) for one in answers if "lo" in one]
        return answers


def main(rows=4_000_000):
    connection = duckdb.connect()
    matplotlib.rcParams["svg.fonttype"] = "none"
    matplotlib.rcParams["svg.hashsalt"] = "rounds"
    figure, axes = pyplot.subplots(figsize=(6.4, 4.2), layout="constrained")
    most = 3  # queries that are drawn
    for place, (name, values) in enumerate(SPREADS.items()):
        connection.execute("select setseed(0.5)")
        table = f"select {values} as x, random() < 0.3 as y from range({rows})"
        connection.execute(f"create or replace table t as {table}")
        watched = Watched(connection.table("t"))
        mb.fit(watched, "y")
        counted = np.array(watched.counted) / rows
        print(name, *(f"{share:.3%}" for share in counted))
        for query, share in enumerate(counted[:most]):
            [bar] = axes.barh(place + 0.27 * (query - 1), 100 * share, 0.24, color=COLOURS[query])
            axes.bar_label(axes.containers[-1], [f"{100 * share:.3g} %"], padding=3)
            bar.set_label(f"query {query + 1}" if place == 0 else None)
    axes.set(
        xlabel="rows counted, %",
        xlim=(0, 112),
        xticks=range(0, 101, 25),
        yticks=range(len(SPREADS)),
        yticklabels=SPREADS,
        title=f"{rows:,} rows, 1,000 pre-bins",
    )
    axes.invert_yaxis()
    axes.spines[["top", "right"]].set_visible(False)
    figure.legend(loc="outside lower center", ncols=most)
    figure.savefig(PICTURE, metadata={"Date": None})


main(*map(int, sys.argv[1:]))

"""Random tables, and the bins that they have in memory: what every engine is compared with."""

import json
import warnings

import numpy as np
import pandas as pd
import pyarrow as pa
import pytest

import mcbinning as mb
from mcbinning.engines import DuckDbTable, PostgresTable, SparkTable

LARGEST = float(np.finfo(float).max)


def _values(rng, n):
    kinds = [
        lambda: rng.normal(size=n),
        lambda: rng.integers(-4, 5, n).astype(float),
        lambda: np.full(n, rng.choice([0.0, -0.0, 3.5, -LARGEST / 2])),
        lambda: rng.choice([-1.0, 1.0], n) * 10.0 ** rng.uniform(-300, 300, n),
        lambda: rng.choice([0.0, -0.0, 5e-324, 1e-310, -1e-320, 2.2e-308], n),
        lambda: 1.0 + rng.integers(0, 12, n) * 2.0**-52,
        lambda: np.round(rng.exponential(size=n), 1),
        lambda: np.where(rng.random(n) < 0.9, 7.0, rng.normal(size=n) * 1e6),
        lambda: rng.choice([LARGEST, -LARGEST / 4, LARGEST / 2, 1.0], n),
        lambda: np.where(rng.random(n) < 0.5, rng.normal(size=n) * 1e-12 + 1, rng.normal(size=n)),
    ]
    return kinds[rng.integers(len(kinds))]()


def make_case(seed, most_rows=400):
    """Make a table and the arguments of a fit.

    Returns
    -------
    tuple
        The columns as an Arrow table, the function of mcbinning and its arguments.
    """
    rng = np.random.default_rng(seed)
    n = int(rng.integers(1, most_rows) if rng.random() < 0.9 else rng.integers(1, 6))
    table = {"a": _values(rng, n), "b": _values(rng, n)}
    table["b"][rng.random(n) < rng.choice([0, 0.2, 0.9])] = np.nan
    if rng.random() < 0.2:
        table["a"] = np.sort(table["a"])
    k = int(rng.choice([2, 2, 2, 3, 5]))
    signal = np.argsort(np.argsort(table["a"])) * k // n
    classes = np.where(rng.random(n) < rng.choice([0.0, 0.3, 1.0]), rng.integers(0, k, n), signal)
    table["y"] = [None if gone else f"c{c}" for gone, c in zip(rng.random(n) < 0.05, classes)]
    table["z"] = rng.integers(0, 2, n).astype(float)
    table["z"][rng.random(n) < 0.1] = np.nan
    table["g"] = [f"t{c}" for c in rng.integers(0, 6, n)]
    arguments = {"closed": str(rng.choice(["right", "left"])), "attributes": ["a", "b"]}
    if rng.random() < 0.3:
        arguments["attributes"].append("g")
    if rng.random() < 0.5:
        table["w"] = np.round(rng.exponential(size=n) * 2, int(rng.integers(0, 3)))
        table["w"][rng.random(n) < 0.05] = np.nan
        arguments |= {"weight": "w", "rounding": str(rng.choice(["closest", "truncate"]))}
    if rng.random() < 0.3:
        arguments["missing"] = {"a": [7.0, (None, -1e5)], "w": [2.0], "y": ["c1"], "b": 0}
        arguments["missing"] = {k: v for k, v in arguments["missing"].items() if k in table}
    if rng.random() < 0.35:
        arguments["bins"] = int(rng.choice([2, 3, 4, 7, 10, 33, 200]))
        return table, mb.fit_equal_frequency, arguments
    arguments |= {
        "target": [["y"], ["z"], ["y", "z"]][rng.integers(3)],
        "prebins": int(rng.choice([2, 3, 5, 10, 25, 100])),
        "prebin_above": int(rng.choice([0, 1, 3, 10, 60])),
        "small_bins": float(rng.choice([0.0, 0.5])),
    }
    return table, mb.fit, arguments


def as_arrow(table):
    if isinstance(table, pa.Table):
        return table
    columns = {name: pa.array(column) for name, column in table.items()}
    return pa.table(
        {n: c.cast(pa.string()) if pa.types.is_null(c.type) else c for n, c in columns.items()}
    )


def in_memory(table, missing=(), rounding="closest", **_):
    """Make a table whose categories have the order that they have in an engine."""
    missing = dict(missing)
    columns = {}
    kept = np.ones(len(table["a"]), dtype=bool)
    if "w" in table:
        weights = np.where(np.isin(table["w"], missing.get("w", [])), np.nan, table["w"])
        kept = np.floor(weights + (rounding == "closest") * 0.5) > 0
    for name, column in table.items():
        if isinstance(column, list):
            names = {one for one, is_kept in zip(column, kept) if is_kept}
            names = sorted(names - {None, *missing.get(name, ())})
            known = [one if one in names else None for one in column]
            columns[name] = pd.Categorical(known, names, ordered=True)
        elif column.dtype.kind == "M":
            columns[name] = column
        else:
            ascending = np.unique(column[kept & ~np.isnan(column)])
            known = np.where(np.isin(column, ascending), column, np.nan)
            columns[name] = (
                pd.Categorical(known, ascending, ordered=True) if name == "z" else column
            )
    return pd.DataFrame(columns)


def outcome(function, table, arguments):
    """What a fit answers, or how it refuses; and what it warns of."""
    with warnings.catch_warnings(record=True) as warned:
        warnings.simplefilter("always")
        try:
            file = json.loads(function(table, **arguments).to_json())
        except mb.BinningError as error:
            return type(error).__name__, str(error)
    return file, [str(w.message) for w in warned]


def compare(seed, make_table):
    """Bin a random table in an engine and in memory; the bins are the same to the bit."""
    table, function, arguments = make_case(seed)
    counts = seed % 3 == 0
    told = []
    more = {"distinct": counts, "progress": lambda *done: told.append(done)}
    with pytest.MonkeyPatch.context() as patch:
        for engine in (DuckDbTable, PostgresTable, SparkTable) if seed % 5 else ():
            # More rounds than so few rows would take.
            patch.setattr(engine, "most_ranges", (16, 256, 4096)[seed % 3])
            patch.setattr(engine, "most_values", (8, 20)[seed // 2 % 2])
        patch.setattr(DuckDbTable, "packs", seed % 2 == 0)
        patch.setattr(SparkTable, "most_alone", 0 if seed % 4 else 200)
        found = outcome(function, make_table(table), arguments | more)
    assert told == sorted(told), seed
    expected = outcome(function, in_memory(table, **arguments), arguments)
    limit = arguments.get("prebin_above", 1000)
    counts = counts or limit == 0
    if not counts and isinstance(expected[0], dict) and isinstance(found[0], dict):
        for one, other in zip(found[0]["results"], expected[0]["results"]):
            number, exact = one.pop("distinct_values"), other.pop("distinct_values")
            assert number == exact or number == limit + 1 < exact, seed
    assert found == expected, (seed, arguments)

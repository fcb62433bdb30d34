"""Compares the Python package with what else bins in Python: `python compare.py [rows]`.

The peers are measured where they are installed (scikit-learn, optbinning). Best of three, one
thread unless a line says otherwise; times are wall time in milliseconds.
"""

import sys
import time

import numpy as np

import mcbinning as mb


def best(work, rounds=3):
    """Time the best of some rounds, in milliseconds."""
    times = []
    for _ in range(rounds):
        begin = time.perf_counter()
        work()
        times.append((time.perf_counter() - begin) * 1e3)
    return min(times)


def show(what, ours, other, theirs):
    """Print a line."""
    print(f"{what:45} {ours:9.2f}  {other:32} {theirs:9.2f}  {theirs / ours:6.2f} x", flush=True)


def main():
    """Print the table."""
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 1_000_000
    random = np.random.default_rng(1)
    values = np.asfortranarray(random.normal(size=(rows, 10)))
    classes = (values[:, 0] + random.normal(size=rows) > 0.5).astype(np.int64)
    column = values[:, 0]

    fit = best(lambda: mb.fit(values, classes))
    show(
        "fit, 10 columns",
        fit,
        "the same, two threads",
        best(lambda: mb.fit(values, classes, threads=2)),
    )
    equal = best(lambda: mb.fit_equal_frequency(values, 20))
    shares = np.arange(1, 20) / 20
    show(
        "equal frequency, 20 bins",
        equal,
        "numpy.quantile",
        best(lambda: np.quantile(values, shares, axis=0)),
    )

    bins = mb.from_cut_points({"x0": np.quantile(column, np.arange(1, 33) / 33)})
    cuts = bins["x0"].cut_points
    apply = best(lambda: bins.apply({"x0": column}), 9)
    show(
        "apply, 33 bins",
        apply,
        "numpy.digitize",
        best(lambda: np.digitize(column, cuts, right=True)),
    )
    rounds = 2000
    row = np.zeros((1, 1))
    single = best(lambda: [bins.apply(row) for _ in range(rounds)]) / rounds
    print(f"a single row: {single * 1e3:.1f} us")

    try:
        from sklearn.preprocessing import KBinsDiscretizer
    except ImportError:
        print("scikit-learn is not installed")
    else:
        peer = KBinsDiscretizer(20, strategy="quantile", subsample=None, encode="ordinal")
        show("equal frequency, 20 bins", equal, "KBinsDiscretizer", best(lambda: peer.fit(values)))
    try:
        from optbinning import MDLP, OptimalBinning
    except ImportError:
        print("optbinning is not installed")
    else:
        one = best(lambda: mb.fit({"x": column}, classes))
        show("fit, 1 column", one, "optbinning MDLP", best(lambda: MDLP().fit(column, classes), 1))
        show(
            "fit, 1 column",
            one,
            "optbinning OptimalBinning",
            best(lambda: OptimalBinning().fit(column, classes), 1),
        )


if __name__ == "__main__":
    main()

"""Usage: compare.py [--rows N] [COLUMNRUN]

Compares the Python package with what else bins in Python, in one run: ratios, and the milliseconds
that they are made of. The peers, scikit-learn and optbinning (both from PyPI), are measured where
they are installed. COLUMNRUN is the program `columnrun` of the benchmarks, a C++ host that bins the
same columns. Both sides are called in turn, the least of several times counts. Times are processor
time, which other jobs on the machine disturb little; of two threads wall time.
"""

import argparse
import os
import resource
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import numpy as np

import mcbinning as mb


def best(*works, rounds=3, clock=time.process_time):
    """Call the works in turn and get the least time of each, in milliseconds."""
    times = [[] for _ in works]
    for _ in range(rounds):
        for work, taken in zip(works, times, strict=True):
            begin = clock()
            work()
            taken.append((clock() - begin) * 1e3)
    return [min(taken) for taken in times]


def show(what, measured, unit, target, is_met, ours, theirs=float("nan")):
    """Print a line."""
    verdict = "met" if is_met else "MISSED"
    print(
        f"{what:46} {measured:8.2f} {unit:9} {target:8} {verdict:7} {ours:9.2f} {theirs:9.2f}",
        flush=True,
    )


def faster(what, least, ours, theirs):
    """Print how many times faster than a peer."""
    show(what, theirs / ours, "x faster", f">= {least}", theirs / ours >= least, ours, theirs)


def at_most(what, most, ours, theirs):
    """Print a share of the peer's time."""
    show(what, ours / theirs, "x", f"<= {most}", ours / theirs <= most, ours, theirs)


def compare_with_columns(program, values, classes):
    """Compare with a C++ host over the same columns, a process of its own, in turn with it."""
    rows, columns = values.shape
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder) / "values"
        with path.open("wb") as file:
            for column in [*values.T, classes]:
                np.ascontiguousarray(column, dtype=np.float64).tofile(file)
        command = [program, path, str(rows), str(columns + 1)]
        ours, theirs = [], []
        for _ in range(5):
            ours += best(lambda: mb.fit(values, classes))
            ran = subprocess.run(command, check=True, capture_output=True, text=True)
            theirs.append(float(ran.stdout))
        at_most("fit, 10 columns: the C++ host", 1.1, min(ours), min(theirs))


def import_time(module, rounds=15):
    """Get the processor time of importing a module in a fresh interpreter, in milliseconds."""

    def children():
        used = resource.getrusage(resource.RUSAGE_CHILDREN)
        return used.ru_utime + used.ru_stime

    def run(code):
        subprocess.run([sys.executable, "-c", code], check=True)

    both = best(lambda: run("pass"), lambda: run(f"import {module}"), rounds=rounds, clock=children)
    return both[1] - both[0]


def compare_fits(values, classes, program):
    """Compare making bins."""
    fit, equal, quantile = best(
        lambda: mb.fit(values, classes),
        lambda: mb.fit_equal_frequency(values, 20),
        lambda: np.quantile(values, np.arange(1, 20) / 20, axis=0),
    )
    if program:
        compare_with_columns(program, values, classes)
    one, two = best(
        lambda: mb.fit(values, classes),
        lambda: mb.fit(values, classes, threads=2),
        clock=time.perf_counter,
    )
    faster("fit, 10 columns, 2 threads: 1 thread (wall)", 1.6, two, one)
    faster("equal frequency, 20 bins: numpy.quantile", 1.5, equal, quantile)
    try:
        from sklearn.preprocessing import KBinsDiscretizer
    except ImportError:
        print("scikit-learn is not installed")
    else:
        options = {"strategy": "quantile", "subsample": None, "encode": "ordinal"}
        if "quantile_method" in KBinsDiscretizer().get_params():
            options["quantile_method"] = "linear"
        peer = KBinsDiscretizer(20, **options)
        (theirs,) = best(lambda: peer.fit(values))
        faster("equal frequency, 20 bins: KBinsDiscretizer", 2, equal, theirs)
    try:
        from optbinning import MDLP, OptimalBinning
    except ImportError:
        print("optbinning is not installed")
    else:
        for what, least, peer in ("MDLP", 10, MDLP), ("OptimalBinning", 25, OptimalBinning):
            (theirs,) = best(lambda: [peer().fit(x, classes) for x in values.T], rounds=1)  # noqa: B023
            faster(f"fit, 10 columns: optbinning {what}", least, fit, theirs)


def compare_applying(values, classes):
    """Compare giving values their bins."""
    column = np.ascontiguousarray(values[:, 0])
    bins = mb.from_cut_points({"x0": np.quantile(column, np.arange(1, 33) / 33)})
    cuts = bins["x0"].cut_points
    apply, digitize = best(
        lambda: bins.apply({"x0": column}),
        lambda: np.digitize(column, cuts, right=True),
        rounds=9,
    )
    faster("apply, 33 bins: numpy.digitize", 5, apply, digitize)
    row, repeats = np.zeros((1, 1)), 2000
    (single,) = best(lambda: [bins.apply(row) for _ in range(repeats)], rounds=7)
    micros = single * 1e3 / repeats
    show("apply to a single row", micros, "us", "<= 30", micros <= 30, micros / 1e3)
    try:
        from sklearn.utils.validation import check_array

        from mcbinning.sklearn import MDLPDiscretizer
    except ImportError:
        return
    binning = MDLPDiscretizer(prebins=50).fit(values, classes)
    transform, parts = best(
        lambda: binning.transform(values),
        lambda: (binning.bins_.apply(values), check_array(values, ensure_all_finite="allow-nan")),
    )
    at_most("transform, 10 columns: check_array + apply", 1.5, transform, parts)


def main():
    """Print the table."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--rows", type=int, default=1_000_000)
    parser.add_argument("columnrun", nargs="?")
    options = parser.parse_args()
    if os.path.isdir("/dev/shm"):
        tempfile.tempdir = "/dev/shm"
        os.environ["TMPDIR"] = "/dev/shm"
    random = np.random.default_rng(1)
    values = np.asfortranarray(random.normal(size=(options.rows, 10)))
    classes = (values[:, 0] + random.normal(size=options.rows) > 0.5).astype(np.int64)
    print(f"{'work: peer':46} {'measured':18} {'target':8} {'':7} {'ours ms':>9} {'peer ms':>9}")
    compare_applying(values, classes)
    compare_fits(values, classes, options.columnrun)
    at_most("import mcbinning: import numpy", 1.3, import_time("mcbinning"), import_time("numpy"))


if __name__ == "__main__":
    main()

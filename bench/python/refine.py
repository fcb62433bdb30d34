"""Usage: refine.py MCBIN [BINS...]

Joins the same pre-bins with `mcbin refine` and with the constraint solver of optbinning (PyPI), to
at most 20 bins with a rising event rate and the most information value, and prints time and value
of both. BINS are numbers of pre-bins; 50, 100 and 200 unless given. Times of mcbin include its
start, reading and writing.
"""

import json
import subprocess
import sys
import time

import numpy as np
from optbinning import OptimalBinning

MAX_BINS = 20
CASES_PER_BIN = 200
TIME_LIMIT = 600  # of the solver, seconds


def make_prebins(bin_count, random):
    """Non-events and events of each pre-bin; the rate rises, with noise."""
    rates = 0.05 + 0.4 * np.arange(bin_count) / bin_count
    events = random.binomial(CASES_PER_BIN, rates)
    return np.stack([CASES_PER_BIN - events, events], axis=1)


def information_value(counts):
    shares = counts / counts.sum(axis=0)
    return float(((shares[:, 1] - shares[:, 0]) * np.log(shares[:, 1] / shares[:, 0])).sum())


def join(counts, cuts):
    """The counts of the bins that are left with these cut points; the cut after bin b is b."""
    firsts = [0] + [int(cut) + 1 for cut in cuts]
    return np.add.reduceat(counts, firsts, axis=0)


def bin_file(counts):
    totals = counts.sum(axis=1)
    weight = int(totals.sum())
    return json.dumps(
        {
            "format": "mcbin-bins",
            "version": 1,
            "tool": "",
            "algorithm": "supervised",
            "closed": "right",
            "settings": {"prebin_above": 0, "prebins": 2, "small_bins": 0},
            "source": {
                "name": "",
                "delimiter": ",",
                "na": [],
                "records": weight,
                "dropped": {"missing_weight": 0, "zero_weight": 0, "weight_rounded_to_zero": 0},
            },
            "attributes": [{"name": "x", "kind": "continuous"}],
            "targets": [{"name": "y", "kind": "numeric-categorical", "categories": [0, 1]}],
            "results": [
                {
                    "attribute": "x",
                    "target": "y",
                    "status": {"code": 0, "severity": "ok", "text": "ok"},
                    "cut_points": list(range(len(counts) - 1)),
                    "bin_weights": totals.tolist(),
                    "class_weights": counts.tolist(),
                    "valid_weight": weight,
                    "weight_with_missing": weight,
                    "distinct_values": len(counts),
                }
            ],
        }
    )


def refine(mcbin, counts):
    text = bin_file(counts)
    begin = time.perf_counter()
    refined = subprocess.run(
        [
            mcbin,
            "refine",
            "--objective",
            "iv",
            "--monotonic",
            "increasing",
            "--max-bins",
            str(MAX_BINS),
            "--json",
            "-",
            "-",
        ],
        input=text,
        capture_output=True,
        check=True,
        text=True,
    )
    seconds = time.perf_counter() - begin
    return seconds, json.loads(refined.stdout)["results"][0]["cut_points"]


def solve(counts):
    bins = np.arange(len(counts))
    values = np.repeat(bins, counts.sum(axis=1)).astype(float)
    events = np.concatenate([np.repeat([0, 1], row) for row in counts])
    solver = OptimalBinning(
        solver="cp",
        divergence="iv",
        monotonic_trend="ascending",
        max_n_bins=MAX_BINS,
        max_n_prebins=len(counts),
        min_prebin_size=1e-6,
        user_splits=bins[:-1] + 0.5,
        time_limit=TIME_LIMIT,
    )
    begin = time.perf_counter()
    solver.fit(values, events)
    return time.perf_counter() - begin, solver.splits - 0.5, solver.status


def main(mcbin, bin_counts):
    print("pre-bins  program     seconds  bins  information value  status")
    for bin_count in bin_counts:
        counts = make_prebins(bin_count, np.random.default_rng(1))
        seconds, cuts = refine(mcbin, counts)
        rows = [("mcbin", seconds, cuts, "")]
        seconds, cuts, status = solve(counts)
        rows.append(("optbinning", seconds, cuts, status))
        for program, seconds, cuts, status in rows:
            value = information_value(join(counts, cuts))
            print(
                f"{bin_count:8}  {program:10} {seconds:8.3f}  {len(cuts) + 1:4}  {value:17.9f}  "
                f"{status}"
            )


if __name__ == "__main__":
    main(sys.argv[1], [int(count) for count in sys.argv[2:]] or [50, 100, 200])

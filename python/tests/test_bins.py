"""What becomes of bins."""

import collections
import contextlib
import copy
import csv
import datetime
import fractions
import os
import pickle
import signal
import sqlite3
import subprocess
import time

import numpy as np
import pytest
from hypothesis import given
from hypothesis import strategies as st

import mcbinning as mb
from conftest import EXAMPLES, results_of
from mcbinning._frame import make_frame

pa = pytest.importorskip("pyarrow")
pd = pytest.importorskip("pandas")
pl = pytest.importorskip("polars")
duckdb = pytest.importorskip("duckdb")


@pytest.fixture(scope="module")
def customers():
    age = np.arange(18.0, 78.0)
    return {
        "age": np.append(age, np.nan),
        "city": ["Rome", "Bonn", "Oslo"] * 20 + [None],
        "buys": ["yes" if 30 <= a < 46 or a == 70 else "no" for a in age] + ["no"],
    }


@pytest.fixture(scope="module")
def bins(customers):
    return mb.fit(customers, "buys", attributes=["age", "city"])


finite = st.floats(allow_nan=False, allow_infinity=False)


@given(
    st.lists(finite, unique=True, max_size=40).map(sorted).map(lambda c: [v + 0.0 for v in c]),
    st.lists(st.one_of(st.floats(), st.integers(-3, 3).map(float)), min_size=1),
    st.sampled_from(["right", "left"]),
)
def test_apply_is_a_search_among_the_cut_points(cuts, values, closed):
    cuts = sorted({*cuts})
    values = np.array([*values, *cuts])
    lowest = values == -np.finfo(float).max  # the mark of a missing value
    bins = mb.from_cut_points({"x": cuts}, closed=closed)
    side = "left" if closed == "right" else "right"
    expected = np.where(np.isnan(values) | lowest, -1, np.searchsorted(cuts, values, side))
    assert bins.apply({"x": values})["x_bin"].tolist() == expected.tolist()
    assert bins.apply(pa.table({"x": values}))["x_bin"].tolist() == expected.tolist()
    assert bins.apply({"x": float(values[0])})["x_bin"].tolist() == expected[:1].tolist()


def test_every_form_in_every_taker(bins, customers):
    index = bins.apply(customers)
    assert index.columns == ["age_bin", "city_bin"]
    expected = bins["age"].labels
    labels = bins.apply(customers, "label")
    woe = bins.apply(customers, "woe", attributes=["age"])
    interval = bins.apply(customers, "interval", attributes=["age"], suffix="_in")
    for frame in index, labels, woe, interval:
        arrow = pa.table(frame)
        arrow.validate(full=True)
        assert arrow.column_names == frame.columns
        assert arrow[0].null_count == (frame in (index, interval))
        assert pl.DataFrame(frame).shape == frame.shape
        assert duckdb.sql("select count(*) from frame").fetchall() == [(61,)]
        assert frame.to_pandas().shape == frame.shape
    assert ["missing" if i < 0 else expected[i] for i in index["age_bin"]] == pa.table(labels)[
        0
    ].to_pylist()
    assert labels["age_bin"].tolist() == pa.table(labels)[0].to_pylist()
    evidence = bins["age"].weights_of_evidence()
    assert np.array_equal(woe["age_bin"][:-1], evidence[index["age_bin"][:-1]])
    assert woe["age_bin"][-1] == bins["age"].table()["woe"][-1] == -np.inf
    age = interval.to_pandas()["age_in"]
    assert all(customers["age"][i] in age[i] for i in range(60))
    assert pd.isna(age[60])
    with pytest.raises(mb.InputError, match="categories"):
        bins.apply(customers, "interval")


def test_frames_are_pickled_and_copied(bins, customers):
    forms = [bins.apply(customers, as_, attributes=["age"]) for as_ in ("index", "label", "woe")]
    left = mb.from_cut_points({"age": [30.0]}, closed="left").apply(customers, "interval")
    none = bins.apply({"age": np.empty(0), "city": []}, "label")
    texts = make_frame({"t": ["x", None], "n": [1.5, None], "c": [1, 2]})
    assert texts["t"].tolist() == ["x", None]
    for frame in *forms, left, none, texts, bins.summary(), bins["age"].table():
        for again in pickle.loads(pickle.dumps(frame)), copy.deepcopy(frame), copy.copy(frame):
            assert pa.table(again).equals(pa.table(frame))
            assert again.to_pandas().equals(frame.to_pandas())
            assert repr(again) == repr(frame)


@pytest.mark.parametrize("as_", ["index", "label", "woe"])
def test_missing_values_and_events_are_those_of_the_tool(tmp_path, as_):
    program = os.environ.get("MCBIN_PROGRAM")
    if not program:
        pytest.skip("MCBIN_PROGRAM does not say where the tool is")
    ages = [20.0, 40.0, 70.0, np.nan]
    classes = ["yes", "no", "no", "yes", "no"] * 12
    table = {"age": np.tile([20.0, 40.0, 60.0, 70.0, np.nan], 12), "buys": classes}
    table["age"][7] = np.nan
    made = mb.fit(table, "buys", event="no", woe_adjust=0.5)
    assert made["age"].event == "no"
    made.save(tmp_path / "bins.json")
    (tmp_path / "data.csv").write_text("age\n20\n40\n70\nNA\n")
    ran = subprocess.run(
        [program, "apply", "--as", as_, tmp_path / "bins.json", tmp_path / "data.csv"],
        check=True,
        capture_output=True,
        text=True,
    )
    rows = csv.reader(ran.stdout.splitlines()[1:])
    found = made.apply({"age": ages}, as_)["age_bin"].tolist()
    if as_ == "woe":
        assert found == [float(row[1]) for row in rows]
    else:
        assert ["" if v in (-1, None) else str(v) for v in found] == [row[1] for row in rows]


def test_unknown_categories_are_missing_and_said(bins):
    with pytest.warns(mb.BinningWarning, match="city: 1 unknown"):
        frame = bins.apply({"age": [20.0, 40.0], "city": ["Rome", "Lima"]})
    assert frame["city_bin"].tolist() == [
        bins.apply({"age": 1.0, "city": "Rome"})["city_bin"][0],
        -1,
    ]
    for nothing in None, float("nan"), [None], pa.nulls(1):  # of no type: missing, and not unknown
        assert bins.apply({"age": 20.0, "city": nothing})["city_bin"].tolist() == [-1]


def test_bins_are_kept_copied_and_compared(bins, customers, tmp_path):
    bins.save(tmp_path / "bins.json")
    for other in (
        mb.load(tmp_path / "bins.json"),
        pickle.loads(pickle.dumps(bins)),
        copy.copy(bins),
        copy.deepcopy(bins),
        mb.fit(pd.DataFrame(customers), "buys", attributes=["age", "city"]),
    ):
        assert other == bins
        assert hash(other) == hash(bins)
        assert results_of(other) == results_of(bins)
    with pytest.warns(mb.BinningWarning):
        age = mb.fit(customers, "buys")
    assert bins != age
    assert pickle.loads(pickle.dumps(age)).left_out == ["city"]
    one = pickle.loads(pickle.dumps(bins["age"]))
    assert one == copy.copy(one) == bins["age"] != bins["city"]
    assert len({one, bins["age"], bins["city"]}) == 2
    assert mb.fit(customers, "buys", attributes=["age"])["age"] == one  # whatever stood beside it
    evaluation = copy.deepcopy([bins.evaluate(customers), bins.summary()])[0]
    assert evaluation.stability_index("age") == 0
    assert [path.name for path in tmp_path.iterdir()] == ["bins.json"]
    with pytest.raises(FileNotFoundError):
        bins.save(tmp_path / "no" / "bins.json")


def test_what_is_shown(bins, tmp_path):
    assert bins.summary()["attribute"].tolist() == ["age", "city"]
    table = bins["age"].table().to_dict()
    assert sum(table["weight"]) == 61
    assert (table["label"][-1], table["weight"][-1]) == ("missing", 1)
    assert (
        table["weight of yes"][:-1]
        == bins["age"].class_weights[:, bins["age"].classes.index("yes")].tolist()
    )
    assert "age" in repr(bins)
    assert "age" in repr(bins["age"])
    assert "<iframe" in bins._repr_html_()
    assert "<table" in bins.summary()._repr_html_()
    bins.report(tmp_path / "r.html")
    assert "<svg" in (tmp_path / "r.html").read_text()
    assert "age by buys" in bins.to_text()
    assert mb.from_cut_points({"x": [1.0]})._repr_html_()


def test_exports_give_the_same_bins(bins, customers):
    expected = bins.apply(customers)
    connection = sqlite3.connect(":memory:")
    connection.execute("create table data (age real, city text, buys text)")
    rows = zip(
        [None if a != a else a for a in customers["age"]], customers["city"], customers["buys"]
    )
    connection.executemany("insert into data values (?, ?, ?)", list(rows))
    found = connection.execute(bins.to_sql("sqlite" if "sqlite" in mb.sql_dialects() else "ansi"))
    names = [column[0] for column in found.description]
    places = [names.index("age_bin"), names.index("city_bin")]
    got = [[-1 if row[p] is None else row[p] for p in places] for row in found.fetchall()]
    assert got == np.column_stack([expected["age_bin"], expected["city_bin"]]).tolist()
    module = {}
    exec(bins.to_python(), module)
    assigned = module["assign_bins"]({"age": customers["age"], "city": customers["city"]})
    assert np.asarray(assigned["age_bin"]).tolist() == expected["age_bin"].tolist()
    assert "<PMML" in bins.to_pmml("label")


@pytest.fixture(scope="module")
def fine_bins():
    table = pd.read_csv(EXAMPLES / "wdbc.csv")
    return mb.fit_equal_frequency(table, 12, target="diagnosis", woe_adjust=0.25)


@pytest.mark.parametrize(
    "wanted",
    [
        {"max_bins": 5, "min_bins": 2, "monotonic": "either", "min_rate_difference": 0.02},
        {"min_share": 0.125, "min_weight": 80, "min_nonevent_weight": 10.5, "woe_adjust": 0.5},
        {"min_nonevent_weight": 20, "event": "benign", "monotonic": "decreasing"},
        {"max_bins": 4, "objective": "iv", "monotonic": "peak", "min_event_weight": 1},
        {"breaks": {"mean_area": [551.1, 596.6]}, "keep": {"worst_area": [686.5]}, "max_bins": 4,
         "monotonic": "increasing", "attributes": ["mean_area", "worst_area"]},
    ],
)  # fmt: skip
def test_refined_bins_are_those_of_the_tool(tool, tmp_path, fine_bins, wanted):
    options = []
    for name, value in wanted.items():
        if isinstance(value, dict):
            value = [f"{attribute}={','.join(map(str, c))}" for attribute, c in value.items()]
        text = ",".join(value) if isinstance(value, list) else str(value)
        options += [f"--{name.replace('_', '-')}", text]
    fine_bins.save(tmp_path / "fine.json")
    refined = fine_bins.refine(**wanted)
    assert results_of(refined) == tool(tmp_path / "fine.json", "refine", *options)
    assert len(refined.settings["refinements"]) == 1
    assert refined.settings["woe_adjust"] == wanted.get("woe_adjust", 0.25)
    assert refined["mean_area"].event == wanted.get("event", "malignant")
    assert refined != fine_bins == mb.load(tmp_path / "fine.json")


@pytest.mark.parametrize(
    ("wanted", "code", "text"),
    [
        ({"min_bins": 99}, "no-such-bins", "'age' cannot be joined to have at least 99 bins; the"),
        ({"keep": {"age": [1]}}, "no-such-cut-point", "nearest to it is"),
        ({"attributes": ["shoe"]}, "unknown-attribute", "shoe"),
        ({"breaks": {"age": [np.nan]}}, "input", "not finite"),
        ({"attributes": []}, "input", "no attributes"),
        ({"max_bins": 0}, "input", "from 1 to"),
        ({"monotonic": "up"}, "input", "'valley'"),
        ({"event": "maybe"}, "unknown-class", "'yes'"),
        ({"woe_adjust": -1}, "input", "from 0 to"),
    ],
)
def test_what_bins_cannot_be_is_refused(bins, wanted, code, text):
    with pytest.raises(mb.InputError, match=text) as raised:
        bins.refine(**wanted)
    assert raised.value.code == code


def test_signals_are_heard_while_bins_are_refined():
    x = np.random.default_rng(2).normal(size=20_000)
    cuts = np.quantile(x, np.arange(1, 250) / 250)
    heard = collections.Counter()

    def hear(_, frame):
        place = frame, frame.f_lasti
        heard[place] += 1
        if heard[place] == 3:  # a call that asks but once hears one at its begin, one at its end
            raise ZeroDivisionError

    before = signal.signal(signal.SIGALRM, hear)
    attributes = 10
    try:
        while not heard or max(heard.values()) < 3:
            attributes *= 2  # until it takes long enough here to be asked twice
            names = [f"x{i}" for i in range(attributes)]
            table = {"y": (x > 0).astype(int), **dict.fromkeys(names, x)}
            fine = mb.from_cut_points(dict.fromkeys(names, cuts), table, target="y")
            begun = time.process_time()
            signal.setitimer(signal.ITIMER_REAL, 0.01, 0.01)
            with contextlib.suppress(ZeroDivisionError):
                fine.refine(max_bins=9, monotonic="either")
            signal.setitimer(signal.ITIMER_REAL, 0)
            assert time.process_time() - begun < 10
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)


def test_the_best_split_is_told_where_there_is_no_cut():
    split = mb.fit({"x": np.arange(8), "y": [0, 1] * 4}, "y")["x"].best_split
    assert 0 <= split["cut_point"] < 7
    assert 0 < split["gain"] <= split["threshold"]
    assert mb.from_cut_points({"x": [1.0]})["x"].best_split is None


def test_evaluate_finds_the_same_counts_on_the_same_data(bins, customers):
    same = bins.evaluate(customers)
    assert str(same).startswith("Bins on other data: ")
    assert [r["bin_weights"] for r in results_of(same.bins)] == [
        r["bin_weights"] for r in results_of(bins)
    ]
    assert same.stability_index("age") == 0
    assert "equal" in same.text
    older = {**customers, "age": customers["age"] + 20}
    moved = bins.evaluate(pl.DataFrame(older, strict=False), weight=np.full(61, 2))
    assert moved.bins["age"].valid_weight == 120
    assert moved.summary()["stability_index"][0] != 0


def test_own_cut_points_count_a_table(customers):
    bins = mb.from_cut_points({"age": [29, 45]}, customers, target="buys", weight=[3] * 61)
    assert bins["age"].weights.tolist() == [36, 48, 96]
    assert bins["age"].information_gain > 0.5
    assert mb.load is not None
    assert pickle.loads(pickle.dumps(bins)) == bins


def test_several_targets(customers):
    both = mb.fit({**customers, "old": customers["age"] > 50}, ["buys", "old"], attributes=["age"])
    assert both["age", "old"].cut_points.tolist() == [50]
    with pytest.raises(mb.TargetError, match="target="):
        both.apply(customers)
    assert both.apply(customers, target="old")["age_bin"].tolist()[:-1] == [0] * 33 + [1] * 27


def test_plot(bins):
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    ax = bins["age"].plot()
    assert [patch.get_height() for patch in ax.patches] == bins["age"].weights.tolist()


DAYS = np.datetime64("2024-01-01") + np.arange(200) * 7 % 400
LATE = (np.datetime64("2024-06-15") < DAYS).astype(int)
DATES = {
    "days": DAYS,
    "hours": DAYS.astype("M8[h]"),
    "nanoseconds": pd.Series(DAYS.astype("M8[ns]")).dt.tz_localize("UTC"),
    "objects": DAYS.tolist(),
    "arrow": pa.array(DAYS),
    "milliseconds": pa.chunked_array([pa.array(DAYS).cast(pa.date64())]),
    "polars": pl.Series(DAYS).cast(pl.Datetime("us")),
}


@pytest.mark.parametrize("kind", DATES)
def test_dates_are_binned_shown_and_read_as_by_the_tool(tool, tmp_path, kind):
    expected = tool({"when": DAYS.tolist(), "y": LATE.tolist()}, "supervised", "--target", "y")
    table = {"when": DATES[kind], "y": LATE}
    bins = mb.fit(table, "y")
    assert results_of(bins) == expected
    bins.save(tmp_path / "b.json")
    assert mb.load(tmp_path / "b.json") == bins
    when = bins["when"]
    assert (when.is_time, when.labels) == (True, ["(-inf, 2024-06-15]", "(2024-06-15, +inf)"])
    assert "2024-06-15>" in repr(when)
    assert repr(mb.from_cut_points({"when": []})["when"]) == "<1 bin of when, ok: no cut points>"
    for data in table, {**table, "when": np.datetime_as_string(DAYS).tolist()}:
        assert bins.apply(data)["when_bin"].tolist() == LATE.tolist()
        assert bins.evaluate(data).stability_index("when") == 0
    cuts = [datetime.date(2024, 1, 31), "2024-06-15T00:00Z", np.datetime64("2025-01")]
    own = mb.from_cut_points({"when": cuts}, table, target="y", weight=np.full(200, 2))
    assert own["when"].labels[2] == "(2024-06-15, 2025-01-01]"
    assert own.refine(keep={"when": cuts[1:2]}, max_bins=2)["when"].labels == when.labels
    missing = {"when": [DAYS[0], ("2024-02-01", datetime.datetime(2024, 3, 1))]}
    found = mb.fit_equal_frequency(table, 2, missing=missing)["when"].missing_weight
    inside = (np.datetime64("2024-02-01") <= DAYS) & (np.datetime64("2024-03-01") >= DAYS)
    assert found == inside.sum() + (DAYS[0] == DAYS).sum()


@pytest.mark.parametrize("unit", ["ms", "us", "ns"])
@given(number=st.integers(-(2**63) + 1, 2**63 - 1))
@pytest.mark.filterwarnings("ignore::mcbinning.BinningWarning")
def test_moments_are_the_nearest_doubles(unit, number):
    exact = fractions.Fraction(number, {"ms": 10**3, "us": 10**6, "ns": 10**9}[unit])
    bins = mb.fit_equal_frequency({"t": pa.array([number], pa.timestamp(unit))}, 2)
    assert bins["t"].range == (float(exact), float(exact))


def test_dates_and_numbers_are_not_mixed_up():
    dates, numbers = mb.from_cut_points({"a": DAYS[:1]}), mb.from_cut_points({"a": [1.0]})
    column = {"a": DAYS, "y": LATE}
    for call in (
        lambda: dates.apply({"a": [1.0, 2.0]}),
        lambda: numbers.apply(column),
        lambda: numbers.evaluate(duckdb.sql("select DATE '2024-01-01' as a")),
        lambda: dates.apply(duckdb.sql("select 1 as a")),
        lambda: mb.from_cut_points({"a": ["2024-01-01"]}, {"a": [1, 2]}),
        lambda: mb.fit({"a": LATE, "y": DAYS}, "y"),
        lambda: mb.fit(column, "y", categorical=["a"]),
        lambda: mb.fit(duckdb.sql("select range as a, DATE '2024-01-01' as y from range(9)"), "y"),
        lambda: mb.fit({"a": LATE, "y": LATE}, "y", weight=DAYS),
        lambda: mb.fit({"a": pa.array(DAYS).dictionary_encode(), "y": LATE}, "y", attributes=["a"]),
    ):
        with pytest.raises((ValueError, TypeError), match=r"dates|numbers"):
            call()
    assert dates.apply({"a": [None, np.nan]})["a_bin"].tolist() == [-1, -1]

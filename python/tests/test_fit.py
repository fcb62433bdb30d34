"""Bins made through Python are those of the tool, whatever holds the data."""

import csv
import decimal
import fractions
import os
import signal
import subprocess
import sys
import threading

import numpy as np
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

import mcbinning as mb
from conftest import EXAMPLES, results_of

pa = pytest.importorskip("pyarrow")
pd = pytest.importorskip("pandas")
pl = pytest.importorskip("polars")
duckdb = pytest.importorskip("duckdb")


def read_csv(path):
    with open(path, newline="") as file:
        names, *rows = csv.reader(file)
    table = {}
    for name, texts in zip(names, zip(*rows)):
        try:
            table[name] = np.array([float(t) if t not in ("", "NA") else np.nan for t in texts])
        except ValueError:
            table[name] = list(texts)
    return table


@pytest.mark.parametrize(
    ("name", "target"), [("iris", "species"), ("wine", "cultivar"), ("wdbc", "diagnosis")]
)
def test_data_sets_as_the_tool_bins_them(tool, name, target):
    path = EXAMPLES / f"{name}.csv"
    table = read_csv(path)
    assert results_of(mb.fit(table, target)) == tool(path, "supervised", "--target", target)
    few = mb.fit(table, target, prebins=8, prebin_above=9, small_bins=0.3, closed="left", threads=2)
    assert results_of(few) == tool(
        path, "supervised", "--target", target, "--prebins", "8", "--prebin-above", "9",
        "--small-bins", "0.3", "--closed", "left",
    )  # fmt: skip
    numbers = {column: values for column, values in table.items() if column != target}
    assert results_of(mb.fit_equal_frequency(numbers, 7)) == [
        result
        for result in tool(path, "equal-frequency", "--bins", "7")
        if result["attribute"] != target
    ]
    counted = mb.fit_equal_frequency(table, 20, target=target, closed="left", threads=2)
    assert results_of(counted) == tool(
        path, "equal-frequency", "--bins", "20", "--closed", "left", "--target", target
    )


cells = st.one_of(st.none(), st.integers(-5, 5), st.floats(-1e300, 1e300), st.just(-0.0))
tables = st.integers(2, 40).flatmap(
    lambda n: st.fixed_dictionaries(
        {
            "number": st.lists(cells, min_size=n, max_size=n),
            "whole": st.lists(st.integers(-9, 9), min_size=n, max_size=n),
            "class": st.lists(st.sampled_from(["no", "yes", 'é,"', None]), min_size=n, max_size=n),
            "w": st.lists(st.sampled_from([0, 1, 2, 0.5, 7]), min_size=n, max_size=n),
        }
    ).filter(
        lambda t: (
            len({c for c, w in zip(t["class"], t["w"]) if c is not None and w}) > 1
            and any(w > 0.4 for w in t["w"])
            and any(v is not None for v in t["number"])
        )
    )
)


def as_numpy(table):
    return {
        "number": np.array([np.nan if v is None else v for v in table["number"]]),
        "whole": np.array(table["whole"], dtype=np.int16),
        "class": np.array(table["class"], dtype=object),
        "w": np.array(table["w"], dtype=np.float32),
    }


def as_arrow(table):
    return pa.table(
        {
            "number": pa.array(
                [None if v is None else float(v) for v in table["number"]], pa.float64()
            ),
            "whole": pa.array(table["whole"], pa.int8()),
            "class": pa.array(table["class"], pa.string()),
            "w": pa.array(table["w"], pa.float32()),
        }
    )


def as_pieces(table):
    """In chunks with offsets, one of them empty, with a dictionary that differs by chunk."""
    whole = as_arrow(table)
    pieces = [whole.slice(0, 0)] + [whole.slice(i, 3) for i in range(0, len(whole), 3)]
    coded = [piece.set_column(2, "class", piece["class"].dictionary_encode()) for piece in pieces]
    return pa.Table.from_batches(
        [batch for piece in coded for batch in piece.to_batches()], coded[0].schema
    )


def as_structured(table):
    dtype = [("class", "U5"), ("pad", "u1"), ("number", "f8"), ("whole", "i8"), ("w", "f8")]
    rows = zip(
        [c or "?" for c in table["class"]],
        [0] * len(table["w"]),
        as_numpy(table)["number"],
        table["whole"],
        table["w"],
    )
    return np.array(list(rows), dtype=dtype)


KINDS = {
    "numpy": as_numpy,
    "lists": dict,
    "arrow": as_arrow,
    "pieces": as_pieces,
    "pandas": lambda t: pd.DataFrame(as_numpy(t)),
    "nullable": lambda t: as_arrow(t).to_pandas(types_mapper=pd.ArrowDtype),
    "categories": lambda t: pd.DataFrame(as_numpy(t)).astype({"class": "category"}),
    "polars": lambda t: pl.DataFrame(as_arrow(t)),
    "views": lambda t: pl.DataFrame(as_arrow(t)).lazy().collect(),
    "structured": as_structured,
}


@settings(max_examples=40)
@given(tables)
@pytest.mark.filterwarnings("ignore::mcbinning.BinningWarning")
def test_any_table_as_the_tool_bins_it(tool, table):
    options = {"attributes": ["number", "whole"], "weight": "w"}
    missing = {"whole": [3, (-9, -7)]}
    written = {
        name: [None if v is None else v if isinstance(v, str) else repr(v) for v in values]
        for name, values in table.items()
    }
    expected = tool(
        written, "supervised", "--target", "class", "--attributes", "number,whole", "--weight", "w",
        "--missing", "whole=3,-9:-7",
    )  # fmt: skip
    for name, make in KINDS.items():
        if name == "structured" and None in table["class"]:
            continue
        bins = mb.fit(make(table), "class", missing=missing, **options)
        assert results_of(bins) == expected, name
    assert mb.from_cut_points(
        {r["attribute"]: r["cut_points"] for r in expected}, as_numpy(table)
    ).attributes == ["number", "whole"]


def test_every_type_of_number_is_read():
    numbers = [0, 1, 1, 2, 3, 3, 5, 8, 13, 21]
    n = len(numbers)
    expected = mb.fit_equal_frequency({"a": numbers}, 4)["a"]
    arrow_types = ["int8", "uint8", "int16", "uint16", "int32", "uint32", "int64", "uint64"]
    columns = [pa.array(numbers, t) for t in [*arrow_types, "float", "double"]]
    columns += [
        pa.array(np.array(numbers, dtype=np.float16)),
        pa.array([decimal.Decimal(v) for v in numbers], pa.decimal128(20, 3)),
        pa.array([decimal.Decimal(v) for v in numbers], pa.decimal256(60, 30)),
        pa.array(numbers, pa.duration("ns")),
        pa.array(numbers, pa.time32("s")),
        np.array(numbers, dtype=">i4"),
        np.array(numbers, dtype=np.longdouble),
        np.array(numbers, dtype="m8[D]"),
        np.ma.array([*numbers], mask=[False] * n),
        np.array(numbers)[::-1],
        np.array([[v, -v] for v in numbers])[:, 0],
        pd.array(numbers, dtype="Int32").to_numpy(object),
        pd.Series(numbers, dtype="Int64"),
        pl.Series(numbers),
        pd.Index(numbers),
        pd.array(numbers, dtype="Float64"),
        pd.DatetimeIndex(np.array(numbers, dtype="M8[s]")),
        [decimal.Decimal(v) for v in numbers],
        [fractions.Fraction(v) for v in numbers],
        np.array(numbers, dtype=np.int16).view(np.memmap),
    ]
    for column in columns:
        found = mb.fit_equal_frequency({"a": column}, 4)["a"]
        assert found.cut_points.tolist() == expected.cut_points.tolist(), column
        assert found.weights.tolist() == expected.weights.tolist(), column
    truth = mb.fit_equal_frequency(pa.table({"b": [True, False, None, False] * 5}), 2)["b"]
    assert (truth.weights.tolist(), truth.missing_weight) == ([10, 5], 5)
    gone = np.array([1, "NaT", 3], dtype="m8[s]")
    assert mb.fit_equal_frequency({"t": gone}, 2)["t"].missing_weight == 1
    assert mb.fit_equal_frequency(duckdb.sql("select range as a from range(100)"), 4)[
        "a"
    ].range == (0, 99)
    ordered = pd.Categorical(["b", "a", "c"] * 9, ["c", "a", "b"], ordered=True)
    for column in ordered, pd.Series(ordered), pd.Index(ordered):
        found = mb.fit({"o": column, "y": ["1", "0", "0"] * 9}, "y")
        assert found["o"].categories == ["c", "a", "b"]


A = [1.0, 2.0, 3.0, 4.0]
Y = [0, 1, 0, 1]


@pytest.mark.parametrize(
    ("call", "kind"),
    [
        (lambda: mb.fit({"a": A, "y": [0, 1]}, "y"), mb.InputError),
        (lambda: mb.fit({"a": {1, 2, 3, 4}, "y": Y}, "y"), mb.TableTypeError),
        (lambda: mb.fit({"a": 7j, "y": 1}, "y"), mb.TableTypeError),
        (lambda: mb.fit({"a": pa.array([{"a": 1}] * 4), "y": Y}, "y", attributes=["a"]), TypeError),
        (lambda: mb.fit({"\udcff": A, "y": Y}, "y"), mb.InputError),
        (lambda: mb.fit(np.eye(4), Y, names=[1, 2, 3, 4]), mb.TableTypeError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", missing=[1]), TypeError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", missing={"a": [object()]}), TypeError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", event=[None]), TypeError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", progress="yes"), TypeError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", small_bins="half"), TypeError),
        (lambda: mb.fit_equal_frequency(pd.DataFrame([A, A], columns=list("abca"))), mb.InputError),
        (lambda: mb.fit_equal_frequency(pl.Series(A)), mb.InputError),
        (lambda: mb.from_cut_points([1, 2]), TypeError),
        (lambda: mb.from_cut_points({1: [1]}), TypeError),
        (lambda: mb.from_cut_points({"a": A}).refine(breaks={1: [2]}), TypeError),
        (lambda: mb.from_cut_points({"a": A}).apply({"a": A}, suffix=1), TypeError),
        (lambda: mb.from_cut_points({"a": A}).apply({"a": A}, ["index"]), mb.InputError),
        (lambda: mb.from_cut_points({"a": A}).apply({"a": pa.array([[1]])}), mb.TableTypeError),
        (lambda: mb.from_cut_points({"a": A}).to_sql(missing=1), TypeError),
        (lambda: mb.fit({"a": A, "y": Y}, "z"), mb.UnknownColumnError),
        (lambda: mb.fit({"a": A, "y": Y}, None), mb.TargetError),
        (lambda: mb.fit({"a": A, "y": [1] * 4}, "y"), ValueError),
        (lambda: mb.fit({"a": np.arange(300), "y": np.arange(300)}, "y"), mb.CategoryError),
        (lambda: mb.fit({"a": [1, "x", 2, 3], "y": Y}, "y"), TypeError),
        (lambda: mb.fit({"a": np.array([1j] * 4), "y": Y}, "y"), TypeError),
        (lambda: mb.fit({"a": [b"x"] * 4, "y": Y}, "y"), TypeError),
        (lambda: mb.fit({"a": np.ones((4, 2)), "y": Y}, "y"), ValueError),
        (lambda: mb.fit({"a": [np.inf, 1, 2, 3], "y": Y}, "y"), ValueError),
        (lambda: mb.fit({"a": [10**400, 1, 2, 3], "y": Y}, "y"), ValueError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", weight=[-1, 1, 1, 1]), mb.WeightError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", weight=[0] * 4), mb.WeightError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", prebins=1), ValueError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", event=7), mb.TargetError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", event=[0, 1]), mb.TargetError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", attributes=["y"]), ValueError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", missing={"a": ["x"]}), ValueError),
        (lambda: mb.fit({"a": A, "y": Y}, "y", missing={"a": [(1, 2), (3, 4)]}), ValueError),
        (lambda: mb.fit({1: A, "y": Y}, "y"), TypeError),
        (lambda: mb.fit(pa.table({"a": [], "y": []}), "y"), ValueError),
        (lambda: mb.fit(pa.table({"a": [[1]] * 4, "y": Y}), "y", attributes=["a"]), TypeError),
        (lambda: mb.fit(pa.table([A, A, Y], ["a", "a", "y"]), "y"), ValueError),
        (lambda: mb.fit(7, "y"), TypeError),
        (lambda: mb.fit(np.ones(4), "y"), ValueError),
        (
            lambda: mb.fit({"a": ["\ud800", "x", "y", "z"], "y": Y}, "y", attributes=["a"]),
            ValueError,
        ),
        (lambda: mb.fit_equal_frequency({}, 4), ValueError),
        (lambda: mb.fit_equal_frequency({"a": A}, 2.5), TypeError),
        (lambda: mb.fit_equal_frequency({"a": A}, 2, event="y"), mb.TargetError),
        (
            lambda: mb.fit_equal_frequency({"a": A, "y": Y}, 2, target="y", woe_adjust=2e6),
            ValueError,
        ),
        (lambda: mb.fit_equal_frequency(duckdb.sql("select 1 a, 2 y"), 2, target="y"), ValueError),
        (lambda: mb.fit_equal_frequency({"a": A}, 2, temp_dir="/nowhere/at/all"), mb.RunError),
        (lambda: mb.from_cut_points({"a": [2, 1]}), ValueError),
        (lambda: mb.from_cut_points({"a": A}).refine(objective="iv"), mb.TargetError),
        (lambda: mb.load(__file__), mb.BinFileError),
        (lambda: mb.load("/nowhere"), OSError),
        (lambda: mb.fit_equal_frequency({"a": A}, 2).apply({"b": A}), mb.UnknownColumnError),
        (lambda: mb.fit_equal_frequency({"a": A}, 2).apply({"a": A}, "woe"), mb.TargetError),
        (lambda: mb.fit_equal_frequency({"a": A}, 2).apply({"a": ["x"]}), TypeError),
    ],
)
def test_bad_input_is_refused(call, kind):
    with pytest.raises(kind) as raised:
        call()
    assert str(raised.value)
    assert "incompatible function arguments" not in str(raised.value)


def test_columns_that_are_not_asked_for_may_hold_anything(tmp_path):
    junk = {"z": [object()] * 4, 7: ["x", 1, None, 2], "long": [1] * 9}
    bins = mb.from_cut_points({"a": [2.5]}, {"a": A, "y": Y, **junk}, target="y")
    for table in {"a": A, "y": Y, **junk}, pd.DataFrame({"a": A, "y": Y, 7: Y, "z": junk["z"]}):
        assert bins.apply(table)["a_bin"].tolist() == [0, 0, 1, 1]
        assert bins.evaluate(table).stability_index("a") == 0
        assert mb.fit(table, "y", attributes=["a"])["a"].valid_weight == 4
        with pytest.raises(mb.UnknownColumnError, match=r"the table has 'a', .*'z'"):
            mb.from_cut_points({"b": [1]}).apply(table)
    given = mb.fit({"a": A, "target": A, "weight": A}, Y, weight=np.ones(4, int))
    assert (given.attributes, given.targets) == (["a", "target", "weight"], ["target_"])


def test_what_concerns_one_attribute_is_one_warning():
    table = {"a": A * 9, "none": [None] * 36, "text": list("abcd") * 9, "y": [0, 0, 1, 1] * 9}
    with pytest.warns(mb.BinningWarning) as warned:
        bins = mb.fit(table, "y")
    assert len(warned) == 1
    assert warned[0].filename == __file__
    assert "none" in str(warned[0].message)
    assert (bins["none"].status != "ok", bins["a"].status, bins.left_out) == (True, "ok", ["text"])


def big_table(columns=10, rows=200_000):
    values = np.random.default_rng(7).normal(size=(rows, columns))
    return values, (values[:, 0] > 0.3).astype(int)


def test_progress_is_told_and_an_error_in_it_ends_the_run(tmp_path):
    values, classes = big_table()
    told = []
    mb.fit(values, classes, progress=lambda *done: told.append(done), temp_dir=tmp_path)
    assert told[0][0] == 0
    assert told == sorted(told)

    def fail(done, total):
        raise ZeroDivisionError

    with pytest.raises(ZeroDivisionError):
        mb.fit(values, classes, progress=fail, temp_dir=tmp_path)
    assert list(tmp_path.iterdir()) == []


def test_a_bar_shows_the_progress_where_there_is_one(capsys, monkeypatch):
    pytest.importorskip("tqdm")
    values, classes = big_table(columns=2, rows=2000)
    mb.fit(values, classes, progress=True)
    assert "binning: 100%" in capsys.readouterr().err
    mb.fit_equal_frequency(values, progress=False)
    assert capsys.readouterr().err == ""
    monkeypatch.setitem(sys.modules, "tqdm.auto", None)
    with pytest.raises(mb.InputError, match="needs tqdm"):
        mb.fit(values, classes, progress=True)


def test_ctrl_c_stops_a_run_and_leaves_no_file(tmp_path):
    code = """if True:
        import mcbinning as mb, numpy as np, sys
        values = np.random.default_rng(7).normal(size=(2_000_000, 12))
        classes = (values[:, 0] > 0.3).astype(int)
        def tell(done, total):
            if done == 0:
                print("ready", flush=True)
        try:
            while True:
                mb.fit(
                    values, classes, temp_dir=sys.argv[1], threads=int(sys.argv[2]), progress=tell
                )
        except KeyboardInterrupt:
            print("stopped")
        """
    for threads in "1", "2":
        run = subprocess.Popen(
            [sys.executable, "-c", code, tmp_path, threads], stdout=subprocess.PIPE
        )
        assert run.stdout.readline() == b"ready\n"
        run.send_signal(signal.SIGINT)
        lines = run.communicate(timeout=300)[0].splitlines()
        assert lines[-1] == b"stopped"
        assert list(tmp_path.iterdir()) == []


def test_the_lock_is_released_and_bins_are_shared_by_threads():
    values, classes = big_table(columns=2)
    expected = mb.fit(values, classes)
    found = []
    takers = [
        threading.Thread(
            target=lambda: found.append(expected if len(expected.apply(values)) else 0)
        )
        for _ in range(4)
    ]
    ticks = []

    def make():
        for _ in range(1000):
            found.append(mb.fit(values, classes))
            if ticks:
                return

    makers = [threading.Thread(target=make) for _ in range(4)]
    interval = sys.getswitchinterval()
    sys.setswitchinterval(1e6)  # from now on threads run only when others release the lock
    try:
        for thread in takers + makers:
            thread.start()
        while not ticks:
            ticks = [sum(thread.is_alive() for thread in makers)]
        for thread in takers + makers:
            thread.join()
    finally:
        sys.setswitchinterval(interval)
    assert ticks[0] > 0
    assert len(found) >= 8
    assert all(bins == expected for bins in found)


def test_memory_does_not_grow_with_the_number_of_fits():
    def resident():
        with open("/proc/self/statm") as file:
            return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")

    arrow = pa.table({"a": A * 10, "t": list("abcd") * 10, "y": Y * 10})
    numpy = {"a": np.array(A * 10), "t": list("abcd") * 10, "y": np.array(Y * 10)}
    rounds = int(os.environ.get("MCBINNING_FITS", "400"))

    def work(count):
        for i in range(count):
            bins = mb.fit(numpy if i % 2 else arrow, "y", attributes=["a", "t"])
            pa.table(bins.apply(arrow, "label"))
            bins.summary()
            with pytest.raises(ValueError):
                mb.fit(arrow, "a", prebins=0)

    work(rounds // 4)
    before = resident()
    work(rounds)
    assert resident() - before < 8 << 20

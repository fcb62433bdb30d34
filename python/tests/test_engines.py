"""Bins of tables in engines are those of the same rows in memory, to the bit."""

import json
import os
import signal
import sys
import warnings
import weakref

import duckdb
import numpy as np
import pyarrow as pa
import pytest

import mcbinning as mb
from conftest import EXAMPLES
from enginetables import as_arrow, compare, in_memory
from mcbinning.engines import DuckDbTable, PostgresTable, SparkTable, _duckdb, _spark
from mcbinning.engines._count import Count
from mcbinning.engines._count import ask as ask_counts
from mcbinning.engines._sql import Cases

TABLES = int(os.environ.get("MCBINNING_TABLES", "30"))
SHARES = {"duckdb": 1, "postgresql": 1, "spark": 10}  # what a table takes
FIRST = int(os.environ.get("MCBINNING_FIRST_TABLE", "0"))


def duckdb_tables():
    connection = duckdb.connect(config={"threads": 1})
    yield lambda table: connection.from_arrow(as_arrow(table))


def postgresql_tables():
    psycopg = pytest.importorskip("psycopg", reason="PostgreSQL: psycopg is missing")
    sys.path.append(str(EXAMPLES.parent / "tests" / "cli"))
    from exportengines import Postgresql

    try:
        server = Postgresql()
    except SystemExit:
        pytest.skip("PostgreSQL is missing")
    kinds = {
        "double": "float8",
        "string": "text",
        "date32[day]": "date",
        "bool": "bool",
        "int64": "bigint",
    }
    with (
        server,
        psycopg.connect(host=server.directory, user="mcbin", dbname="postgres") as connection,
    ):

        def make(table):
            arrow = as_arrow(table)
            columns = ", ".join(
                f'"{field.name}" {kinds.get(str(field.type), str(field.type))}'
                for field in arrow.schema
            )
            with connection.cursor() as cursor:
                cursor.execute(f"DROP TABLE IF EXISTS rows; CREATE TEMP TABLE rows ({columns})")
                with cursor.copy("COPY rows FROM STDIN") as copy:
                    for row in zip(*(column.to_pylist() for column in arrow)):
                        copy.write_row(row)
            return PostgresTable(connection, "rows")

        yield make


def spark_tables():
    sql = pytest.importorskip("pyspark.sql", reason="Spark is missing")
    try:
        session = (
            sql.SparkSession.builder.master("local[2]")
            .config("spark.ui.enabled", "false")
            .config("spark.sql.shuffle.partitions", "2")
            .getOrCreate()
        )
    except Exception as error:
        pytest.skip(f"Spark does not start: {error}")
    session.sparkContext.setLogLevel("ERROR")
    partitions = iter([1, 3, 17] * 10_000)
    yield lambda table: session.createDataFrame(as_arrow(table)).repartition(next(partitions))
    session.stop()


ENGINES = {"duckdb": duckdb_tables, "postgresql": postgresql_tables, "spark": spark_tables}


@pytest.fixture(scope="module", params=list(ENGINES))
def make_table(request):
    if request.param != "duckdb" and os.environ.get("CI") != "true":
        pytest.skip(f"{request.param}: runs with CI=true")
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", ResourceWarning)
        yield from ENGINES[request.param]()


def test_random_tables(make_table, request):
    count = TABLES // SHARES[request.node.callspec.params["make_table"]]
    # Many ranges, over all orders of magnitude; a range that is wanted after others were left
    # behind; the ends of doubles, and a largest value, among ranges whose ends are not known.
    odd = [223, 289, 58, 908]
    for seed in [*range(FIRST, FIRST + count), *odd]:
        compare(seed, make_table)


def some_rows(n=400):
    rng = np.random.default_rng(5)
    table = {"a": rng.normal(size=n), "b": np.round(rng.exponential(size=n), 1)}
    table["g"] = [f"t{c}'\\" for c in rng.integers(0, 5, n)]
    table["y"] = ["yes" if a + s > 0.5 else "no" for a, s in zip(table["a"], rng.normal(size=n))]
    table["w"] = rng.integers(0, 4, n).astype(float)
    table["d"] = np.datetime64("2024-01-01") + (100 * table["a"]).astype(int)
    table["a"][::7] = np.nan
    table["b"][::9] = -1.0
    return table


def test_apply_and_evaluate(make_table):
    table = some_rows()
    names = ["a", "b", "g", "d"]
    made = mb.fit(in_memory(table), "y", attributes=names, weight="w", missing={"b": -1})
    other = {name: column[100:] for name, column in table.items()} | {"n": list(range(300))}
    rows = make_table(other)
    for form in "index", "label", "woe":
        applied = made.apply(rows, form, attributes=names)
        found = columns_of(applied)
        order = np.argsort(np.array(found["n"], dtype=float))
        expected = made.apply(in_memory(other), form)
        for name in expected.columns:
            ours = [None if v == -1 else v for v in expected[name].tolist()]
            theirs = [found[name][i] for i in order]
            assert [None if v is None or v != v else v for v in theirs] == ours, (form, name)
    for options in {}, {"unweighted": True}:
        found = made.evaluate(rows, **options)
        expected = made.evaluate(in_memory(other), **options)
        assert found.text == expected.text
        assert json.loads(found.bins.to_json()) == json.loads(expected.bins.to_json())


def test_cut_points_and_empty_tables_are_counted(make_table):
    table = some_rows()
    rows, points = make_table(table), {"a": [-0.5, 0.25], "d": ["2024-01-20"]}
    for options in {}, {"target": "y"}, {"target": "w"}, {"target": "y", "weight": "w"}:
        found = mb.from_cut_points(points, rows, **options)
        assert found == mb.from_cut_points(points, in_memory(table), **options), options
    made = mb.from_cut_points(points, in_memory(table), target="y")
    none = {name: column[:0] for name, column in table.items()}
    found, expected = made.evaluate(make_table(none)), made.evaluate(as_arrow(none))
    assert found.bins == expected.bins
    assert found.text == expected.text
    with pytest.raises(mb.InputError, match="no rows"):
        mb.fit(make_table(none), "w")


class PlainConnection:
    """A connection with what the DB-API asks for, and nothing else."""

    def __init__(self, connection):
        self._connection = connection

    def cursor(self):
        return PlainCursor(self._connection.cursor())


class PlainCursor:
    def __init__(self, cursor):
        self._cursor = cursor
        self.execute, self.fetchall, self.close = cursor.execute, cursor.fetchall, cursor.close

    @property
    def description(self):
        return self._cursor.description


def test_postgresql_through_any_connection_whose_transaction_goes_on(make_table, monkeypatch):
    rows = make_table(table := some_rows())
    if not isinstance(rows, PostgresTable):
        pytest.skip("it is about PostgreSQL")
    connection = rows._connection
    expected = mb.fit(in_memory(table), "y", attributes=["a"])
    connection.execute('CREATE TEMP TABLE "my "".t" AS SELECT * FROM rows')
    for name in " pg_temp . rows\n", 'pg_temp."my "".t"', "SELECT * FROM rows -- all of them":
        for failing in "nothing", "SELECT 1/(w-w) AS a, y FROM rows":
            with pytest.raises(Exception, match=r"does not exist|by zero"):
                mb.fit(PostgresTable(connection, failing), "y", attributes=["a"])
        assert mb.fit(PostgresTable(connection, name), "y", attributes=["a"]) == expected, name
    plain = PostgresTable(PlainConnection(connection), "rows")
    assert mb.fit(plain, "y", attributes=["a"]) == expected
    assert repr(plain) == "<PostgresTable: a, b, g, y, w, d>"
    monkeypatch.setattr(connection, "row_factory", sys.modules["psycopg"].rows.dict_row)
    assert mb.fit(rows, "y", attributes=["a"]) == expected


def test_a_session_whose_queries_take_no_data_frames(make_table, monkeypatch):
    rows = make_table(table := some_rows())
    if not hasattr(rows, "sparkSession"):
        pytest.skip("it is about Spark")
    monkeypatch.setattr(_spark, "_takes_frames", lambda session: False)
    catalog = rows.sparkSession.catalog
    made = mb.fit(rows, "y", attributes=["a", "g"], weight="w", distinct=True)
    assert made == mb.fit(in_memory(table), "y", attributes=["a", "g"], weight="w")
    assert not [view for view in catalog.listTables() if view.name.startswith("mcbinning_")]
    found = columns_of(made.apply(rows, attributes=["a"]))["a_bin"]
    views = [view.name for view in catalog.listTables() if view.name.startswith("mcbinning_")]
    assert all(catalog.dropTempView(view) for view in views)
    expected = made.apply(in_memory(table), attributes=["a"])["a_bin"].tolist()
    assert sorted(-1 if one is None else one for one in found) == sorted(expected)


def columns_of(table):
    """The rows of an engine's table, as lists by name."""
    if isinstance(table, PostgresTable):
        with table._connection.cursor() as cursor:
            rows = cursor.execute(table.query).fetchall()
        return dict(zip([c.name for c in table.columns], zip(*rows)))
    if hasattr(table, "collect"):
        return {name: [row[name] for row in table.collect()] for name in table.columns}
    return dict(zip(table.columns, zip(*table.fetchall())))


def test_spark_reads_rows_once_for_many_attributes_and_keeps_them_cached(make_table, monkeypatch):
    rng = np.random.default_rng(3)
    n = 2000
    names = ["a", *(f"x{i}" for i in range(1, 18))]
    table = {x: 0 + np.round(rng.normal(size=n) ** (1 + i % 3), i % 7) for i, x in enumerate(names)}
    table["x4"][rng.random(n) < 0.3] = np.nan
    table["y"] = [f"c{c}" for c in rng.integers(0, 3, n)]
    table["z"] = rng.integers(0, 2, n).astype(float)
    table["w"] = rng.integers(0, 50, n).astype(float)
    rows = make_table(table)
    if not hasattr(rows, "sparkSession"):
        pytest.skip("of Spark")
    for name, value in ("most_ranges", 256), ("most_values", 300), ("most_alone", 0):
        monkeypatch.setattr(SparkTable, name, value)
    rows.cache()
    options = {"attributes": names, "prebins": 20, "prebin_above": 50, "distinct": True}
    asked = []
    ask = SparkTable.ask

    def count_asked(self, queries):
        asked.append(sum("GROUP BY" in query for query in queries))
        return ask(self, queries)

    monkeypatch.setattr(SparkTable, "ask", count_asked)
    found = mb.fit(rows, ["y", "z"], weight="w", **options)
    assert found == mb.fit(in_memory(table), ["y", "z"], weight="w", **options)
    assert max(asked) <= 6, "16 attributes of a target together, packed or not"
    options = {"bins": 20, "attributes": names, "distinct": True}
    found = mb.fit_equal_frequency(rows, **options)
    assert found == mb.fit_equal_frequency(in_memory(table), **options)
    assert rows.storageLevel.useMemory

    # What is cut off is asked for again, attribute by attribute.
    cases = [Cases(f"CAST({name} AS DOUBLE)", "0", "1", "1 = 1", False) for name in ("x3", "z")]
    answers = ask_counts(SparkTable(rows), [Count(one, (), "value", limit=5) for one in cases])
    assert [len(answer["n"]) for answer in answers] == [6, 2]
    rows.unpersist()


def test_every_type_is_read_as_in_memory(make_table):
    n = 60
    rng = np.random.default_rng(2)
    numbers = rng.integers(0, 2**62, n)
    table = pa.table(
        {
            "whole": pa.array(numbers),
            "day": pa.array(rng.integers(-9999, 9999, n).astype(np.int32)).cast(pa.date32()),
            "truth": pa.array((numbers % 3 == 0).tolist()),
            "y": pa.array((numbers % 2).astype(float)),
        }
    )
    if "duckdb" in str(type(make_table(table))).lower():
        extra = {
            "exact": "CAST(whole AS DECIMAL(38, 18)) / 7",
            "short": "CAST(y AS DECIMAL(9, 3)) / 8",
            "moment": "make_timestamp(whole // 10000)",
            "time": "CAST(make_timestamp(whole // 10000) AS TIME)",
            "real": "CAST(whole AS FLOAT)",
        }
        rows = make_table(table).project(
            "*, " + ", ".join(f"CAST({text} AS {kind}) AS {name}" for name, text, kind in [
                ("exact", extra["exact"], "DECIMAL(38, 18)"),
                ("short", extra["short"], "DECIMAL(9, 6)"),
                ("moment", extra["moment"], "TIMESTAMP"),
                ("time", extra["time"], "TIME"),
                ("real", extra["real"], "FLOAT"),
            ])
        )  # fmt: skip
        table = rows.to_arrow_table()
    else:
        rows = make_table(table)
    options = {"target": "y", "prebins": 5, "prebin_above": 10}
    found = json.loads(mb.fit(rows, **options, distinct=True).to_json())
    assert found == json.loads(mb.fit(table, **options).to_json())


def select(rows, what):
    """Make a table of an engine of some expressions, by the name of the engine."""
    if isinstance(rows, PostgresTable):
        return PostgresTable(rows._connection, f"SELECT {what['postgresql']} FROM rows")
    if not hasattr(rows, "project"):
        pytest.skip("Spark has no such columns")
    return rows.project(what["duckdb"])


def test_texts_are_the_same_only_letter_by_letter(make_table):
    n = 120
    texts = ["A", "a", "b", "\N{LATIN SMALL LETTER A WITH ACUTE}"]
    table = {"a": np.arange(n) + 0.5, "y": [texts[i // 30] for i in range(n)]}
    table["g"] = [("u", "v", "V")[i // 40] for i in range(n)]
    rows = make_table(table)
    if isinstance(rows, PostgresTable):
        rows._connection.execute(
            "CREATE COLLATION IF NOT EXISTS pg_temp.loose "
            "(provider = icu, locale = 'und-u-ks-level1', deterministic = false)"
        )
    duckdb_text, other_text = (
        "{0} COLLATE NOCASE.NOACCENT AS {0}",
        "{0} COLLATE pg_temp.loose AS {0}",
    )
    loose = {"duckdb": duckdb_text, "postgresql": other_text}
    rows = select(rows, {k: "a, " + ", ".join(map(t.format, "yg")) for k, t in loose.items()})
    made = mb.fit(rows, "y", attributes=["a", "g"])
    assert made == mb.fit(in_memory(table), "y", attributes=["a", "g"])
    other = dict(table, g=["u", "U", "V", None] * 30)
    rows = select(make_table(other), {k: "a, " + t.format("g") for k, t in loose.items()})
    found = columns_of(made.apply(rows, attributes=["g"]))
    order = np.argsort(found["a"])
    with pytest.warns(mb.BinningWarning, match="30 unknown"):
        expected = made.apply(in_memory(other), attributes=["g"])["g_bin"].tolist()
    assert [-1 if found["g_bin"][i] is None else found["g_bin"][i] for i in order] == expected


@pytest.mark.parametrize("small", [(1e-300, 2e-300), (5e-324, 1e-323)])
@pytest.mark.parametrize("sign", [1, -1])
def test_values_next_to_zero_and_near_the_largest_share_a_range(
    make_table, small, sign, monkeypatch
):
    table = {"a": sign * np.r_[small, 1e300 * (1 + np.arange(997) * 1e-6)]}
    table["y"] = (np.arange(999) % 7 < 3).astype(float)
    rows = make_table(table)
    for engine in DuckDbTable, PostgresTable, SparkTable:
        monkeypatch.setattr(engine, "most_ranges", 16)
        monkeypatch.setattr(engine, "most_values", 20)
    assert mb.fit_equal_frequency(rows, 7, attributes=["a"], distinct=True) == (
        mb.fit_equal_frequency(table, 7, attributes=["a"])
    )


@pytest.mark.parametrize("below", [20, 40])
def test_a_percentile_ends_beside_a_range_that_was_left_behind(make_table, below, monkeypatch):
    a = np.r_[-1 - np.arange(below) / 60, 1 + np.arange(60 - below) / 60]
    table = {"a": a, "y": np.arange(60) % 2.0}
    for engine in DuckDbTable, PostgresTable, SparkTable:
        monkeypatch.setattr(engine, "most_ranges", 16)
        monkeypatch.setattr(engine, "most_values", 20)
        monkeypatch.setattr(engine, "packs", True)
    monkeypatch.setattr(SparkTable, "most_alone", 0)
    for prebins in 3, 4, 6:
        options = {"attributes": ["a"], "prebin_above": 3, "prebins": prebins, "distinct": True}
        found = mb.fit(make_table(table), "y", **options)
        assert found == mb.fit(in_memory(table), "y", **options), prebins


def test_numbers_of_any_size_are_the_nearest_doubles(make_table):
    rows = make_table({"a": np.arange(6.0)})
    texts = [
        "1e-400",
        "-1e-400",
        "2.4703282292062328e-324",
        "1.7976931348623158e308",
        "-4.5",
        "NaN",
    ]
    values = " ".join(f"WHEN {i} THEN numeric '{text}'" for i, text in enumerate(texts))
    if isinstance(rows, PostgresTable):
        connection = rows._connection
        rows = PostgresTable(connection, f"SELECT CASE a {values} END AS a FROM rows")
        expected = {"a": np.array([0, 0, 5e-324, float(texts[3]), -4.5, np.nan])}
        assert mb.fit_equal_frequency(rows, 3) == mb.fit_equal_frequency(expected, 3)
        for infinite in "1.79769313486231581e308", "-1e400":
            rows = PostgresTable(connection, f"SELECT numeric '{infinite}' AS a FROM rows")
            with pytest.raises(mb.InputError, match="infinite number"):
                mb.fit_equal_frequency(rows, 3)


@pytest.mark.parametrize("kind", ["DATE", "TIMESTAMP", "TIMESTAMP WITH TIME ZONE"])
@pytest.mark.parametrize("text", ["infinity", "-infinity"])
def test_infinite_times_are_refused(make_table, kind, text):
    rows = make_table({"a": np.arange(9.0)})
    what = (
        f"CASE WHEN a < 5 THEN CAST('{text}' AS {kind}) ELSE CAST('2020-01-01' AS {kind}) END AS t"
    )
    rows = select(rows, {"duckdb": what, "postgresql": what})
    with pytest.raises(mb.InputError, match="infinite number in column 't'"):
        mb.fit_equal_frequency(rows, 2)


def test_spark_queries_mean_the_same_in_every_session():
    written = [
        ("SELECT v FROM mcbinning_rows AS q", "SELECT v FROM {rows} AS q"),
        ("'it is FROM mcbinning_rows'", "'it is FROM mcbinning_rows'"),
        ("`mcbinning_rows` FROM `mcbinning_rows` AS t", "`mcbinning_rows` FROM {rows} AS t"),
        (r"'a\'b', 'c\\d'", "CAST(X'612762' AS STRING), CAST(X'635c64' AS STRING)"),
        ("'${env:HOME}'", "CAST(X'247b656e763a484f4d457d' AS STRING)"),
        (r"'\u0001\\u0041'", "CAST(X'015c7530303431' AS STRING)"),
        ("'{x}' `{y}``'z`", "'{{x}}' `{{y}}``'z`"),
        ("`${x}` 'y'", "`\ue024{{x}}` 'y'"),
    ]
    assert [_spark.write_query(query) for query, _ in written] == [text for _, text in written]


ODD = ["mcbinning_rows", "c\\d", "it's", "${env:HOME}", "{rows}\n\x01", "`FROM mcbinning_rows"]


def test_odd_texts_and_names(make_table):
    n = 240
    numbers = np.random.default_rng(3).normal(size=n)
    table = {name: numbers + i for i, name in enumerate(ODD)}
    table["y ${y}"] = [ODD[(i // 7) % 6] for i in range(n)]
    table["g'\\$"] = [ODD[(i // 11) % 5] for i in range(n)]
    table["a"] = np.arange(n)
    expected = mb.fit(in_memory(table), "y ${y}", attributes=[*ODD, "g'\\$"])
    rows = make_table(table)
    session = getattr(rows, "sparkSession", None)
    for escaped in ("true", "false") if session else ("",):
        if session:
            session.conf.set("spark.sql.parser.escapedStringLiterals", escaped)
        assert mb.fit(rows, "y ${y}", attributes=[*ODD, "g'\\$"]) == expected
        found = columns_of(expected.apply(rows, attributes=["g'\\$", "${env:HOME}"]))
        theirs = expected.apply(in_memory(table))
        for name in "g'\\$_bin", "${env:HOME}_bin":
            ours = dict(zip(found["a"], found[name]))
            assert [ours[i] for i in range(n)] == theirs[name].tolist()


def test_names_that_the_engine_would_cut_off_are_refused(make_table):
    name = "a" * 61 + "\N{LATIN SMALL LETTER A WITH ACUTE}"
    table = {name: np.arange(30.0), name[:59]: np.arange(30.0)}
    bins, rows = mb.from_cut_points({column: [7.0] for column in table}), make_table(table)
    applied = bins.apply(rows, attributes=[name[:59]])
    assert sum(columns_of(applied)[name[:59] + "_bin"]) == 22
    if isinstance(rows, PostgresTable):
        with pytest.raises(mb.InputError, match="more than the 63 bytes"):
            bins.apply(rows)
    else:
        assert sum(columns_of(bins.apply(rows))[name + "_bin"]) == 22


def test_names_that_the_engine_takes_for_one_are_refused():
    connection = duckdb.connect()
    rows = connection.sql(
        'SELECT i AS x, i + 1 AS "X", i % 2 AS y, 7 AS Z_BIN, i AS z FROM range(9) t(i)'
    )
    one = rows.project("x, y, z, Z_BIN")
    bins = mb.from_cut_points({"x": [3.0], "z": [5.0]})
    texts = connection.sql("SELECT i AS z, CAST(i AS VARCHAR) AS x FROM range(9) t(i)")
    refused = [
        (lambda: mb.fit(rows, "y"), mb.InputError, "'x' and 'X' differ in case"),
        (lambda: mb.fit(rows, "y", weight="x", attributes=["z"]), mb.InputError, "differ in case"),
        (lambda: bins.apply(rows, attributes=["z"], suffix="_"), mb.InputError, "differ in case"),
        (lambda: bins.evaluate(rows), mb.InputError, "differ in case"),
        (lambda: bins.apply(one), mb.InputError, "there is a column 'z_bin' already"),
        (
            lambda: bins.apply(texts),
            mb.TableTypeError,
            "'x' is of VARCHAR, the bins are of numbers",
        ),
        (lambda: bins.evaluate(texts), mb.TableTypeError, "the bins are of numbers"),
    ]
    for call, kind, text in refused:
        with pytest.raises(kind, match=text):
            call()
    assert mb.fit(rows, "y", attributes=["z"])["z"].name == "z", "others do not matter"


def test_values_over_all_orders_of_magnitude_take_few_rounds(monkeypatch):
    rng = np.random.default_rng(8)
    n = 200_000
    wide = rng.choice([-1.0, 1.0], n) * 10.0 ** rng.uniform(-300, 300, n)
    table = {"wide": wide, "narrow": 1 + 1e-9 * rng.normal(size=n), "y": (wide > 1).astype(float)}
    asked = []
    ask = _duckdb.DuckDbTable._ask
    monkeypatch.setattr(
        _duckdb.DuckDbTable, "_ask", lambda self, q: asked.append(q) or ask(self, q)
    )
    rows = next(duckdb_tables())(table)
    told = []
    for fit, options in (mb.fit, {"target": "y"}), (mb.fit_equal_frequency, {"bins": 500}):
        asked.clear()
        found = fit(rows, attributes=["wide", "narrow"], distinct=True, **options)
        assert len(asked) <= 12, "of two attributes, with one for the weights and the classes each"
        assert found == fit(table, attributes=["wide", "narrow"], **options)
        told.clear()
        fit(rows, progress=lambda *done: told.append(done), **options)
        assert len(told) >= 3, "after every round"
        assert told[-1][0] == told[-1][1] == max(told)[1]


def test_bad_input_is_refused_before_anything_is_counted(monkeypatch):
    asked = []
    ask = _duckdb.DuckDbTable._ask
    monkeypatch.setattr(
        _duckdb.DuckDbTable, "_ask", lambda self, q: asked.append(q) or ask(self, q)
    )
    n = 300
    columns = {
        "a": np.arange(n, dtype=float),
        "one": np.ones(n),
        "many": np.arange(n, dtype=float),
        "t": [f"t{i}" for i in range(n)],
        "y": np.arange(n) % 2.0,
        "bad": np.full(n, -1.0),
        "none": np.zeros(n),
        "heavy": np.full(n, 2.0**50),
        "heaviest": np.full(n, 1e308),
        "inf": np.full(n, np.inf),
    }
    arrow = as_arrow(columns).append_column("list", pa.array([[1]] * n))
    rows = duckdb.connect().from_arrow(arrow)
    cases = [
        ({"target": "z"}, mb.UnknownColumnError),
        ({"target": "one"}, ValueError),
        ({"target": "many"}, ValueError),
        ({"target": "y", "attributes": ["t"]}, ValueError),
        ({"target": "y", "attributes": ["list"]}, TypeError),
        ({"target": "y", "attributes": ["y"]}, ValueError),
        ({"target": np.zeros(n)}, TypeError),
        ({"target": "y", "weight": np.zeros(n)}, TypeError),
        ({"target": "y", "weight": "t"}, TypeError),
        ({"target": "y", "weight": "bad"}, mb.WeightError),
        ({"target": "y", "weight": "none"}, mb.WeightError),
        ({"target": "y", "weight": "heavy"}, mb.WeightError),
        ({"target": "y", "weight": "heaviest"}, mb.WeightError),
        ({"target": "y", "event": 7}, mb.TargetError),
        ({"target": "y", "missing": {"a": ["x"]}}, ValueError),
        ({"target": "y", "attributes": ["inf"]}, mb.InputError),
    ]
    for arguments, kind in cases:
        asked.clear()
        with pytest.raises(kind) as raised:
            mb.fit(rows, **arguments)
        assert str(raised.value)
        assert not any("GROUP BY" in q for q in asked) or "infinite" in str(raised.value)
    bins = mb.fit_equal_frequency(rows, 4, attributes=["a"])
    with pytest.raises(mb.InputError):
        bins.apply(rows, "interval")
    with pytest.raises(mb.InputError):
        bins.apply(rows, attributes=["a"], suffix="")
    with pytest.raises(mb.UnknownColumnError):
        bins.apply(rows.project("y"))
    with pytest.raises(mb.UnknownColumnError):
        bins.evaluate(rows.project("y"))


def test_all_values_are_collected_but_for_the_inside_of_runs(monkeypatch):
    rows = next(duckdb_tables())(rare := rare_events())
    answered = []
    ask = _duckdb.DuckDbTable._ask

    def count_rows(self, query):
        answer = ask(self, query)
        answered.append(len(next(iter(answer.values()))))
        return answer

    monkeypatch.setattr(_duckdb.DuckDbTable, "_ask", count_rows)
    monkeypatch.setattr(_duckdb.DuckDbTable, "most_ranges", 4096)
    monkeypatch.setattr(_duckdb.DuckDbTable, "most_values", 4096)
    for closed in "right", "left":
        options = {"target": "y", "prebin_above": 0, "closed": closed}
        found = mb.fit(rows, **options, most_values=40_000)
        assert found == mb.fit(rare, **options)
        assert len(found["a"].cut_points) > 0
        assert max(answered) < 40_000
    for prebin_above in 0, 300_000:
        with pytest.raises(mb.InputError, match=r"more than 5,000 .* 200,000 rows.*most_values="):
            mb.fit(rows, "y", prebin_above=prebin_above, most_values=5_000)
        assert max(answered) < 100_000
    assert mb.fit(rows, "y", prebin_above=199_999, most_values=500_000)["a"].code == 0


def test_packed_counts_are_small_and_give_the_same_bits(monkeypatch):
    rng = np.random.default_rng(6)
    n = 60_000
    table = {
        "normal": rng.normal(size=n),
        "heavy": np.where(rng.random(n) < 0.3, 1.25, rng.normal(size=n)),
        "wide": rng.choice([-1.0, 1.0], n) * 10.0 ** rng.uniform(-300, 300, n),
        "near": rng.exponential(size=n) ** 6,
        "below": -(2.0**0.5) - rng.integers(0, 9000, n) * 2.0**-52,
        "ages": rng.integers(0, 90, n).astype(float),
    }
    attributes = list(table)
    table["y"] = (rng.random(n) < 0.4).astype(float)
    table["w"] = rng.integers(1, 2000, n).astype(float)
    for name, value in ("most_ranges", 4096), ("most_values", 2048), ("packs", True):
        monkeypatch.setattr(DuckDbTable, name, value)
    answered = []
    ask = _duckdb.DuckDbTable._ask

    def count_numbers(self, query):
        answer = ask(self, query)
        answered.append(sum(map(len, answer.values())))
        return answer

    monkeypatch.setattr(_duckdb.DuckDbTable, "_ask", count_numbers)
    rows = next(duckdb_tables())(table)
    for fit, options in (
        (mb.fit, {"target": "y", "prebins": 200}),
        (mb.fit_equal_frequency, {"bins": 200, "weight": "w"}),
    ):
        found = fit(rows, attributes=attributes, distinct=True, **options)
        assert found == fit(table, attributes=attributes, **options)
    answered.clear()
    mb.fit(rows, "y", attributes=["normal"], prebins=200)
    assert sum(answered) < 25_000, "a third of what ranges with their ends take"


def test_answers_of_one_attribute_are_held_at_a_time(monkeypatch):
    held = []
    ask = _duckdb.DuckDbTable._ask

    def count_held(self, query):
        assert sum(one() is not None for one in held) <= 1
        answer = ask(self, query)
        held.append(weakref.ref(next(iter(answer.values()))))
        return answer

    monkeypatch.setattr(_duckdb.DuckDbTable, "_ask", count_held)
    rng = np.random.default_rng(1)
    table = {name: rng.normal(size=5000) for name in "abcdef"} | {"y": np.arange(5000) % 2.0}
    told = []
    mb.fit(next(duckdb_tables())(table), "y", distinct=True, progress=lambda *d: told.append(d))
    assert len(told) == len(held) - 2 + 1, "before every query but those for weights and classes"


def rare_events():
    """A hundred rows of one class among 200,000 of the other, all values different."""
    rng = np.random.default_rng(4)
    n = 200_000
    y = np.zeros(n)
    y[rng.choice(n // 3, 100, replace=False)] = 1
    return {"a": np.arange(n) + 0.5, "y": y}


def test_ctrl_c_stops_the_engine(monkeypatch):
    connection = duckdb.connect()
    rows = connection.sql("select random() as a, random() < 0.5 as y from range(1000000000000)")
    run_with = _duckdb.run_with

    def press(cancel, run):
        return run_with(cancel, lambda: os.kill(os.getpid(), signal.SIGINT) or run())

    monkeypatch.setattr(_duckdb, "run_with", press)
    with pytest.raises(KeyboardInterrupt):
        mb.fit(rows, "y")
    assert connection.sql("select 1").fetchall() == [(1,)]


def test_rows_that_change_between_rounds_are_noticed():
    rows = duckdb.connect().sql("select random() as a, random() < 0.5 as y from range(300000)")
    with pytest.raises(mb.RunError, match="changed"):
        mb.fit(rows, "y")


def test_a_class_that_appears_between_rounds_is_noticed(monkeypatch):
    connection = duckdb.connect()
    connection.sql("create table t as select range as a, range % 2 as y from range(1000)")
    ask = DuckDbTable.ask

    def change(engine, queries):
        answers = ask(engine, queries)
        if "category" in answers[0]:
            connection.sql("update t set y = 2 where a < 300")
        return answers

    monkeypatch.setattr(DuckDbTable, "ask", change)
    with pytest.raises(mb.RunError, match="changed"):
        mb.fit(connection.table("t"), "y", attributes=["a"])

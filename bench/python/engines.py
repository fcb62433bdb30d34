"""Times bins of engines' tables. Usage: engines.py duckdb|parquet|spark [ROWS [COLUMNS]]

duckdb: a column in memory, against quantile_disc of the same percentiles. parquet: a file, with
memory_limit 1GB, and the memory that was taken. spark: a cached data frame in local[2] with 4 GB,
against QuantileDiscretizer, and the bytes that were shuffled.
"""

import json
import os
import sys
import tempfile
import threading
import time
import urllib.request

import mcbinning as mb


def timed(name, call):
    wall, cpu = time.time(), time.process_time()
    answer = call()
    print(f"{name}: {time.time() - wall:.1f} s, processor {time.process_time() - cpu:.1f} s")
    return answer


def bench_duckdb(rows, columns):
    import duckdb

    connection = duckdb.connect(config={"threads": 2})
    connection.execute(
        f"create table t as select random() + random() + random() as a, random() < 0.3 as y "
        f"from range({rows})"
    )
    table = connection.table("t")
    timed("equal frequency, 1,000 bins", lambda: mb.fit_equal_frequency(table.project("a"), 1000))
    timed("supervised, 1,000 pre-bins", lambda: mb.fit(table, "y"))
    shares = [k / 1000 for k in range(1, 1000)]
    query = f"select quantile_disc(a, {shares}) from t"
    timed("quantile_disc, 999 quantiles", lambda: connection.execute(query).fetchall())


def bench_parquet(rows, columns):
    import duckdb

    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "rows.parquet")
        values = ", ".join(f"random() + random() as x{i}" for i in range(columns))
        limits = {"threads": 2, "memory_limit": "1GB", "temp_directory": folder}
        connection = duckdb.connect(config=limits)
        connection.execute(
            f"copy (select {values}, random() < 0.3 as y from range({rows})) to '{path}'"
        )
        del connection  # what writing took is not counted below
        with open("/proc/self/clear_refs", "w") as peak:
            peak.write("5")
        connection = duckdb.connect(config=limits)
        watch = watched(connection.cursor())
        table = connection.read_parquet(path)
        timed(f"supervised, {columns} columns", lambda: mb.fit(table, "y"))
        print("largest: {} MiB, without what DuckDB counts as its own {} MiB".format(*watch()))


def resident(key):
    """A line of /proc/self/status in MiB: VmRSS now, VmHWM at most."""
    with open("/proc/self/status") as status:
        [line] = [line for line in status if line.startswith(key)]
    return int(line.split()[1]) >> 10


def watched(cursor):
    """Watch memory; the function that is returned ends that, and tells what was most."""
    without, done = [0], threading.Event()

    def watch():
        while not done.wait(0.2):
            query = "select coalesce(sum(memory_usage_bytes), 0) from duckdb_memory()"
            used = cursor.execute(query).fetchone()[0] >> 20
            without[0] = max(without[0], resident("VmRSS") - used)

    thread = threading.Thread(target=watch)
    thread.start()

    def end():
        done.set()
        thread.join()
        return resident("VmHWM"), without[0]

    return end


def shuffled(session):
    """The bytes that all stages so far have written for others."""
    root = f"{session.sparkContext.uiWebUrl}/api/v1/applications"
    with urllib.request.urlopen(f"{root}/{session.sparkContext.applicationId}/stages") as answer:
        return sum(stage["shuffleWriteBytes"] for stage in json.load(answer))


def bench_spark(rows, columns):
    from pyspark.ml.feature import QuantileDiscretizer
    from pyspark.sql import SparkSession

    # Beside 10,000,000 x 10 cached, the 1 GB that Spark takes by itself leaves nothing to count in.
    builder = SparkSession.builder.master("local[2]").config("spark.driver.memory", "4g")
    session = builder.getOrCreate()
    session.sparkContext.setLogLevel("ERROR")
    values = [f"randn({i}) as x{i}" for i in range(columns)]
    frame = session.range(rows).selectExpr(*values, "rand(99) < 0.3 as y").cache()
    frame.count()
    names = [f"x{i}" for i in range(columns)]
    approximate = QuantileDiscretizer(
        numBuckets=1000, relativeError=1e-4, inputCols=names, outputCols=[f"{n}_bin" for n in names]
    )
    for name, call in (
        ("QuantileDiscretizer, 1e-4", lambda: approximate.fit(frame)),
        ("equal frequency, 1,000", lambda: mb.fit_equal_frequency(frame, 1000, attributes=names)),
        ("supervised, 1,000 pre-bins", lambda: mb.fit(frame, "y")),
        ("equal frequency, 10 bins", lambda: mb.fit_equal_frequency(frame, 10, attributes=names)),
        ("QuantileDiscretizer again", lambda: approximate.fit(frame)),
    ):
        before = shuffled(session)
        timed(name, call)
        print(f"shuffled: {(shuffled(session) - before) / (rows * columns * 8):.2%} of the values")


kind, *sizes = sys.argv[1:]
benches = {"duckdb": bench_duckdb, "parquet": bench_parquet, "spark": bench_spark}
benches[kind](*map(int, [*sizes, *["20000000", "5"][len(sizes) :]]))

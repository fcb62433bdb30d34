"""Exact bins of rows that DuckDB holds: it counts, and no row leaves it."""

import duckdb

import mcbinning as mb

connection = duckdb.connect()
connection.execute(
    "create table customers as "
    "select range % 60 + 18 as age, range % 60 between 12 and 27 as buys from range(100000)"
)

# begin docs
customers = connection.table("customers")  # or duckdb.read_parquet("customers/*.parquet")
bins = mb.fit(customers, target="buys")
print(bins.summary())

binned = bins.apply(customers, as_="label")  # a relation: nothing is computed yet
print(binned.aggregate("age_bin, count(*)").order("age_bin").fetchall())
print(bins.evaluate(customers).stability_index("age"))
# end docs

assert list(bins["age"].cut_points) == [29, 45]

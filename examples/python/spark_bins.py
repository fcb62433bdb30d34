"""Exact bins of a data frame of Spark: it counts, and no row leaves the cluster."""

from pyspark.sql import SparkSession

import mcbinning as mb

spark = SparkSession.builder.master("local[2]").config("spark.ui.enabled", "false").getOrCreate()
customers = spark.range(100_000).selectExpr(
    "id % 60 + 18 as age", "id % 60 between 12 and 27 as buys"
)

# begin docs
bins = mb.fit(customers, target="buys")
print(bins.summary())

binned = bins.apply(customers, as_="label")  # a data frame: nothing is computed yet
print(sorted(map(tuple, binned.groupBy("age_bin").count().collect())))
print(bins.evaluate(customers).stability_index("age"))
# end docs

assert list(bins["age"].cut_points) == [29, 45]

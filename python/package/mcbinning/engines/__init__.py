"""Exact bins of tables that query engines hold: DuckDB, Spark and PostgreSQL.

`mcbinning.fit`, `fit_equal_frequency`, `Bins.apply` and `Bins.evaluate` take a relation of DuckDB,
a data frame of Spark, or a `PostgresTable` as they take a data frame in memory. The engine counts,
and only counts leave it: no row does, and nothing is sorted. The bins are those that the same rows
have on one machine, to the bit.
"""

from __future__ import annotations

from ._duckdb import DuckDbTable
from ._postgresql import PostgresTable
from ._spark import SparkTable
from ._sql import Engine

__all__ = ["DuckDbTable", "PostgresTable", "SparkTable", "find_engine"]


def find_engine(table: object) -> Engine | None:
    """Get the engine of a table; None for a table in memory."""
    if isinstance(table, (DuckDbTable, PostgresTable)):
        return table
    for cls in type(table).__mro__:
        if cls.__name__ == "DuckDBPyRelation":
            return DuckDbTable(table)
        if cls.__name__ == "DataFrame" and cls.__module__.startswith("pyspark.sql."):
            return SparkTable(table)
    return None

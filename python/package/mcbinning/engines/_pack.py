"""Counts of many ranges in one number: what engines hand from machine to machine is small so."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np

from ._sql import Answer, Array, Dialect

# Of a whole number of 64 bits, so that sums of it stay below its largest.
_BITS = 62

# So many numbers stand beside one another for a group: more make less of its key, and more work.
_NUMBERS = 4


@dataclass(frozen=True)
class Packing:
    """How the weights of ranges and classes are put into whole numbers.

    A group has the ranges of a class that follow one another: a number of it has as many as fit.

    Attributes
    ----------
    classes : int
        How many codes there are.
    bits : int
        Of the largest weight that a range can have.
    """

    classes: int
    bits: int

    @property
    def each(self) -> int:
        """How many ranges a number has."""
        return _BITS // self.bits

    @property
    def width(self) -> int:
        """How many ranges a group has."""
        return _NUMBERS * self.each

    def count(self, dialect: Dialect, query: str, is_weighted: bool) -> str:
        """Ask for the weight of every range and class, but not for its ends."""
        weight = "CAST(w AS BIGINT)" if is_weighted else "CAST(1 AS BIGINT)"
        part = dialect.shift.format(weight, f"{self.bits} * (r % {self.width} % {self.each})")
        sums = ", ".join(
            f"CAST(COALESCE(SUM(CASE WHEN s >= {i * self.each} AND s < {(i + 1) * self.each} "
            f"THEN x END), 0) AS BIGINT) AS s{i}"
            for i in range(_NUMBERS)
        )
        return (
            f"SELECT k, {sums} FROM (SELECT (r - r % {self.width}) * {self.classes} + c AS k, "
            f"r % {self.width} AS s, {part} AS x FROM ({query}) AS q) AS q GROUP BY k"
        )

    def read(self, answer: Answer) -> tuple[Array, Array]:
        """Read an answer.

        Returns
        -------
        ranges : numpy.ndarray of shape (n,)
            Ascending, those that have a weight.
        weights : numpy.ndarray of shape (n, classes)
        """
        group = self.width * self.classes
        keys = answer["k"].astype(np.int64)
        first, codes = keys // group * self.width, keys % group
        numbers = np.stack([answer[f"s{i}"].astype(np.int64) for i in range(_NUMBERS)], axis=1)
        shifts = self.bits * np.arange(self.each)
        parts = (numbers[:, :, np.newaxis] >> shifts) & ((1 << self.bits) - 1)
        places = first[:, np.newaxis] + np.arange(self.width)
        ranges, place = np.unique(places, return_inverse=True)
        weights = np.zeros((len(ranges), self.classes))
        codes_of = np.repeat(codes, self.width)
        np.add.at(weights, (place.reshape(-1), codes_of), parts.reshape(-1).astype(np.float64))
        kept = weights.any(axis=1)
        return ranges[kept], weights[kept]

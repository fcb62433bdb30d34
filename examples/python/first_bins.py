"""Bins of sixty customers: made, looked at, applied to others, kept."""

import tempfile
from pathlib import Path

import numpy as np

import mcbinning as mb

# begin readme
age = np.arange(18.0, 78.0)
customers = {"age": age, "buys": np.where((age >= 30) & (age <= 45), "yes", "no")}

bins = mb.fit(customers, target="buys")
print(bins.summary())
print(bins["age"].table())
print(bins.apply({"age": [20.0, 40.0, np.nan]}, as_="label"))
# end readme

with tempfile.TemporaryDirectory() as folder:
    bins.save(Path(folder) / "bins.json")
    assert mb.load(Path(folder) / "bins.json") == bins

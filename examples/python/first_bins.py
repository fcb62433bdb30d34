"""Which cells are malignant, by the size of their nuclei: bins made, refined, applied and drawn.

Run it in the folder of the project; it reads examples/wdbc.csv.
"""

# begin readme
import pandas as pd

import mcbinning as mb

table = pd.read_csv("examples/wdbc.csv")
fine = mb.fit(table, target="diagnosis", attributes=["mean_area", "mean_texture", "mean_symmetry"])
bins = fine.refine(max_bins=4, monotonic="increasing")
print(bins.summary())
print(bins["mean_area"].table())
print(bins.apply(table.head(3), as_="woe"))
bins["mean_area"].plot()
# end readme

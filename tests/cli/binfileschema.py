"""Usage: binfileschema.py MCBIN SCHEMA EXAMPLES DATA

Validates bin files that mcbin writes against the schema, and checks that the schema refuses
damaged ones. Ends with 77, which ctest takes for skipped, without python3-jsonschema.
"""

import copy
import json
import subprocess
import sys

try:
    import jsonschema
except ImportError:
    sys.exit(77)

mcbin, schema_path, examples, data = sys.argv[1:]
with open(schema_path, encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)

RUNS = [
    ["supervised", "--target", "species", f"{examples}/iris.csv"],
    ["supervised", "--target", "death,mgus", "--missing", "age=99:", "--missing", "mgus=maybe",
     f"{data}/flchain.csv"],
    ["supervised", "--target", "survived", "--categorical", "class,sex,age", "--weight", "freq",
     "--missing", "freq=-1,9000:", f"{data}/titanic_freq.csv"],
    ["supervised", "--target", "sex", "--attributes", "age", "--max-bins", "3", f"{data}/flchain.csv"],
    ["equal-frequency", "--bins", "5", "--closed", "left", f"{examples}/wdbc.csv"],
    ["equal-frequency", "--target", "death", "--target", "sex", "--attributes", "age,creatinine",
     f"{data}/flchain.csv"],
    ["equal-frequency", "--rounding", "truncate", "--weight", "weight",
     f"{data}/flchain_weighted.csv"],
]


def refuse_constant(text):
    raise ValueError(f"{text} in a bin file")


for run in RUNS:
    written = subprocess.run([mcbin, *run, "--json", "-", "--quiet"], check=True,
                             capture_output=True).stdout
    bins = json.loads(written, parse_constant=refuse_constant)
    validator.validate(bins)

    def damaged(change):
        copied = copy.deepcopy(bins)
        change(copied)
        return copied

    changes = [
        lambda b: b.update(version=4),
        lambda b: b["results"][0]["missing"].pop("weight"),
        lambda b: b.pop("source"),
        lambda b: b["results"][0].pop("bin_weights"),
        lambda b: b["results"][0].update(cut_points=["1"]),
        lambda b: b["results"][0]["status"].update(code=7),
        lambda b: b["attributes"][0].update(kind="ordinal"),
        lambda b: b["settings"].update(weight="w", rounding="up"),
        lambda b: b.update(algorithm="supervised" if "bins" in b["settings"] else "equal-frequency"),
    ]
    for index, change in enumerate(changes):
        if validator.is_valid(damaged(change)):
            sys.exit(f"{run}: the schema accepts damage {index}")

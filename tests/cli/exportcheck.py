"""Usage: exportcheck.py MCBIN sqlite|postgresql|duckdb|mysql|spark|python|jpmml

Runs what `mcbin export` writes in the engine itself, on every cut point, its neighbours and
other values at the edge, and compares with what `mcbin apply` makes of them. Ends with 77, which
ctest takes for skipped, where the engine is not to be had.
"""

import csv
import datetime
import io
import itertools
import json
import math
import os
import random
import subprocess
import sys
import tempfile

from exportengines import ENGINES

DBL_MAX = sys.float_info.max
INF = math.inf
TABLE = 'odd "table".x'
random.seed(20240611)


def random_doubles(count, low, high):
    """Of all magnitudes between two powers of ten, with all their digits."""
    return [random.choice([-1, 1]) * random.uniform(1, 10) * 10.0 ** random.randint(low, high)
            for _ in range(count)]


def make_attributes(engine):
    """(variable, cut points) with names that need quoting."""
    def continuous(name, cuts, **missing):
        variable = {"name": name, "kind": "continuous"}
        if missing:
            variable["user_missing"] = {"values": [], **missing}
        return variable, sorted(cuts)

    def categorical(name, kind, categories, cuts, missing):
        return {"name": name, "kind": kind, "categories": categories,
                "user_missing": {"values": missing}}, cuts

    texts = ["it's", "a", "A", "a ", "\\n", '"q"', "\u00fcber\n\u2713", "1", "%", "<&>"]
    if engine.has_controls:
        texts.append("\x1b[2J\x7f\u009b\u202e")
    return [
        continuous('petal "width"', [0.6, 1.7, 0.1, 5e-5, 8, -2.5, 1e15, 123456.7891]),
        continuous("`it's`", random_doubles(40, -15, 15), values=[-1, 9.5]),
        continuous(" two  blanks", random_doubles(60, -307, 307)),
        continuous("\u017eluna\\\u2713", [5e-324, 2.2250738585072014e-308, 1e-300, DBL_MAX, 0.0]),
        # SQLite misreads the shortest texts of these.
        continuous("17 digits", [18520414.64990828, 441535.446594301, 43.03568111700665,
                                 0.004369212669491349, 5.007293026775264, 8335996804.026896]),
        continuous("select", [0.3], values=[7], interval={"low": 1, "high": 2.2}),
        continuous("t.*", [0.3, 5], interval={"high": -1e300}),
        continuous("high", [0.3, 5], interval={"low": 5.1}),
        continuous("no cuts", [], values=[3]),
        categorical("code", "numeric-categorical", [3, 0.1, -7, 1e22], [0, 2], [8]),
        categorical("text", "string-categorical", texts, [1, 2, 5], ["gone\\", "it''s"]),
    ]


def make_bins(attributes, closed):
    results = []
    for number, (variable, cuts) in enumerate(attributes):
        classes = [[index % 3, 2 + index % 2] for index in range(len(cuts) + 1)]
        weights = [sum(both) for both in classes]
        results.append({
            "attribute": variable["name"], "target": "y", "cut_points": cuts,
            "status": {"code": 0, "severity": "ok", "text": "ok"},
            "bin_weights": weights, "class_weights": classes, "valid_weight": sum(weights),
            "weight_with_missing": sum(weights) + number, "distinct_values": len(weights)})
        if number % 3 != 1:  # the others have not counted what is missing
            results[-1]["missing"] = {"weight": number, "class_weights": [number, 0]}
    return {
        "format": "mcbin-bins", "version": 2, "tool": "", "algorithm": "supervised",
        "closed": closed,
        "settings": {"prebin_above": 0, "prebins": 2, "small_bins": 0, "woe_adjust": 0.25},
        "source": {"name": "", "delimiter": ",", "na": ["NA", "-99"], "records": 0,
                   "dropped": {"missing_weight": 0, "zero_weight": 0,
                               "weight_rounded_to_zero": 0}},
        "attributes": [variable for variable, _ in attributes],
        "targets": [{"name": "y", "kind": "string-categorical", "categories": ["yes", "no"]}],
        "results": results}


def values_of(variable, cuts):
    """Every value that may tell a right rule from a wrong one."""
    missing = variable.get("user_missing", {})
    if variable["kind"] == "string-categorical":
        known = variable["categories"] + missing["values"]
        return [None, "other", "'", "b", "A ", *known]
    interval = missing.get("interval", {})
    edges = [*cuts, *missing.get("values", []), *interval.values(),
             *variable.get("categories", []), 0.0, -99.0]
    near = [value for edge in edges
            for value in (edge, math.nextafter(edge, INF), math.nextafter(edge, -INF))]
    return [None, math.nan, INF, -INF, -0.0, DBL_MAX, -DBL_MAX, 5e-324, *near]


def to_csv(names, columns):
    """Without a value a field is empty; texts stand in quotes, whole numbers without a point."""
    def field(value):
        if value is None:
            return ""
        if isinstance(value, str):
            return '"' + value.replace('"', '""') + '"'
        return repr(value).removesuffix(".0")
    lines = [[field(name) for name in names], *([field(v) for v in row] for row in zip(*columns))]
    return "".join(",".join(line) + "\n" for line in lines)


def run(*arguments, text=None):
    done = subprocess.run([sys.argv[1], *arguments], input=text, capture_output=True,
                          encoding="utf-8", check=False)
    if done.returncode != 0:
        sys.exit(f"{arguments}: exit code {done.returncode}: {done.stderr}")
    return done.stdout


def same(applied, exported, form, no_value):
    """Whether a field of `mcbin apply` says what the engine's value says."""
    if applied == "" or exported is None or exported != exported:
        return applied == "" and (exported in (None, no_value) or exported != exported)
    return applied == exported if form == "label" else float(applied) == float(exported)


def check(engine, closed, form, missing, directory):
    attributes = make_attributes(engine)
    path = os.path.join(directory, "bins.json")
    with open(path, "w", encoding="utf-8") as file:
        json.dump(make_bins(attributes, closed), file)
    names = [variable["name"] for variable, _ in attributes]
    lists = [[value for value in values_of(variable, cuts)
              if (engine.has_nan or value is None or value == value)
             and (engine.has_infinity or value not in (INF, -INF))]
             for variable, cuts in attributes]
    columns = list(zip(*itertools.zip_longest(*lists)))
    options = ["--as", form] + ([] if missing is None else ["--missing-as", missing])
    applied = run("apply", "--quiet", "--suffix", "~", *options, path, text=to_csv(names, columns))
    expected = list(csv.DictReader(io.StringIO(applied, newline="")))
    text = run("export", "--quiet", "--suffix", "~", *options, *engine.options(TABLE), path)
    exported = engine.evaluate(text, TABLE, names, columns)
    for name, values, column in zip(names, exported, columns):
        assert len(values) == len(column) == len(expected)
        for value, record, argument in zip(values, expected, column):
            if not same(record[name + "~"], value, form, engine.no_value):
                sys.exit(f"{name!r}, closed {closed}, as {form}: {argument!r} becomes {value!r}, "
                         f"but apply says {record[name + '~']!r}")
    return sum(len(values) for values in lists)


def check_text_columns(engine, directory):
    """A number that a column holds as text counts as one; other text is missing, or an error."""
    (variable, cuts), = make_attributes(engine)[:1]
    path = os.path.join(directory, "bins.json")
    with open(path, "w", encoding="utf-8") as file:
        json.dump(make_bins([(variable, cuts)], "right"), file)
    text = run("export", "--quiet", "--suffix", "~", *engine.options(TABLE), path)

    def evaluate(column):
        return list(engine.evaluate(text, TABLE, [variable["name"]], [[None, *column]])[0])
    wanted = list(map(str, evaluate([0.1, 1.7, 8.0, 123456.7891, -25.0])))
    no_numbers = ["abc", "", "-", "1.7.", "e5", "1_000", "\u0661"]
    for column in (["0.1", "1.7", "8", "123456.7891", "-2.5e1"], *([text] for text in no_numbers)):
        try:
            found = list(map(str, evaluate(column)))
        except Exception as error:
            print(f"{column} as text: {type(error).__name__}")
            continue
        if found != (wanted if column[0] == "0.1" else wanted[:1] * 2):
            sys.exit(f"{column} as text becomes {found}")


def check_times(engine, directory):
    """Every cut and a microsecond to both sides, though a cut may lie between two of them."""
    start = datetime.datetime(1970, 1, 1)
    step = datetime.timedelta(microseconds=1)
    times = [datetime.datetime(*parts) for parts in [
        (1969, 12, 31, 23, 59, 59, 750000), (1999, 12, 31), (2024, 1, 31, 12, 30, 0, 123456)]]
    cuts = [(time - start).total_seconds() for time in times]
    cuts.append(math.nextafter(cuts[-1] + 1, INF))
    missing = {"values": [(datetime.datetime(9999, 12, 31) - start).total_seconds()],
               "interval": {"high": -86400 * 365 * 70}}
    times += [datetime.datetime(2024, 1, 31, 12, 30, 1, 123456), datetime.datetime(9999, 12, 31),
              start - datetime.timedelta(days=365 * 70)]
    column = [None, *(time + side * step for time in times for side in (-1, 0, 1))]
    variable = {"name": "when", "kind": "continuous", "user_missing": missing,
                "unit": "seconds since 1970-01-01T00:00:00Z"}
    path = os.path.join(directory, "times.json")
    for closed, form in itertools.product(["left", "right"], ["index", "label", "woe"]):
        with open(path, "w", encoding="utf-8") as file:
            json.dump(make_bins([(variable, cuts)], closed), file)
        applied = run("apply", "--quiet", "--suffix", "~", "--as", form, path,
                      text="".join(["when,\n", *(f"{value.isoformat() if value else ''},\n"
                                                  for value in column)]))
        expected = [record["when~"] for record in csv.DictReader(io.StringIO(applied, newline=""))]
        text = run("export", "--quiet", "--suffix", "~", "--as", form, *engine.options(TABLE), path)
        exported, = engine.evaluate(text, TABLE, ["when"], [column])
        for value, wanted, argument in zip(exported, expected, column):
            if not same(wanted, value, form, engine.no_value):
                sys.exit(f"{argument}, closed {closed}, becomes {value!r}, but apply says {wanted!r}")


def main():
    with ENGINES[sys.argv[2]]() as engine, tempfile.TemporaryDirectory() as directory:
        compared = 0
        for closed, form in itertools.product(["right", "left"], ["index", "label", "woe"]):
            compared += check(engine, closed, form, None, directory)
        for form, missing in [("index", "-1"), ("label", "it's \\ missing"), ("woe", "0.1")]:
            compared += check(engine, "right", form, missing, directory)
        if engine.has_text_columns:
            check_text_columns(engine, directory)
        if engine.has_times:
            check_times(engine, directory)
    print(f"{compared} values agree with apply")


main()

"""What several tests share."""

import csv
import json
import os
import subprocess
from pathlib import Path

import pytest
from hypothesis import HealthCheck, settings

settings.register_profile(
    "any speed",
    deadline=None,
    suppress_health_check=[HealthCheck.too_slow, HealthCheck.function_scoped_fixture],
)
settings.load_profile("any speed")

EXAMPLES = Path(__file__).parents[2] / "examples"


def results_of(bins):
    """What a run found, as a bin file says it."""
    return json.loads(bins.to_json())["results"]


@pytest.fixture(scope="session")
def tool(tmp_path_factory):
    """Bins a table, or refines a bin file, with the tool: its results as the bin file has them."""
    program = os.environ.get("MCBIN_PROGRAM")
    if not program:
        pytest.skip("MCBIN_PROGRAM does not say where the tool is")
    folder = tmp_path_factory.mktemp("tool")

    def run(data, *options):
        if isinstance(data, dict):
            names = list(data)
            rows = [["" if v is None else v for v in row] for row in zip(*data.values())]
            data = folder / "data.csv"
            with open(data, "w", newline="") as file:
                csv.writer(file).writerows([names, *rows])
        subprocess.run(
            [program, *options, "--json", folder / "bins.json", data],
            check=True,
            capture_output=True,
        )
        return json.loads((folder / "bins.json").read_text())["results"]

    return run

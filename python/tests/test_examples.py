"""The programs and notebooks in examples/python run."""

import os
import runpy

import pytest

from conftest import EXAMPLES


def examples(pattern):
    return pytest.mark.parametrize(
        "path", sorted((EXAMPLES / "python").glob(pattern)), ids=lambda path: path.name
    )


@examples("*.py")
def test_program_prints_what_is_written_down(path, capsys, monkeypatch):
    if path.stem.startswith("spark"):
        if os.environ.get("CI") != "true":
            pytest.skip("Spark: runs with CI=true")
        pytest.importorskip("pyspark")
    pytest.importorskip("pandas")
    pytest.importorskip("matplotlib")
    monkeypatch.chdir(EXAMPLES.parent)
    monkeypatch.setenv("MPLBACKEND", "Agg")
    runpy.run_path(str(path))
    written = EXAMPLES / "output" / f"python_{path.stem}.txt"
    assert capsys.readouterr().out == written.read_text()


@examples("*.ipynb")
def test_notebook_shows_tables_pages_and_charts(path):
    nbformat = pytest.importorskip("nbformat")
    nbclient = pytest.importorskip("nbclient")
    pytest.importorskip("ipykernel")
    book = nbformat.read(path, as_version=4)
    nbclient.NotebookClient(
        book,
        timeout=600,
        startup_timeout=600,
        resources={"metadata": {"path": str(path.parent)}},
    ).execute()
    outputs = [output for cell in book.cells for output in cell.get("outputs", ())]
    assert [output["text"] for output in outputs if output.output_type == "stream"] == []
    shown = [kind for output in outputs for kind in output.get("data", ())]
    assert "image/png" in shown
    assert any("<iframe" in output.get("data", {}).get("text/html", "") for output in outputs)

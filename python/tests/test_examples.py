"""The programs in examples/python run."""

import runpy

import pytest

from conftest import EXAMPLES


@pytest.mark.parametrize("path", sorted((EXAMPLES / "python").glob("*.py")), ids=lambda p: p.name)
def test_example(path, capsys):
    runpy.run_path(str(path))
    assert capsys.readouterr().out

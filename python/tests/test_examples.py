"""The programs in examples/python run, and scikit-learn takes the transformers."""

import runpy

import numpy as np
import pytest

from conftest import EXAMPLES


@pytest.mark.parametrize("path", sorted((EXAMPLES / "python").glob("*.py")), ids=lambda p: p.name)
def test_example(path, capsys):
    runpy.run_path(str(path))
    assert capsys.readouterr().out


sklearn = pytest.importorskip("sklearn")


@pytest.mark.parametrize("name", ["MDLPDiscretizer", "EqualFrequencyDiscretizer"])
@pytest.mark.filterwarnings("ignore")
def test_scikit_learn_accepts(name):
    from sklearn.utils.estimator_checks import check_estimator

    import mcbinning.sklearn as transformers

    check_estimator(getattr(transformers, name)())


@pytest.mark.parametrize("encode", ["ordinal", "onehot", "onehot-dense", "woe"])
def test_transformers_in_a_search(encode):
    from sklearn.linear_model import LogisticRegression
    from sklearn.model_selection import GridSearchCV
    from sklearn.pipeline import make_pipeline

    from mcbinning.sklearn import MDLPDiscretizer

    x = np.random.default_rng(3).normal(size=(600, 3))
    y = (x[:, 0] + x[:, 1] + np.random.default_rng(4).normal(size=600) > 0).astype(int)
    x[::50, 0] = np.nan
    binning = MDLPDiscretizer(encode=encode).fit(x, y)
    out = binning.transform(x)
    assert out.shape[1] == len(binning.get_feature_names_out())
    if encode != "ordinal":
        search = GridSearchCV(
            make_pipeline(binning, LogisticRegression()),
            {"mdlpdiscretizer__prebins": [20, 1000]},
            cv=3,
        )
        assert search.fit(x, y).best_score_ > 0.6
    if encode != "woe":
        again = binning.transform(binning.inverse_transform(out))
        dense = [part.toarray() if encode == "onehot" else part for part in (again, out)]
        assert np.array_equal(*dense, equal_nan=True)

"""The transformers are scikit-learn's in all that it asks of one."""

import numpy as np
import pytest

import mcbinning as mb
from conftest import results_of

sklearn = pytest.importorskip("sklearn")
pd = pytest.importorskip("pandas")
pl = pytest.importorskip("polars")

from sklearn.base import clone  # noqa: E402
from sklearn.compose import ColumnTransformer  # noqa: E402
from sklearn.linear_model import LogisticRegression  # noqa: E402
from sklearn.model_selection import GridSearchCV, cross_val_score  # noqa: E402
from sklearn.pipeline import make_pipeline  # noqa: E402
from sklearn.utils.estimator_checks import check_estimator  # noqa: E402

from mcbinning.sklearn import EqualFrequencyDiscretizer, MDLPDiscretizer  # noqa: E402

DISCRETIZERS = [MDLPDiscretizer, EqualFrequencyDiscretizer]


@pytest.fixture(scope="module")
def data():
    random = np.random.default_rng(3)
    x = np.round(random.normal(size=(600, 3)), 2)
    y = np.where(x[:, 0] + x[:, 1] + random.normal(size=600) > 0, "yes", "no")
    x[::50, 0] = np.nan
    return x, y


@pytest.mark.parametrize("discretizer", DISCRETIZERS)
@pytest.mark.filterwarnings("ignore")
def test_scikit_learn_accepts(discretizer):
    check_estimator(discretizer())


@pytest.mark.parametrize("encode", ["ordinal", "onehot", "onehot-dense", "woe"])
def test_encodings_are_named_shown_and_inverted(encode, data):
    x, y = data
    binning = MDLPDiscretizer(encode=encode).fit(pd.DataFrame(x, columns=list("abc")), y)
    frame = pd.DataFrame(x, columns=list("abc"), index=np.arange(600) * 2)
    out = binning.transform(frame)
    plain = out.toarray() if encode == "onehot" else out
    names = list(binning.get_feature_names_out())
    assert plain.shape == (600, len(names))
    assert names[0] == ("a_0" if "onehot" in encode else "a")
    if encode == "onehot":
        with pytest.raises(ValueError, match="sparse"):
            clone(binning).set_output(transform="pandas").fit(frame, y).transform(frame)
    else:
        as_pandas = clone(binning).set_output(transform="pandas").fit_transform(frame, y)
        assert (list(as_pandas), list(as_pandas.index)) == (names, list(frame.index))
        as_polars = clone(binning).set_output(transform="polars").fit_transform(frame, y)
        assert isinstance(as_polars, pl.DataFrame)
        for same in as_pandas.to_numpy(), as_polars.to_numpy():
            assert np.array_equal(same, plain, equal_nan=True)
    if encode == "woe":
        with pytest.raises(ValueError, match="no inverse"):
            binning.inverse_transform(out)
        return
    for wrong in [plain[:, 1:]] + [plain * 99, plain - 1, plain + 0.5] * (encode == "ordinal"):
        with pytest.raises(ValueError, match=r"columns are expected|no index of a bin"):
            binning.inverse_transform(wrong)
    again = binning.transform(pd.DataFrame(binning.inverse_transform(out), columns=list("abc")))
    again = again.toarray() if encode == "onehot" else again
    assert np.array_equal(again, plain, equal_nan=True)


def test_they_work_where_scikit_learn_puts_them(data):
    x, y = data
    columns = ColumnTransformer(
        [("cut", MDLPDiscretizer(), ["a", "b"]), ("share", EqualFrequencyDiscretizer(), ["c"])]
    ).set_params(cut__encode="onehot", share__encode="onehot-dense")
    model = make_pipeline(columns, LogisticRegression())
    frame = pd.DataFrame(x, columns=list("abc"))
    search = GridSearchCV(
        model,
        {
            "columntransformer__cut__prebins": [5, 1000],
            "columntransformer__cut__cut_points": [None, {"a": [0.5]}],
        },
        cv=2,
        n_jobs=2,
    )
    search.fit(frame, y)
    assert search.best_score_ > 0.6
    scores = [
        cross_val_score(search.best_estimator_, frame, y, cv=3, n_jobs=jobs) for jobs in (1, 2)
    ]
    assert np.array_equal(*scores)


def test_each_column_of_several_outputs_has_its_own_bins(data):
    x, y = data
    outputs = np.column_stack([y == "yes", x[:, 1] > 0.5, x[:, 2] > 0]).astype(int)
    binning = MDLPDiscretizer(encode="onehot-dense").fit(x, outputs)
    single = [MDLPDiscretizer(encode="onehot-dense").fit(x, column) for column in outputs.T]
    cuts = [
        [binning.bins_[name, target].cut_points.tolist() for name in binning.bins_]
        for target in binning.bins_.targets
    ]
    assert cuts == [[points.tolist() for points in one.cut_points_] for one in single]
    expected = np.hstack([one.transform(x) for one in single])
    assert np.array_equal(binning.transform(x), expected)
    assert len(set(binning.get_feature_names_out())) == expected.shape[1]
    for wrong in outputs * [1, 0, 1], outputs:
        with pytest.raises(ValueError, match=r"one class|one target"):
            MDLPDiscretizer(cut_points={"x0": [0.0]}).fit(x, wrong)


@pytest.mark.parametrize("discretizer", DISCRETIZERS)
def test_weights_are_routed_and_exact(discretizer, data):
    x, y = data
    weights = np.arange(600) % 4
    expected = discretizer().fit(np.repeat(x, weights, axis=0), np.repeat(y, weights))
    with sklearn.config_context(enable_metadata_routing=True):
        routed = make_pipeline(discretizer().set_fit_request(sample_weight=True))
        routed.fit(x, y, sample_weight=weights)
    for found in routed[-1], discretizer().fit(x, y, sample_weight=weights):
        drop = ("distinct_values",)  # which are of cases, whatever they weigh
        assert [
            {key: value for key, value in result.items() if key not in drop}
            for result in results_of(found.bins_)
        ] == [
            {key: value for key, value in result.items() if key not in drop}
            for result in results_of(expected.bins_)
        ]


@pytest.mark.parametrize("discretizer", DISCRETIZERS)
def test_nan_is_accepted_ties_stay_together_and_no_row_is_left_out(discretizer):
    random = np.random.default_rng(5)
    rows = 300_000  # more than others take without drawing a sample
    x = np.column_stack([random.integers(0, 7, rows) * 0.1, random.normal(size=rows)])
    y = (x[:, 0] + random.normal(size=rows) > 0.4).astype(int)
    x[::3, 0] = np.nan
    binning = discretizer().fit(x, y)
    tied, smooth = (binning.bins_[name] for name in binning.bins_)
    assert (tied.valid_weight, tied.missing_weight) == (200_000, 100_000)
    assert smooth.weights.sum() == rows
    places = binning.transform(x)[:, 0]
    assert np.array_equal(np.isnan(places), np.isnan(x[:, 0]))
    for value in np.unique(x[1::3, 0]):
        assert len(np.unique(places[x[:, 0] == value])) == 1
    assert np.bincount(places[~np.isnan(places)].astype(int)).tolist() == tied.weights.tolist()


@pytest.mark.parametrize("discretizer", DISCRETIZERS)
def test_own_cut_points_are_taken_as_they_are(discretizer, data):
    x, y = data
    found = discretizer().fit(x, y)
    mixed = discretizer(cut_points={"x1": [-1, 0, 1]}).fit(x, y)
    assert [cuts.tolist() for cuts in mixed.cut_points_] == [
        found.cut_points_[0].tolist(),
        [-1, 0, 1],
        found.cut_points_[2].tolist(),
    ]
    assert mixed.transform(x)[:, 1].tolist() == np.digitize(x[:, 1], [-1, 0, 1], True).tolist()
    assert mixed.bins_["x0"].weights.tolist() == found.bins_["x0"].weights.tolist()
    all_own = discretizer(cut_points={name: [0] for name in ("x0", "x1", "x2")}).fit(x, y)
    assert all_own.n_bins_.tolist() == [2, 2, 2]
    with pytest.raises(mb.UnknownColumnError, match="age"):
        discretizer(cut_points={"age": [30]}).fit(x, y)


def test_dates_are_refused_as_they_would_be_numbers_of_some_unit():
    dates = np.datetime64("2024-01-01") + np.arange(4)
    fitted = MDLPDiscretizer().fit([[1], [2], [3], [4]], [0, 0, 1, 1])
    for X in dates[:, None], pd.DataFrame({"x0": dates}), pl.DataFrame({"x0": dates}):
        for call in fitted.transform, lambda X: MDLPDiscretizer().fit(X, [0, 0, 1, 1]):
            with pytest.raises(TypeError, match="dates"):
                call(X)

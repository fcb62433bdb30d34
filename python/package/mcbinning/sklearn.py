"""Bins as transformers of scikit-learn."""

from __future__ import annotations

from collections.abc import Callable, Mapping
from typing import Any, Literal

import numpy as np
from scipy import sparse
from sklearn.base import BaseEstimator, TransformerMixin
from sklearn.utils.multiclass import check_classification_targets
from sklearn.utils.validation import check_array, check_is_fitted

from ._bins import Bins
from ._errors import unknown_column
from ._fit import fit, fit_equal_frequency, from_cut_points

try:
    from sklearn.utils.validation import _check_sample_weight, validate_data
except ImportError:  # before scikit-learn 1.6
    from sklearn.utils.validation import _check_sample_weight

    def validate_data(estimator: Any, X: Any, **options: Any) -> Any:
        """Check a table as scikit-learn does from 1.6 on."""
        return estimator._validate_data(X, **options)


__all__ = ["EqualFrequencyDiscretizer", "MDLPDiscretizer"]

Encode = Literal["ordinal", "onehot", "onehot-dense", "woe"]


class _Discretizer(TransformerMixin, BaseEstimator):  # type: ignore[misc]
    """What both discretizers have in common. `bins_` is made by the derived class."""

    bins_: Bins
    _encodes: tuple[str, ...] = ("ordinal", "onehot", "onehot-dense")

    def _check_parameters(self) -> None:
        if self.encode not in self._encodes:
            raise ValueError(f"encode is one of {self._encodes}, not {self.encode!r}")

    def _make(
        self,
        names: list[str],
        table: dict[str, Any],
        target: str | None,
        weight: Any,
        search: Callable[[list[str]], Bins],
    ) -> Bins:
        """Make the bins of these columns: own cut points as they are, others as `search` finds."""
        own = self.cut_points or {}
        for name in own:
            if name not in names:
                raise unknown_column(name, names)
        searched = [name for name in names if name not in own]
        if not own:
            return search(searched)
        cuts = dict(own)
        if searched:
            bins = search(searched)
            cuts |= {name: bins[name].cut_points for name in searched}
        cuts = {name: cuts[name] for name in names}
        return from_cut_points(cuts, table, target=target, weight=weight, closed=self.closed)

    def _check_table(self, X: Any, reset: bool) -> Any:
        _refuse_dates(X)
        missing = _nan_option()
        return validate_data(self, X, reset=reset, dtype=np.float64, **missing)

    def _keep(self, bins: Bins, target: str | None) -> None:
        """Set the attributes that describe the bins of one target, or without one."""
        self.cut_points_ = [self._cuts(bins, name, target) for name in bins]
        self.bin_edges_ = np.empty(len(self.cut_points_), dtype=object)
        for i, cuts in enumerate(self.cut_points_):
            self.bin_edges_[i] = np.concatenate([[-np.inf], cuts, [np.inf]])
        self.n_bins_ = np.array([len(cuts) + 1 for cuts in self.cut_points_])
        self.bins_ = bins

    @staticmethod
    def _cuts(bins: Bins, name: str, target: str | None) -> Any:
        return (bins[name] if target is None else bins[name, target]).cut_points

    def transform(self, X: Any) -> Any:
        """Give values their bins.

        Parameters
        ----------
        X : array-like of shape (n_samples, n_features)
            Numbers; NaN is missing.

        Returns
        -------
        numpy.ndarray or scipy.sparse.csr_matrix
            ``"ordinal"``: float64 of shape (n_samples, n_features), the bin from 0 up and NaN where
            a value is missing. ``"onehot"`` (sparse) and ``"onehot-dense"``: a column for each bin,
            all 0 where a value is missing. ``"woe"``: weights of evidence, 0 where a value is
            missing. With several targets the columns of each follow one another.
        """
        check_is_fitted(self)
        X = self._check_table(X, reset=False)
        parts = [self._encode(X, target) for target in self._targets()]
        if len(parts) == 1:
            return parts[0]
        return sparse.hstack(parts, format="csr") if self.encode == "onehot" else np.hstack(parts)

    def _encode(self, X: Any, target: str | None) -> Any:
        as_: Literal["woe", "index"] = "woe" if self.encode == "woe" else "index"
        frame = self.bins_.apply(X, as_, target=target)
        missing = 0.0 if self.encode == "woe" else np.nan
        if self.encode in ("ordinal", "woe"):
            encoded = np.empty((len(X), len(frame.columns)), order="F")
            for place, name in enumerate(frame.columns):
                values = frame[name]
                encoded[:, place] = values
                gone = np.isnan(values) if self.encode == "woe" else values < 0
                encoded[gone, place] = missing
            return encoded
        indexes = np.column_stack([frame[name] for name in frame.columns])
        counts = np.array([len(self._cuts(self.bins_, name, target)) + 1 for name in self.bins_])
        first = np.concatenate([[0], np.cumsum(counts)])
        rows, features = np.nonzero(indexes >= 0)
        places = first[features] + indexes[rows, features]
        shape = (len(X), int(first[-1]))
        onehot = sparse.csr_matrix((np.ones(len(rows)), (rows, places)), shape=shape)
        return onehot if self.encode == "onehot" else onehot.toarray()

    def inverse_transform(self, Xt: Any) -> Any:
        """Give bins a value: the middle of an interval, of an open one the number at its end.

        Parameters
        ----------
        Xt : array-like of shape (n_samples, n_features)
            What `transform` makes with ``encode="ordinal"`` or one-hot, of one target.

        Returns
        -------
        numpy.ndarray of shape (n_samples, n_features)
            NaN where the value was missing, and 0 for an attribute with one bin.
        """
        check_is_fitted(self)
        if self.encode == "woe" or len(self.bins_.targets) > 1:
            raise ValueError("weights of evidence and several targets have no inverse")
        if self.encode == "ordinal":
            indexes = check_array(Xt, dtype=np.float64, **_nan_option())
            if indexes.shape[1] != len(self.n_bins_):
                raise ValueError(f"{len(self.n_bins_)} columns are expected")
        else:
            indexes = self._from_one_hot(Xt)
        known = np.isnan(indexes) | ((indexes >= 0) & (indexes < self.n_bins_) & (indexes % 1 == 0))
        if not known.all():
            raise ValueError(f"{indexes[~known][0]:g} is no index of a bin")
        values = np.full(indexes.shape, np.nan)
        for i, edges in enumerate(self.bin_edges_):
            there = ~np.isnan(indexes[:, i])
            values[there, i] = _middles(edges, self.bins_.closed)[indexes[there, i].astype(np.intp)]
        return values

    def _from_one_hot(self, Xt: Any) -> Any:
        dense = Xt.toarray() if sparse.issparse(Xt) else np.asarray(Xt)
        first = np.concatenate([[0], np.cumsum(self.n_bins_)])
        if dense.ndim != 2 or dense.shape[1] != first[-1]:
            raise ValueError(f"{first[-1]} columns are expected")
        indexes = np.full((len(dense), len(self.n_bins_)), np.nan)
        for i in range(len(self.n_bins_)):
            part = dense[:, first[i] : first[i + 1]]
            there = part.any(axis=1)
            indexes[there, i] = part[there].argmax(axis=1)
        return indexes

    def get_feature_names_out(self, input_features: Any = None) -> Any:
        """Name the columns of `transform`.

        Parameters
        ----------
        input_features : array-like of str, optional
            The names of the features that were fitted, or any for data without names.

        Returns
        -------
        numpy.ndarray of str objects
            Those of the features; one-hot with the bin's index, of several targets with the target.
        """
        check_is_fitted(self)
        names = self._feature_names(input_features)
        out = []
        for target in self._targets():
            suffix = f"_{target}" if len(self.bins_.targets) > 1 else ""
            for name, attribute in zip(names, self.bins_, strict=True):
                if self.encode in ("ordinal", "woe"):
                    out.append(f"{name}{suffix}")
                    continue
                count = len(self._cuts(self.bins_, attribute, target)) + 1
                out += [f"{name}{suffix}_{index}" for index in range(count)]
        return np.array(out, dtype=object)

    def _feature_names(self, input_features: Any) -> list[str]:
        fitted = getattr(self, "feature_names_in_", None)
        if input_features is None:
            return list(self.bins_) if fitted is None else list(fitted)
        if fitted is not None and list(fitted) != list(input_features):
            raise ValueError("input_features is not equal to feature_names_in_")
        if len(input_features) != self.n_features_in_:
            raise ValueError(
                f"input_features should have length equal to number of features "
                f"({self.n_features_in_}), got {len(input_features)}"
            )
        return list(input_features)

    def _targets(self) -> list[str | None]:
        return [*self.bins_.targets] or [None]

    def _names(self) -> list[str]:
        fitted = getattr(self, "feature_names_in_", None)
        return [f"x{i}" for i in range(self.n_features_in_)] if fitted is None else list(fitted)

    def _weight(self, sample_weight: Any, X: Any) -> Any:
        if sample_weight is None:
            return None
        return _check_sample_weight(sample_weight, X, dtype=np.float64)

    def __sklearn_tags__(self) -> Any:
        tags = super().__sklearn_tags__()
        tags.input_tags.allow_nan = True
        return tags

    def _more_tags(self) -> dict[str, Any]:
        return {"allow_nan": True}


class MDLPDiscretizer(_Discretizer):
    """Cut features where the classes of `y` change, by minimum description length.

    Ties are never split, nothing is subsampled, and the number of bins follows from the data.

    Parameters
    ----------
    encode : {"ordinal", "onehot", "onehot-dense", "woe"}, default="ordinal"
        What `transform` makes of a bin.
    cut_points : dict of str to array-like, optional
        Features that have cut points of their own, by name (x0, x1 and so on for data without
        names): these are taken as they are, the others are found. With one target only.
    prebins, prebin_above, small_bins, closed, threads
        As for `mcbinning.fit`.

    Attributes
    ----------
    bins_ : mcbinning.Bins
        All that was found: counts, gains, reports, exports.
    cut_points_ : list of ndarray
        The cut points of each feature; with several targets, of the first.
    bin_edges_ : ndarray of ndarray of shape (n_features,)
        The same between -inf and inf.
    n_bins_ : ndarray of shape (n_features,)
        How many bins each has.
    n_features_in_, feature_names_in_
        As everywhere in scikit-learn.
    """

    _encodes = ("ordinal", "onehot", "onehot-dense", "woe")

    def __init__(
        self,
        *,
        encode: Encode = "ordinal",
        cut_points: Mapping[str, Any] | None = None,
        prebins: int = 1000,
        prebin_above: int = 1000,
        small_bins: float = 0.0,
        closed: Literal["right", "left"] = "right",
        threads: int = 1,
    ) -> None:
        self.encode = encode
        self.cut_points = cut_points
        self.prebins = prebins
        self.prebin_above = prebin_above
        self.small_bins = small_bins
        self.closed = closed
        self.threads = threads

    def fit(self, X: Any, y: Any, sample_weight: Any = None) -> MDLPDiscretizer:
        """Find the cut points.

        Parameters
        ----------
        X : array-like of shape (n_samples, n_features)
            Numbers; NaN is missing.
        y : array-like of shape (n_samples,) or (n_samples, n_targets)
            Classes, at most 256 of each target.
        sample_weight : array-like of shape (n_samples,), optional
            Frequency weights, rounded to whole numbers.

        Returns
        -------
        MDLPDiscretizer
            This one.
        """
        self._check_parameters()
        if y is None:
            raise ValueError(
                f"This {type(self).__name__} estimator requires y to be passed, but the target y "
                "is None"
            )
        _refuse_dates(X)
        X, y = validate_data(
            self, X, y=y, reset=True, dtype=np.float64, multi_output=True, **_nan_option()
        )
        check_classification_targets(y)
        targets = y.reshape(len(y), -1)
        names = self._names()
        table: dict[str, Any] = {name: X[:, i] for i, name in enumerate(names)}
        target_names = [_free_name(f"y{i}" if i else "y", table) for i in range(targets.shape[1])]
        table |= {name: _as_classes(targets[:, i]) for i, name in enumerate(target_names)}
        weight = self._weight(sample_weight, X)
        constant = [name for name in target_names if len(np.unique(table[name])) < 2]
        if len(target_names) > 1 and constant:
            raise ValueError(f"the target {constant[0]!r} has one class")
        if len(target_names) > 1 and self.cut_points:
            raise ValueError("cut_points go with one target")

        def search(attributes: list[str]) -> Bins:
            if constant:
                cuts: dict[str, list[float]] = {name: [] for name in attributes}
                return from_cut_points(cuts, table, weight=weight, closed=self.closed)
            return fit(
                table,
                target_names,
                weight=weight,
                attributes=attributes,
                prebins=self.prebins,
                prebin_above=self.prebin_above,
                small_bins=self.small_bins,
                closed=self.closed,
                threads=self.threads,
            )

        bins = self._make(names, table, None if constant else target_names[0], weight, search)
        self._keep(bins, target_names[0] if bins.targets else None)
        return self

    def __sklearn_tags__(self) -> Any:
        tags = super().__sklearn_tags__()
        tags.target_tags.required = True
        return tags

    def _more_tags(self) -> dict[str, Any]:
        return {"allow_nan": True, "requires_y": True}


class EqualFrequencyDiscretizer(_Discretizer):
    """Cut features into bins of about equal weight.

    Ties are never split and nothing is subsampled; weights are exact.

    Parameters
    ----------
    n_bins : int, default=10
        How many bins, from 2 up; fewer where values are few or repeated.
    encode : {"ordinal", "onehot", "onehot-dense"}, default="ordinal"
        What `transform` makes of a bin.
    cut_points : dict of str to array-like, optional
        Features that have cut points of their own, by name (x0, x1 and so on for data without
        names): these are taken as they are, the others are found.
    closed, threads
        As for `mcbinning.fit_equal_frequency`.

    Attributes
    ----------
    bins_, cut_points_, bin_edges_, n_bins_, n_features_in_, feature_names_in_
        As of `MDLPDiscretizer`.
    """

    def __init__(
        self,
        n_bins: int = 10,
        *,
        encode: Literal["ordinal", "onehot", "onehot-dense"] = "ordinal",
        cut_points: Mapping[str, Any] | None = None,
        closed: Literal["right", "left"] = "right",
        threads: int = 1,
    ) -> None:
        self.n_bins = n_bins
        self.encode = encode
        self.cut_points = cut_points
        self.closed = closed
        self.threads = threads

    def fit(self, X: Any, y: Any = None, sample_weight: Any = None) -> EqualFrequencyDiscretizer:
        """Find the cut points.

        Parameters
        ----------
        X : array-like of shape (n_samples, n_features)
            Numbers; NaN is missing.
        y
            Not used.
        sample_weight : array-like of shape (n_samples,), optional
            Frequency weights, rounded to whole numbers.

        Returns
        -------
        EqualFrequencyDiscretizer
            This one.
        """
        self._check_parameters()
        X = self._check_table(X, reset=True)
        names, weight = self._names(), self._weight(sample_weight, X)
        table = {name: X[:, i] for i, name in enumerate(names)}

        def search(attributes: list[str]) -> Bins:
            return fit_equal_frequency(
                table,
                self.n_bins,
                weight=weight,
                attributes=attributes,
                closed=self.closed,
                threads=self.threads,
            )

        bins = self._make(names, table, None, weight, search)
        self._keep(bins, None)
        return self


def _nan_option() -> dict[str, Any]:
    """Allow NaN in the words of the scikit-learn that is here."""
    import inspect

    known = inspect.signature(check_array).parameters
    name = "ensure_all_finite" if "ensure_all_finite" in known else "force_all_finite"
    return {name: "allow-nan"}


def _refuse_dates(X: Any) -> None:
    """Refuse what scikit-learn would read as numbers, in whatever unit the dates have."""
    for kind in getattr(X, "dtypes", [getattr(X, "dtype", None)]):
        if getattr(kind, "kind", "") in ("m", "M") or getattr(kind, "is_temporal", bool)():
            raise TypeError(
                "there are dates or durations in X, which scikit-learn has no unit for: make them "
                "numbers, or give the table to mcbinning.fit"
            )


def _free_name(name: str, taken: dict[str, Any]) -> str:
    while name in taken:
        name += "_"
    return name


def _as_classes(y: Any) -> Any:
    """Give classes a type that is binned against as it is."""
    return y if y.dtype.kind in "biuf" else np.asarray([str(label) for label in y], dtype=object)


def _middles(edges: Any, closed: str) -> Any:
    """Get a value of each bin; that of an open end is its cut point or the number beside it."""
    if len(edges) == 2:
        return np.zeros(1)
    left, right = edges[:-1], edges[1:]
    middles = left / 2 + right / 2
    middles[0], middles[-1] = right[0], left[-1]
    if closed == "right":
        return np.where(middles <= left, np.nextafter(left, np.inf), middles)
    return np.where(middles >= right, np.nextafter(right, -np.inf), middles)

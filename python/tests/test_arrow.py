"""Arrow arrays made to hurt are read as what they say, and no byte beyond."""

import pytest

import mcbinning as mb
from conftest import results_of

pa = pytest.importorskip("pyarrow")

NUMBERS = [None, 3, 1, 4, 1, 5, None, 9, 2, 6, 5, 3, 5, None, 8, 9, 7, 9]
TEXTS = [None if n is None else "a longer text, not inline " * (n % 2) + str(n) for n in NUMBERS]


def pieces(array, *lengths):
    """Cut an array into chunks that share its buffers."""
    chunks, first = [], 0
    for length in [*lengths, len(array)]:
        chunks.append(array.slice(first, length))
        first += length
    return pa.chunked_array(chunks, array.type)


def rebuilt(array, null_count=-1):
    """Make the same array of its buffers anew, with its offset and an unknown count of nulls."""
    return pa.Array.from_buffers(
        array.type, len(array), array.buffers(), null_count=null_count, offset=array.offset
    )


def coded(values, type_, index="int8"):
    return (
        pa.array(values, type_)
        .dictionary_encode()
        .cast(pa.dictionary(pa.type_for_alias(index), type_))
    )


double = pa.array(NUMBERS, pa.float64())
whole = pa.array([n for n in NUMBERS if n], pa.int16())
text = pa.array(TEXTS, pa.string())
HURTING = {
    "an offset within a byte of validity": double.slice(3, 11),
    "nulls that are not counted": rebuilt(double.slice(5)),
    "no validity buffer": pa.Array.from_buffers(
        pa.int16(), len(whole) - 2, [None, whole.buffers()[1]], null_count=0, offset=2
    ),
    "no validity buffer, nulls not counted": rebuilt(whole),
    "chunks of one, of none and of more": pieces(double, 1, 0, 7, 0, 2),
    "bits with an offset": pa.array([n and n > 4 for n in NUMBERS]).slice(3),
    "bits in chunks": pieces(pa.array([n and n > 4 for n in NUMBERS]), 3, 9),
    "half floats": pa.array(NUMBERS, pa.float64()).cast(pa.float16()).slice(1),
    "texts with an offset": text.slice(2),
    "texts in chunks": pieces(text, 0, 5, 1),
    "large texts": pieces(text.cast(pa.large_string()), 6),
    "texts without bytes": pa.array(["", None, "", "b"] * 3, pa.string()),
    "views": pieces(pa.array(TEXTS, pa.string_view()), 4, 0, 9),
    "views that are all inline": pa.array(["a", "b", None] * 3, pa.string_view()).slice(1),
    "a sliced array of codes": coded(TEXTS, pa.string()).slice(4),
    "a sliced dictionary": pa.DictionaryArray.from_arrays(
        pa.array([0, 1, None, 2, 1, 0], pa.uint8()), pa.array(["x", "c", "a", "b"]).slice(1)
    ),
    "nulls in the dictionary": pa.DictionaryArray.from_arrays(
        pa.array([0, 1, 2, 1, 0, 2], pa.int64()), pa.array(["b", None, "a"])
    ),
    "dictionaries that differ by chunk": pa.chunked_array(
        [coded(["b", "a", None], pa.string()), coded(["c", "b", "b"], pa.string())]
    ),
    "a dictionary of views": pa.DictionaryArray.from_arrays(
        pa.array([0, 1, 1, 0], pa.int32()),
        pa.array(["a longer text than fits", "b"]).cast("string_view"),
    ),
    "a dictionary of numbers": coded(NUMBERS, pa.float64(), "uint16").slice(2),
    "nothing but null": pa.nulls(8),
    "all null in a type": pa.array([None] * 9, pa.float32()).slice(1),
}


@pytest.mark.parametrize("name", HURTING)
@pytest.mark.filterwarnings("ignore::mcbinning.BinningWarning")
def test_an_array_is_read_as_it_says(name):
    column = HURTING[name]
    values = column.to_pylist()
    classes = [i % 3 % 2 for i in range(len(values))]
    for other in {"y": classes}, {"y": pieces(pa.array(classes), 2, 1)}:
        given = mb.fit({"a": column, **other}, "y", attributes=["a"])
        plain = mb.fit({"a": values, "y": classes}, "y", attributes=["a"])
        assert [r["bin_weights"] for r in results_of(given)] == [
            r["bin_weights"] for r in results_of(plain)
        ]
        assert given["a"].missing_weight == sum(value is None for value in values)
        if given["a"].status != "error":
            places = given.apply({"a": column})["a_bin"].tolist()
            assert places == plain.apply({"a": values})["a_bin"].tolist()
    whole = pa.table({"pad": pa.nulls(len(values)), "a": column, "y": classes})
    cut = mb.fit(whole.slice(1), "y", attributes=["a"])
    plain = mb.fit({"a": values[1:], "y": classes[1:]}, "y", attributes=["a"])
    assert cut["a"].weights.tolist() == plain["a"].weights.tolist()


@pytest.mark.parametrize(
    ("column", "kind"),
    [
        (pa.array([], pa.float64()), ValueError),
        (pa.chunked_array([], pa.string()), ValueError),
        (pa.chunked_array([[], []], pa.float64()), ValueError),
        (
            pa.DictionaryArray.from_arrays(pa.array([0, 5]), pa.array(["a", "b"]), safe=False),
            ValueError,
        ),
        (pa.array([[1], [2]]), TypeError),
        (pa.array([{"b": 1}, {"b": 2}]), TypeError),
        (pa.array([b"a", b"b"]), TypeError),
        (pa.RunEndEncodedArray.from_arrays([1, 2], [1.0, 2.0]), TypeError),
    ],
)
def test_what_cannot_be_binned_is_refused(column, kind):
    with pytest.raises(kind):
        mb.fit({"a": column, "y": [0, 1][: len(column)]}, "y", attributes=["a"])


@pytest.mark.filterwarnings("ignore::mcbinning.BinningWarning")
def test_a_row_that_is_missing_as_a_whole_is_refused():
    rows = pa.array([{"a": 1.0, "y": 0}, None, {"a": 2.0, "y": 1}])
    with pytest.raises(ValueError, match="as a whole"):
        mb.fit(rows, "y")
    assert mb.fit_equal_frequency(rows.slice(2), 2, attributes=["a"])["a"].valid_weight == 1

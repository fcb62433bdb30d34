"""What is raised when something is refused."""

from __future__ import annotations


class BinningError(Exception):
    """Something was refused, or a run failed.

    Attributes
    ----------
    code : str
        Which rule was broken, such as ``"unknown-column"``; stable between versions.
    place : str
        Where, such as a file and line, or a JSON pointer; empty where that says nothing.
    subject : str
        What it is about, such as the name of a column; may be empty.
    detail : str
        A text that was found there; may be empty.
    """

    code: str = "input"
    place: str = ""
    subject: str = ""
    detail: str = ""


class InputError(BinningError, ValueError):
    """The data, or how they are to be binned, make no sense."""


class UnknownColumnError(InputError):
    """A column that the table does not have."""

    code = "unknown-column"


class TableTypeError(BinningError, TypeError):
    """A table, a column or its name, of a type which cannot be binned."""

    code = "column-type"


class CategoryError(InputError):
    """A categorical column with too many categories."""

    code = "too-many-categories"


class WeightError(InputError):
    """Weights that are negative, infinite or no numbers, or no record that has one."""


class TargetError(InputError):
    """A target that the bins do not have, or weight of evidence without one of two classes."""


class BinFileError(InputError):
    """A text that is no bin file, or a number or text that a bin file cannot hold."""

    code = "wrong-file"


class ExportError(InputError):
    """Something that the language of an export cannot say."""


class RunError(BinningError, RuntimeError):
    """A run that failed for want of a thread or of room for its temporary files."""


class CancelledError(BinningError):
    """A run that was asked to stop."""


class BinningWarning(UserWarning):
    """What went wrong with single attributes of a run that as a whole went well."""


# Of the codes of the library whose class is not InputError.
_CLASSES: dict[str, type[BinningError]] = {
    "unknown-column": UnknownColumnError,
    "text-among-numbers": TableTypeError,
    "too-many-categories": CategoryError,
    "bad-weight": WeightError,
    "no-records": WeightError,
    "cancelled": CancelledError,
    "temporary-file": RunError,
    "temporary-files": RunError,
    "too-many-threads": RunError,
    "bad-bin-file": BinFileError,
    "unknown-version": BinFileError,
    "unwritable": BinFileError,
    "wrong-file": BinFileError,
    "several-targets": TargetError,
    "unknown-target": TargetError,
    "no-targets": TargetError,
    "evidence-needs-target": TargetError,
    "evidence-needs-two-classes": TargetError,
    "unknown-class": TargetError,
    "two-events": TargetError,
    "refine-needs-two-classes": TargetError,
    "missing-not-whole": ExportError,
    "missing-not-number": ExportError,
    "column-exists": ExportError,
    "table-name": ExportError,
    "no-infinity": ExportError,
}

# What to do about it, where the reason does not say so.
_ADVICE = {
    "no-records": "give a weight above 0 to at least one record",
    "temporary-file": "choose another directory with temp_dir=",
    "temporary-files": "choose another directory with temp_dir=",
    "too-many-threads": "ask for fewer with threads=",
    "several-targets": "choose one with target=",
    "evidence-needs-target": "use as_='index' or as_='label'",
    "evidence-needs-two-classes": "use as_='index' or as_='label'",
    "no-infinity": "use as_='index' or as_='label', or another dialect",
    "infinite-number": "make it missing with missing=, or leave its record out",
}


def make_error(code: str, place: str, subject: str, detail: str, text: str) -> BinningError:
    """Make the exception for a refusal of the library."""
    advice = _ADVICE.get(code)
    error = _CLASSES.get(code, InputError)(text if advice is None else f"{text}; {advice}")
    error.code, error.place, error.subject, error.detail = code, place, subject, detail
    return error


def unknown_column(name: str, names: list[str]) -> UnknownColumnError:
    """Make the exception for a column that is not there."""
    known = ", ".join(repr(known) for known in names[:10]) + (", ..." if len(names) > 10 else "")
    error = UnknownColumnError(f"there is no column {name!r}; the table has {known or 'none'}")
    error.subject = name
    return error

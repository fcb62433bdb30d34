"""Files that are replaced as a whole, and where temporary ones go."""

from __future__ import annotations

import os

Path = str | os.PathLike[str]


def write_text(path: Path, text: str) -> None:
    """Write a file beside its place, then put it there: a failure leaves what was there."""
    path = os.fsdecode(path)
    folder, name = os.path.split(os.path.abspath(path))
    import tempfile  # here, as importing it takes longer than importing this package

    descriptor, beside = tempfile.mkstemp(prefix=f".{name}.", dir=folder)
    try:
        with open(descriptor, "w", encoding="utf-8", newline="") as file:
            file.write(text)
        mode = os.stat(path).st_mode & 0o777 if os.path.exists(path) else 0o666 & ~_umask()
        os.chmod(beside, mode)
        os.replace(beside, path)
    except BaseException:
        os.unlink(beside)
        raise


def _umask() -> int:
    mask = os.umask(0o022)
    os.umask(mask)
    return mask


def system_temp_dir() -> str:
    """Get the system's place for temporary files."""
    import tempfile

    return tempfile.gettempdir()

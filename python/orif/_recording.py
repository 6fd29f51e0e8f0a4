"""Recordings: the same files as the command-line tool's, written and read back."""

import os
import time
import warnings
from datetime import datetime, timezone
from typing import Any, Dict, List, NamedTuple, Optional, Union

from . import _native
from ._controller import Controller
from ._errors import UsageError

__all__ = ["Recorded", "read_recording", "record"]


class Recorded(NamedTuple):
    """What was recorded."""

    rows: int
    """How many rows."""
    gaps: int
    """How often the link was lost."""
    skipped: int
    """How many turns were left out, because refreshes took too long."""
    summary: str
    """In words: "12 rows in run.csv"."""

    def __str__(self) -> str:
        return self.summary


def record(
    cell: Controller,
    out: Union[str, "os.PathLike[str]"],
    *,
    every: float = 0.1,
    duration: Optional[float] = None,
    count: Optional[int] = None,
    wait: bool = False,
    append: bool = False,
    replace: bool = False,
    rotate_after: Optional[float] = None,
    rotate_at: Optional[int] = None,
) -> Recorded:
    """Refresh a controller at a steady pace and write the values of all its tags to a file.

    out: a file that ends in .csv or in .db, an SQLite database.
    every: seconds from one refresh to the next.
    duration, count: seconds (more than 0), or refreshes (1 or more), after which it ends; without them it goes on until Ctrl-C,
        which raises KeyboardInterrupt with all rows in the file.
    wait: whether to wait for a controller that is off at first. Without it, the first refresh that
        fails raises NotConnected or Refused; later ones are gaps in the recording.
    append: go on with a file that has the same columns, or make it.
    replace: replace a file that exists.
    rotate_after, rotate_at: begin a new file after so many seconds, or at a size in bytes.

    Raises UsageError for a file that exists, or that cannot be written.
    """
    path = os.fspath(out)
    if not path.endswith((".csv", ".db")):
        raise UsageError(f"{path!r}: a recording ends in .csv for a CSV file or in .db for an SQLite database")
    if append and replace:
        raise UsageError("append goes on with a file and replace ends it; say one of them")
    if (duration is not None and not duration > 0) or (count is not None and count < 1):
        raise UsageError("a recording has a duration of more than 0 s, and a count of 1 or more")
    recording = _native._LiveRecording(cell, path, every, append, replace, rotate_after, rotate_at)
    refreshes = 0
    try:
        while count is None or refreshes < count:
            pause = recording.wait()
            if duration is not None and recording.since_start() >= duration:
                break
            time.sleep(pause)
            error = recording.step()
            for note in recording.take_notes():
                warnings.warn(note, stacklevel=2)
            if error is not None and refreshes == 0 and not wait:
                raise error
            refreshes += 1
    finally:
        summary = recording.close()
    return Recorded(recording.rows, recording.gaps, recording.skipped, summary)


def read_recording(path: Union[str, "os.PathLike[str]"], *, pandas: Optional[bool] = None) -> Any:
    """Read a recording, .csv or .db, into a pandas DataFrame, or a dict of columns as lists.

    The columns are time (UTC), seconds (since the first row), link ("up", "lost" or "back"), and the
    values by their names. Where there is no value it is None, in a DataFrame NaN.

    pandas: whether to make a DataFrame; by default if pandas is installed.
    """
    columns: Dict[str, List[Any]] = _native._read_recording(os.fspath(path))
    try:
        columns["time"] = [
            datetime.strptime(each, "%Y-%m-%dT%H:%M:%S.%fZ").replace(tzinfo=timezone.utc) for each in columns["time"]
        ]
    except ValueError as error:
        raise UsageError(f"{path} is no recording: {error}") from None
    if pandas is False:
        return columns
    try:
        from pandas import DataFrame  # type: ignore[import]
    except ImportError:
        if pandas:
            raise
        return columns
    return DataFrame(columns)

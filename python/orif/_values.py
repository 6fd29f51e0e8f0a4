"""What values of several parts are in Python, and what a watch tells."""

import operator
from datetime import datetime
from typing import Any, NamedTuple, Optional, Tuple

from ._errors import Reason, UsageError

__all__ = ["Alarm", "Change", "Position", "Task"]


class Position(NamedTuple):
    """A position: its cartesian form, its joint form, or both.

    Lengths are in mm, angles in degrees. What a position does not have is None; what is None is not
    written, so Position(Z=120.0) changes Z alone. It is a sequence of its fields, too:
    x, y, z, w, p, r = position[:6].
    """

    X: Optional[float] = None
    Y: Optional[float] = None
    Z: Optional[float] = None
    W: Optional[float] = None
    P: Optional[float] = None
    R: Optional[float] = None
    E1: Optional[float] = None
    E2: Optional[float] = None
    E3: Optional[float] = None
    config: Optional[Tuple[int, ...]] = None
    """The seven numbers of the configuration."""
    J1: Optional[float] = None
    J2: Optional[float] = None
    J3: Optional[float] = None
    J4: Optional[float] = None
    J5: Optional[float] = None
    J6: Optional[float] = None
    J7: Optional[float] = None
    J8: Optional[float] = None
    J9: Optional[float] = None
    UF: Optional[int] = None
    """Number of the user frame."""
    UT: Optional[int] = None
    """Number of the tool."""

    @property
    def cartesian(self) -> Optional[Tuple[float, ...]]:
        """X, Y, Z, W, P, R and as many of E1 to E3 as there are; None without that form."""
        return _form(self[:9])

    @property
    def joint(self) -> Optional[Tuple[float, ...]]:
        """J1 to J9, as many as there are; None without that form."""
        return _form(self[10:19])

    @classmethod
    def from_joint(cls, *joints: float, UF: Optional[int] = None, UT: Optional[int] = None) -> "Position":
        """A position in joint form: J1, J2 and so on in degrees."""
        if not 1 <= len(joints) <= 9:
            raise UsageError("a position in joint form has one to nine joints")
        none = (None,) * 10
        rest = (None,) * (9 - len(joints))
        return cls._make((*none, *map(float, joints), *rest, UF, UT))

    def __repr__(self) -> str:
        parts = (f"{name}={value!r}" for name, value in zip(self._fields, self) if value is not None)
        return f"Position({', '.join(parts)})"


def position_of(name: str, given: Any) -> Position:
    """The Position that is given for `name`, or a sequence of numbers for one. Raises UsageError for
    anything else."""
    position = given
    if not isinstance(given, Position):
        try:
            numbers = list(given)
        except TypeError:
            raise UsageError(f"{name}: {given!r} is no Position and no sequence of numbers") from None
        if not 1 <= len(numbers) <= 9:
            raise UsageError(f"{name}: a position has X, Y, Z, W, P, R and up to three more axes")
        position = Position(*numbers)
    try:
        reals = [None if each is None else float(each) for each in (*position[:9], *position[10:19])]
        config = None if position.config is None else tuple(map(operator.index, position.config))
        frames = [None if each is None else operator.index(each) for each in position[19:]]
    except (TypeError, ValueError, OverflowError):
        raise UsageError(f"{name}: {given!r} is no Position and no sequence of numbers") from None
    if config is not None and len(config) != 7:
        raise UsageError(f"{name}: a configuration has seven numbers, (1, 0, 1, 0, 0, 0, 0)")
    return Position._make((*reals[:9], config, *reals[9:], *frames))


def _form(values: Tuple[Any, ...]) -> Optional[Tuple[float, ...]]:
    count = values.index(None) if None in values else len(values)
    return values[:count] or None


class Task(NamedTuple):
    """An entry of the list of tasks. An empty one has None everywhere."""

    program: Optional[str] = None
    line: Optional[int] = None
    state: Optional[int] = None
    """0 aborted, 1 paused, 2 running."""
    parent: Optional[str] = None
    """The program that called it."""


class Alarm(NamedTuple):
    """An entry of a list of alarms. An empty one has None everywhere."""

    time: Optional[str] = None
    """When it came, by the controller's own clock: "2026-01-01 09:30:12"."""
    id: Optional[int] = None
    """Number of the alarm's group."""
    number: Optional[int] = None
    """Number within that group."""
    severity: Optional[int] = None
    severity_text: Optional[str] = None
    message: Optional[str] = None
    cause_id: Optional[int] = None
    cause_number: Optional[int] = None
    cause: Optional[str] = None


class Change(NamedTuple):
    """A tag that changed, or the link: then the name is "link" and the value "lost" or "back". It is
    lost while refreshes fail, even if the controller answers and refuses them."""

    name: str
    value: Any
    unit: str = ""
    """"mm", "deg" or empty."""
    quality: str = "good"
    """"good", or "refused" if the controller refuses the tag."""
    time: Optional[datetime] = None
    """When the value was read, in UTC."""
    reason: Optional[Reason] = None
    """Why the tag is refused, or the link lost."""

    @property
    def is_link(self) -> bool:
        """Whether it tells of the link and not of a tag."""
        return self.name == "link"

    def __str__(self) -> str:
        shown = self.quality if self.quality != "good" else f"{self.value}"
        if self.quality == "good" and isinstance(self.value, str) and not self.is_link:
            shown = repr(self.value)
        unit = f" {self.unit}" if self.unit and self.value is not None else ""
        reason = f": {self.reason}" if self.reason is not None else ""
        return f"{self.name}={shown}{unit}{reason}"

"""The exceptions of the everyday level, and the reasons that they tell."""

from typing import NamedTuple, Optional, Tuple

__all__ = ["Error", "NotConnected", "Reason", "Refused", "UsageError"]


class Reason(NamedTuple):
    """Why something failed. As text it is a sentence fit to show."""

    message: str
    """All of it in words: "R[2]: Register is write-protected (WriteRFloat, status -20)"."""
    item: str = ""
    """What it was about: "R[2]", a host; may be empty."""
    operation: str = ""
    """The operation of the component that failed; empty if it was not asked."""
    status: Optional[int] = None
    """What the operation answered; None after a fault."""
    words: str = ""
    """The controller's own words, or those of the fault."""

    def __str__(self) -> str:
        return self.message


class Error(Exception):
    """What all exceptions of the everyday level are."""

    def __init__(self, message: str, reason: Optional[Reason] = None) -> None:
        super().__init__(message)
        self.reason: Reason = reason if reason is not None else Reason(message)
        """Why, as the controller says it."""

    @property
    def item(self) -> str:
        """What it was about: "R[2]", a host; may be empty."""
        return self.reason.item

    @property
    def operation(self) -> str:
        """The operation of the component that failed; empty if it was not asked."""
        return self.reason.operation

    @property
    def status(self) -> Optional[int]:
        """What the operation answered; None after a fault, or if it was not asked."""
        return self.reason.status

    @property
    def words(self) -> str:
        """The controller's own words, or those of the fault."""
        return self.reason.words


class NotConnected(Error):
    """There is no connection to the controller. refresh() tries again when it is time."""

    written: Tuple[str, ...] = ()
    """Of several values to write, the names of those that were written before."""


class Refused(Error):
    """The controller refuses; the connection is up."""

    written: Tuple[str, ...] = ()
    """Of several values to write, the names of those that were written before."""


class UsageError(Error, ValueError):
    """An error of use, found before the controller is asked: a name that is none, a value that does
    not fit, a file that exists."""

    def __init__(self, message: str, suggestion: str = "") -> None:
        super().__init__(message)
        self.suggestion = suggestion
        """What is probably meant, "R[1-3]"; empty if that cannot be told."""

"""The everyday level: a controller with its tags by name, and watches."""

import asyncio
import atexit
import os
import threading
import time
import weakref
from collections import deque
from collections.abc import AsyncIterator, Callable, Iterable, Iterator, Mapping
from datetime import datetime
from types import TracebackType
from typing import Any, Deque, List, NamedTuple, Optional, Set, Tuple, Type, Union

from . import _native
from ._errors import Reason, UsageError
from ._simulation import SimulatedCell, simulation_of
from ._values import Change, Position, position_of

__all__ = ["ENCODINGS", "Controller", "Retry", "Tag", "Watch"]

ENCODINGS: Tuple[str, ...] = tuple(_native._encodings())
"""The names of encodings of a controller's texts."""


class Retry(NamedTuple):
    """How long to wait before a lost link is tried again, in seconds: `first` at first, then twice as
    long each time, up to `most`. Each wait is shortened at random by up to the part `shortened`."""

    first: float = 1.0
    most: float = 30.0
    shortened: float = 0.25


class Tag:
    """A named value of a controller. It stays good as long as the controller lives, whatever happens
    to the link, and always shows what the last refresh brought."""

    __slots__ = ("_cell", "_index", "name")

    def __init__(self, cell: "Controller", index: int) -> None:
        self._cell = cell
        self._index = index
        self.name: str = cell.names[index]
        """The name: "R[3]", "PR[1].X"."""

    @property
    def value(self) -> Any:
        """The last good value; None if there is none yet, or none any more."""
        return self._cell._last_value(self._index)

    @property
    def quality(self) -> str:
        """"good": what the controller had at the last refresh. "stale": an older value, or none yet.
        "refused": the controller refuses the item."""
        return self._cell._quality(self._index)

    @property
    def time(self) -> Optional[datetime]:
        """When the value was read, in UTC; None before the first time."""
        return self._cell._time(self._index)

    @property
    def reason(self) -> Optional[Reason]:
        """Why the value is not good; None while it is."""
        reason: Optional[Reason] = self._cell._reason(self._index)
        return reason

    @property
    def unit(self) -> str:
        """"mm", "deg" or empty."""
        return self._cell._unit(self._index)

    @property
    def item(self) -> str:
        """The register or signal that it belongs to: "PR[1]"."""
        return self._cell._item(self._index)

    @property
    def comment(self) -> Optional[str]:
        """The comment of its item; None without comments=True, or before it was read."""
        name = f"{self.item}.comment"
        return str(self._cell[name]) if name in self._cell and self._is_read(name) else None

    def _is_read(self, name: str) -> bool:
        return self._cell._time(self._cell._find(name)) is not None

    def write(self, value: Any) -> None:
        """Write a value at once. Raises as Controller.write does."""
        self._cell.write({self.name: value})

    def __repr__(self) -> str:
        unit = f" {self.unit}" if self.unit else ""
        return f"<Tag {self.name}={self.value!r}{unit} {self.quality}>"


class Controller(_native._LiveController):
    """A robot controller whose values stay connected.

    with orif.Controller("cell1", ["R[1-10]", "PR[1]", "DO[1-16]"]) as cell:
        cell.refresh()
        print(cell["R[3]"], cell["PR[1].X"], cell["DO[1]"])
        cell["R[3]"] = 5

    Several threads may use one controller; they wait for each other. Nothing is connected before the
    first refresh() or write.
    """

    def __init__(
        self,
        host: str,
        tags: Iterable[str],
        *,
        simulate: Union[bool, str, "os.PathLike[str]", SimulatedCell] = False,
        component: Union[None, str, "os.PathLike[str]"] = None,
        port: Optional[int] = None,
        timeout: Optional[float] = None,
        comments: bool = False,
        encoding: Optional[str] = None,
        retry: Union[Retry, Tuple[float, float, float]] = Retry(),
    ) -> None:
        """Check the names; nothing is connected yet. Raises UsageError.

        host: name or address of the controller, or sim://ADDRESS:PORT for a served simulated cell.
        tags: names such as "R[1-10]", "PR[1]", "PR[1].X", "SR[1]", "$NAME:real", "DO[1-16]".
        simulate: True for the demonstration cell, host "demo"; the path of a scenario or a recording;
            or a SimulatedCell.
        component: path of the communication component; the installed one without.
        port: TCP port; the component's default without.
        timeout: seconds that the component waits for an answer, 0.1 or more.
        comments: whether registers and signals have their comments, as tags "R[1].comment".
        encoding: of the controller's texts, one of orif.ENCODINGS; UTF-8 without.
        retry: how long to wait before a lost link is tried again.
        """
        if "_watches" in vars(self):
            raise UsageError("a controller is made once; make another one")
        if isinstance(tags, (str, bytes)):
            raise UsageError("tags is a list of names", f'["{tags!s}"]')
        if encoding is not None:
            encoding = encoding.lower().replace("_", "-")
            if encoding not in ENCODINGS:
                raise UsageError(f"there is no encoding {encoding!r}; there are {', '.join(ENCODINGS)}")
        path = os.path.abspath(os.fspath(component)) if component is not None else ""
        super().__init__(
            host, list(tags), simulation_of(simulate), path, port, timeout, comments, encoding, Retry(*retry)
        )
        self._watches: "weakref.WeakSet[Watch]" = weakref.WeakSet()

    def __enter__(self) -> "Controller":
        return self

    def __exit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.close()

    def close(self) -> None:
        """Stop the watches, and close the link. refresh() and writes open it again.

        It waits for the threads of watches, unless a callback calls it, and hands what their callbacks
        have raised to threading.excepthook.
        """
        with _registering:
            watches = list(vars(self).get("_watches", ()))
        for watch in watches:
            watch.end()
            watch._report()
        super().close()

    @property
    def names(self) -> Tuple[str, ...]:
        """The names of all tags, in the order in which they were given."""
        return self._names

    def __setitem__(self, name: str, value: Any) -> None:
        """Write a value at once; a refresh shows it. Raises as write does."""
        self.write({name: value})

    def __contains__(self, name: object) -> bool:
        try:
            self._find(name)  # type: ignore[arg-type]
        except (UsageError, TypeError):
            return False
        return True

    def __iter__(self) -> Iterator[str]:
        return iter(self._names)

    def __len__(self) -> int:
        return len(self._names)

    def tag(self, name: str) -> Tag:
        """The tag of that name, with its value, unit, quality, time and comment."""
        place = self._find(name)
        if place < 0:
            fields = [each for each in self._names if each.startswith(f"{name}.")]
            raise UsageError(f"{name!r} has fields; name one of them: {fields[0]}", fields[0])
        return Tag(self, place)

    def write(self, values: Mapping[str, Any]) -> None:
        """Write several values in order, at once; a refresh shows them.

        The parts of a position, given as a Position, a sequence of X, Y, Z, W, P, R and so on, or one
        by one ("PR[1].X"), are written together; those not named stay as the controller has them.

        Raises UsageError, with nothing written, for a name that is none and a value that does not fit;
        Refused if the controller refuses a value. Nothing is written after that, and its attribute
        `written` has the names that were written before. Raises NotConnected while the link is lost.
        """
        parts: List[Tuple[str, Any]] = []
        for name, value in values.items():
            place = self._find(name)
            if place >= 0:
                parts.append((self._names[place], value))
            else:
                parts.extend(_parts(name, value))
        self._write(parts)

    def watch(
        self,
        every: float = 0.1,
        callback: Optional[Callable[[Change], object]] = None,
        *,
        raise_lost: bool = False,
    ) -> "Watch":
        """Refresh at a steady pace, every so many seconds, and tell what changed.

        for change in cell.watch(every=0.1): ...        # also: async for
        with cell.watch(every=0.1, callback=print): ... # in a thread of its own, until the end

        The first refresh tells all values, and so does one after a gap. A refresh that fails is told
        as a change named "link" of value "lost" with a reason, then "back"; with raise_lost it raises
        NotConnected instead, or Refused if the controller refuses it and the link is up.
        """
        return Watch(self, every, callback, raise_lost)

    def __repr__(self) -> str:
        return f"<Controller {self.host} {self.link}, {len(self)} tags>"


def _parts(name: str, value: Any) -> Iterator[Tuple[str, Any]]:
    """The single values to write for what was given for a position."""
    position = position_of(name, value)
    # Of two forms, the cartesian one is written.
    cartesian = any(part is not None for part in position[:10])
    form = Position._fields[:10] if cartesian else Position._fields[10:19]
    given = [each for each in (*form, "UF", "UT") if getattr(position, each) is not None]
    if not given:
        raise UsageError(f"{name}: a Position without values writes nothing")
    for field in given:
        part = getattr(position, field)
        yield f"{name}.{field}", part if field != "config" else " ".join(map(str, part))


class _WatchThread(threading.Thread):
    """The thread of a watch. It waits for no other one's end, which may be waiting for its own."""


class Watch:
    """The changes of a controller, as iterator, as async iterator, or told to a callback.

    As an iterator it refreshes when it is asked for the next change, and sleeps in between; Ctrl-C
    ends the sleep. With a callback it has a thread of its own, until stop() or the end of a `with`;
    an exception of the callback ends it too, and stop() raises it. If the controller is closed
    instead, or the interpreter ends, threading.excepthook gets it.
    """

    def __init__(
        self, cell: Controller, every: float, callback: Optional[Callable[[Change], object]], raise_lost: bool
    ) -> None:
        self._cell = cell
        self._watch = _native._LiveWatch(cell, every)
        self._raise_lost = raise_lost
        self._ready: Deque[Change] = deque()
        self._stepping = threading.RLock()
        self._stopped = threading.Event()
        self._error: Optional[BaseException] = None
        self._thread: Optional[threading.Thread] = None
        with _registering:
            cell._watches.add(self)
        if callback is not None:
            self._thread = _WatchThread(
                target=self._run, args=(callback,), name=f"orif watch {cell.host}", daemon=True
            )
            _watches.add(self)
            self._thread.start()

    @property
    def skipped(self) -> int:
        """How many turns were left out, because one before took too long."""
        return self._watch.skipped

    def stop(self, timeout: Optional[float] = None) -> bool:
        """End the watch. With a callback, wait for its thread, at most `timeout` seconds, and raise
        what the callback has raised. A callback may call it, of this watch and of others, and does not
        wait. Returns whether no further change is told."""
        ended = self.end(timeout)
        error = self._take_error()
        if error is not None:
            raise error
        return ended

    def end(self, timeout: Optional[float] = None) -> bool:
        """The same without raising."""
        self._stopped.set()
        self._watch.end()
        if self._thread is None or self._thread is threading.current_thread():
            return True
        if not isinstance(threading.current_thread(), _WatchThread):
            self._thread.join(timeout)
        return not self._thread.is_alive()

    def _take_error(self) -> Optional[BaseException]:
        error, self._error = self._error, None
        if error is not None:
            _watches.discard(self)
        return error

    def _report(self) -> None:
        """Tell what the callback has raised, if nobody asks for it."""
        error = self._take_error()
        if error is not None:
            threading.excepthook(
                threading.ExceptHookArgs((type(error), error, error.__traceback__, self._thread))
            )

    def __enter__(self) -> "Watch":
        return self

    def __exit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.stop()

    def __iter__(self) -> Iterator[Change]:
        return self

    def __next__(self) -> Change:
        while not self._ready:
            if self._stopped.wait(self._watch.wait()):
                raise StopIteration
            self._step()
        return self._next_ready()

    def __aiter__(self) -> AsyncIterator[Change]:
        return self

    async def __anext__(self) -> Change:
        while not self._ready:
            while (pause := self._watch.wait()) > 0 and not self._stopped.is_set():
                await asyncio.sleep(min(pause, _STOP_IS_SEEN))
            if self._stopped.is_set():
                raise StopAsyncIteration
            # The event loop goes on while the controller answers.
            await asyncio.get_running_loop().run_in_executor(None, self._step)
        return self._next_ready()

    def _step(self) -> None:
        # It goes on after whoever awaits it was cancelled, and its changes are for the next one.
        with self._stepping:
            if not self._ready:
                self._ready.extend(self._watch.step())

    def _next_ready(self) -> Change:
        change = self._ready.popleft()
        if self._raise_lost and change.is_link and change.value == "lost":
            raise self._watch.failure
        return change

    def _run(self, callback: Callable[[Change], object]) -> None:
        try:
            for change in self:
                callback(change)
                if self._stopped.is_set():
                    break
        except BaseException as error:
            self._error = error
        else:
            _watches.discard(self)

    def __repr__(self) -> str:
        return f"<Watch of {self._cell.host}>"


_STOP_IS_SEEN = 0.05  # within so many seconds by a watch that an event loop waits for

_registering = threading.RLock()  # a WeakSet cannot be iterated while another thread adds to it

_watches: Set[Watch] = set()  # that have a thread, or an exception that nobody was told


@atexit.register
def _stop_watches() -> None:
    """The interpreter ends quietly: no thread of ours is left to call Python."""
    for watch in list(_watches):
        watch._stopped.set()
    end = time.monotonic() + 2.0
    for watch in list(_watches):
        watch.end(max(0.0, end - time.monotonic()))
        watch._report()

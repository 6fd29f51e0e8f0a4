"""Simulated cells: controllers in memory, to develop and test against."""

import os
from collections.abc import Sequence
from types import TracebackType
from typing import Any, Dict, List, Optional, Tuple, Type, Union

from . import _native
from ._errors import UsageError
from ._values import Alarm, Position, Task, position_of

__all__ = ["ServedCell", "SimulatedCell", "SimulatedController"]


class SimulatedCell:
    """Robot controllers in memory, by host name.

    cell = orif.SimulatedCell()
    robot = cell.add("cell1")
    robot["R[1]"] = 42
    with orif.Controller("cell1", ["R[1]"], simulate=cell) as controller: ...

    Time passes with advance() only. If it was made with real_time it passes with the clock: the cell
    is at the present moment whenever a Controller, this object or a served client looks at it. A Core
    that has the cell does not move it.
    """

    def __init__(
        self, file: Union[None, bool, str, "os.PathLike[str]"] = None, *, real_time: Optional[bool] = None
    ) -> None:
        """Without a file the cell is empty. A file is a scenario (.json) or a recording (.csv, .db);
        True stands for the demonstration cell. Raises UsageError for what is wrong in a file."""
        if file is None or file is False:
            if real_time:
                raise UsageError("a cell that is built in code has time of its own; call advance()")
            self._network = _native._SimulatedNetwork()
        else:
            name = "demo" if file is True else os.fspath(file)
            if file is not True and not name.endswith((".json", ".csv", ".db")):
                raise UsageError(f"{name!r} is no cell; a scenario ends in .json, a recording in .csv or .db")
            self._network = _native._SimulatedNetwork.load(name, bool(real_time))

    def add(
        self,
        host: str,
        *,
        numeric_registers: int = 10000,
        position_registers: int = 500,
        string_registers: int = 500,
        motion_groups: int = 8,
    ) -> "SimulatedController":
        """Add a controller. All its registers are 0 or empty, and it has no variables."""
        self._network.add(host, numeric_registers, position_registers, string_registers, motion_groups)
        return self[host]

    def __getitem__(self, host: str) -> "SimulatedController":
        """The controller of that host name."""
        return SimulatedController(self, host)

    @property
    def hosts(self) -> List[str]:
        """The host names of the controllers."""
        return self._network.hosts

    @property
    def now(self) -> float:
        """How much time has passed in the cell, in seconds."""
        return self._network.now

    def advance(self, seconds: float) -> None:
        """Let time pass: what the controllers do by themselves happens at once."""
        if seconds < 0:
            raise UsageError("time goes forward only")
        self._network.advance(seconds)

    def serve(self, address: str = "127.0.0.1:0") -> "ServedCell":
        """Serve the cell to other processes, and to sim://... host names of this one. Port 0 is any
        free one. Whoever reaches the port can write. Raises UsageError without a controller."""
        return ServedCell(self, address)

    def __repr__(self) -> str:
        return f"<SimulatedCell {' '.join(self.hosts)}>"


class ServedCell:
    """A simulated cell that is served until stop(), or the end of a `with`."""

    def __init__(self, cell: SimulatedCell, address: str) -> None:
        self._service = _native._SimulatedService(cell._network, address)
        self.host: str = self._service.host
        """The host name that leads to its first controller: "sim://127.0.0.1:47008"."""

    def stop(self) -> None:
        """End the connections, and listen no more."""
        self._service.stop()

    def __enter__(self) -> "ServedCell":
        return self

    def __exit__(
        self, kind: Optional[Type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self.stop()

    def __repr__(self) -> str:
        return f"<ServedCell {self.host}>"


class SimulatedController:
    """One controller of a simulated cell: its data by the usual names, and its faults.

    robot["R[1]"] = 42; robot["PR[1]"] = Position(X=850.0); robot["SR[1]"] = "BRACKET-7"
    robot["DO[1]"] = True; robot["$PAYLOAD"] = 6.5; robot["R[1].comment"] = "Parts"

    Reading shows what clients have written. Everything may be used while clients are connected.
    """

    def __init__(self, cell: SimulatedCell, host: str) -> None:
        self._robot = _native._SimulatedRobot(cell._network, host)

    @property
    def host(self) -> str:
        """Its host name."""
        return self._robot.host

    def __getitem__(self, name: str) -> Any:
        """The value of a register, signal, variable or comment. Raises UsageError for one
        that the controller does not have."""
        value = self._robot.get(name)
        if not isinstance(value, tuple):
            return value
        xyzwpr, config, joint, frame, tool = value
        return Position._make((*xyzwpr, tuple(config) if config is not None else None, *joint, frame, tool))

    def __setitem__(self, name: str, value: Any) -> None:
        """Set it. The forms of a position that the value has are valid. Raises as reading, and
        UsageError for a value that does not fit."""
        if _is_sequence(value):
            position = position_of(name, value)
            value = (position[:9], position.config, position[10:19], position.UF, position.UT)
        self._robot.set(name, value)

    @property
    def tasks(self) -> List[Task]:
        """The list of tasks."""
        return [Task(*each) for each in self._robot.tasks()]

    @tasks.setter
    def tasks(self, tasks: Sequence[Task]) -> None:
        self._robot.set_tasks([(t.program or "", t.line or 0, t.state or 0, t.parent or "") for t in tasks])

    @property
    def alarms(self) -> List[Alarm]:
        """The active alarms, newest first."""
        return self.alarm_list("active")

    @alarms.setter
    def alarms(self, alarms: Sequence[Alarm]) -> None:
        self.set_alarm_list("active", alarms)

    def alarm_list(self, which: str) -> List[Alarm]:
        """A list of alarms, newest first: "active", "password" or "history"."""
        return [Alarm(_date(time), *rest) for time, *rest in self._robot.alarms(which)]

    def set_alarm_list(self, which: str, alarms: Sequence[Alarm]) -> None:
        """Replace a list of alarms."""
        self._robot.set_alarms(which, [_entry(each) for each in alarms])

    @property
    def commands(self) -> List[str]:
        """The commands that clients sent, oldest first."""
        return self._robot.commands()

    def lose_connections(self) -> None:
        """Every connection is lost; clients may connect again at once."""
        self._robot.lose_connections()

    def cut_link(self) -> None:
        """Every connection is lost, and none can be made until restore_link()."""
        self._robot.cut_link()

    def restore_link(self) -> None:
        """End cut_link()."""
        self._robot.restore_link()

    def answer_after(self, seconds: float) -> None:
        """Answer late from now on; 0 ends it. An answer later than a client's time-out is refused. In
        this process nothing really waits; a served cell does."""
        self._robot.answer_after(round(seconds * 1000))

    def fail_next(self, operation: str, status: int, words: str, times: int = 1) -> None:
        """Answer the next calls of an operation of the component ("WriteRLong") with this status and
        these words, and do not carry them out."""
        try:
            self._robot.fail_next(operation, status, words, times)
        except ValueError as error:
            raise UsageError(str(error)) from None

    def recover(self) -> None:
        """End all that was made to go wrong."""
        self._robot.recover()

    def __repr__(self) -> str:
        return f"<SimulatedController {self.host}>"


def simulation_of(
    simulate: Union[bool, str, "os.PathLike[str]", SimulatedCell]
) -> Optional["_native._SimulatedNetwork"]:
    """The network behind what a program gives for `simulate`."""
    if simulate is False or simulate is None:
        return None
    if isinstance(simulate, SimulatedCell):
        return simulate._network
    return SimulatedCell(simulate, real_time=True)._network


def _is_sequence(value: Any) -> bool:
    try:
        return not isinstance(value, (str, bytes)) and len(value) >= 0
    except TypeError:  # NumPy's arrays of one number have a length, which raises
        return False


def _date(time: Sequence[int]) -> Optional[str]:
    year, month, day, hour, minute, second = time
    return f"{year:04}-{month:02}-{day:02} {hour:02}:{minute:02}:{second:02}" if month else None


def _entry(alarm: Alarm) -> Tuple[Any, ...]:
    time = [0] * 6
    if alarm.time:
        try:
            day, clock = alarm.time.split(" ")
            time = [int(part) for part in (*day.split("-"), *clock.split(":"))]
        except ValueError:
            time = []
        if len(time) != 6:
            raise UsageError(f"{alarm.time!r} is no time like 2026-01-01 09:30:12")
    numbers: Dict[str, int] = {f: getattr(alarm, f) or 0 for f in ("id", "number", "severity", "cause_id", "cause_number")}
    return (
        time, numbers["id"], numbers["number"], numbers["severity"], alarm.severity_text or "",
        alarm.message or "", numbers["cause_id"], numbers["cause_number"], alarm.cause or "",
    )

"""Robot controllers: their registers, positions, texts, variables, tasks, alarms and signals.

Controller has values by name and stays connected; Core is the object model of the library. Both have
the same data, and help() explains each.
"""

from ._native import *
from ._native import __version__

from ._controller import ENCODINGS, Controller, Retry, Tag, Watch
from ._errors import Error, NotConnected, Reason, Refused, UsageError
from ._recording import Recorded, read_recording, record
from ._simulation import ServedCell, SimulatedCell, SimulatedController
from ._values import Alarm, Change, Position, Task

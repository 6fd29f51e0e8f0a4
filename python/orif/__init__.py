"""Robot controllers: their registers, positions, texts, variables, tasks, alarms and signals.

Controller has values by name and stays connected; Core is the object model of the library. Both have
the same data, and help() explains each.
"""

from ._native import *
from ._native import __version__

from ._controller import *
from ._errors import *
from ._recording import *
from ._simulation import *
from ._values import *

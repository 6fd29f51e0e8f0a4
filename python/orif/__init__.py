"""Robot controllers: their registers, positions, texts, variables, tasks, alarms and signals."""

from ._native import *
from ._native import __version__

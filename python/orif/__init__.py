"""Robot controllers: their registers, positions, texts, variables, tasks, alarms and signals."""

from ._native import __version__

__all__ = ["__version__"]

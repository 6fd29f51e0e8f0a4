"""The fixtures of the package, which need not be installed here."""

from orif.testing import orif_cell, orif_connect, orif_robot  # noqa: F401

"""Fixtures for pytest, which finds them by itself where the package is installed:

def test_counts_parts(orif_robot, orif_connect):
    orif_robot["R[1]"] = 41
    cell = orif_connect(["R[1]"])
    my_program.count(cell)
    assert orif_robot["R[1]"] == 42
"""

from collections.abc import Callable, Iterable, Iterator
from typing import Any, Dict, List

import pytest

from ._controller import Controller, Retry
from ._simulation import SimulatedCell, SimulatedController

__all__ = ["orif_cell", "orif_connect", "orif_robot"]

QUICK = Retry(first=0.01, most=0.05, shortened=0.0)


@pytest.fixture
def orif_cell() -> SimulatedCell:
    """A simulated cell with one controller, "cell1", that has nothing in it yet."""
    cell = SimulatedCell()
    cell.add("cell1")
    return cell


@pytest.fixture
def orif_robot(orif_cell: SimulatedCell) -> SimulatedController:
    """The simulated controller of orif_cell: set its data, look at them, make it go wrong."""
    return orif_cell["cell1"]


@pytest.fixture
def orif_connect(orif_cell: SimulatedCell) -> Iterator[Callable[..., Controller]]:
    """Makes controllers that are connected to orif_robot: orif_connect(["R[1-10]"]). They have been
    refreshed, come back from a lost link within 0.05 s, and are closed at the end of the test. Other
    arguments are those of orif.Controller."""
    made: List[Controller] = []

    def connect(tags: Iterable[str], **options: Any) -> Controller:
        settings: Dict[str, Any] = {"simulate": orif_cell, "retry": QUICK, **options}
        controller = Controller("cell1", tags, **settings)
        made.append(controller)
        controller.refresh()
        return controller

    yield connect
    for controller in made:
        controller.close()

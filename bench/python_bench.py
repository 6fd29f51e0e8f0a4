#!/usr/bin/env python3
"""Measures what Python takes with the library. Prints each figure, the least of some measurements,
beside its limit in nanoseconds. An argument chooses how often each is measured (9).

The cell is simulated and lies in the process; what is measured does not ask it.
"""

import sys
import timeit
from typing import Any

import numpy as np
import orif

REGISTERS = 1000


def main() -> None:
    repetitions = int(sys.argv[1]) if len(sys.argv) > 1 else 9
    simulated = orif.SimulatedCell()
    robot = simulated.add("cell")
    for index in range(1, REGISTERS + 1):
        robot[f"R[{index}]"] = index * 1.1
    core = orif.Core(simulate=simulated)
    assert core.Connect("cell")
    table = core.DataTable()
    assert table
    item = table.AddNumReg(orif.NUMREG_REAL, 1, REGISTERS)
    assert item and table.Refresh()
    buffer = np.zeros(REGISTERS, np.float32)
    strided = np.zeros(2 * REGISTERS, np.float32)[::2]
    cell = orif.Controller("cell", [f"R[1-{REGISTERS}]:real"], simulate=simulated)
    cell.refresh()
    names: dict[str, Any] = {
        "item": item, "buffer": buffer, "strided": strided, "cell": cell, "count": REGISTERS
    }  # fmt: skip

    failed = False
    for what, statement, values, limit in [
        ("GetValue, positional", "item.GetValue(3)", 1, 250),
        ("GetValue, keyword", "item.GetValue(Index=3)", 1, 400),
        ("registers into a NumPy array", "item.GetValues(1, buffer, count)", REGISTERS, 30),
        ("the same, every second element", "item.GetValues(1, strided, count)", REGISTERS, 0),
        ("all values as a dict", "cell.values()", REGISTERS, 80),
        ('cell["R[3]"]', 'cell["R[3]"]', 1, 300),
    ]:
        number = 200000 // values
        times = timeit.repeat(statement, globals=names, number=number, repeat=repetitions)
        figure = min(times) / number / values * 1e9
        verdict = "reported" if limit == 0 else f"ns {limit} {'met' if figure <= limit else 'MISSED'}"
        failed = failed or "MISSED" in verdict
        print(f"{what:34} {'Python':6} {figure:10.1f} {'':10} {'':8}  {verdict}")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()

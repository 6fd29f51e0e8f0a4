"""Watches two cells in one event loop, which goes on while controllers answer."""

import asyncio

import orif


async def wait_for_parts(robot: orif.SimulatedController, cell: orif.Controller, wanted: int) -> None:
    async for change in cell.watch(every=0.02):
        print(cell.host, change)
        if change.value == wanted:
            return
        robot[change.name] = change.value + 1  # the simulated robot makes another part


async def main() -> None:
    simulated = orif.SimulatedCell()
    for host in ("cell1", "cell2"):
        robot = simulated.add(host)
        with orif.Controller(host, ["R[1]"], simulate=simulated) as cell:
            await asyncio.wait_for(wait_for_parts(robot, cell, 2), 10)
            # Other calls that may wait go into a thread.
            await asyncio.get_running_loop().run_in_executor(None, cell.write, {"R[1]": 0})
            print(host, "starts again at", robot["R[1]"])


asyncio.run(main())

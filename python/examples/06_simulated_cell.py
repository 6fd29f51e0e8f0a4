"""A cell built in code, with a program under test and with trouble on command."""

import orif


def count_part(cell: orif.Controller) -> None:
    """The program under test."""
    cell.refresh()
    if cell["DI[1]"]:
        cell.write({"R[1]": cell["R[1]"] + 1, "SR[1]": "part made"})


simulated = orif.SimulatedCell()
robot = simulated.add("cell1", numeric_registers=100)
robot["R[1]"] = 41
robot["DI[1]"] = True
robot["PR[1]"] = orif.Position(850, 0, 620, 180, 0, 90, config=(1, 0, 1, 0, 0, 0, 0))
robot.tasks = [orif.Task("MAIN", line=12, state=2)]
robot.alarms = [orif.Alarm("2026-01-01 09:30:12", 57, 3, message="GRIP-003 Part not held")]

tags = ["R[1]", "DI[1]", "SR[1]", "PR[1]", "PRG[1]", "ALM[1]"]
with orif.Controller("cell1", tags, simulate=simulated) as cell:
    count_part(cell)
    print(robot["R[1]"], robot["SR[1]"])
    print(cell["PR[1]"])
    print(cell["PRG[1]"].program, "in line", cell["PRG[1]"].line)
    print(cell["ALM[1]"].message)

    robot.answer_after(60)
    try:
        count_part(cell)
    except orif.Error as error:
        print(error.words)
    robot.recover()
    count_part(cell)
    print(robot["R[1]"])

with simulated.serve() as served:  # for other processes
    with orif.Controller(served.host, ["R[1]"]) as other:
        other.refresh()
        print("served:", other["R[1]"])

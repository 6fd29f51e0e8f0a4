"""What goes wrong, and how a program sees it."""

import orif

simulated = orif.SimulatedCell(True)
robot = simulated["demo"]

try:
    orif.Controller("demo", ["R[1..3]"], simulate=simulated)
except orif.UsageError as error:
    print("use:", error.suggestion)

with orif.Controller("demo", ["R[1-3]", "R[10001]"], simulate=simulated) as cell:
    cell.refresh()  # one name that the controller refuses is no failure
    print(cell.tag("R[1]"), "but", cell.tag("R[10001]").quality)

    robot.fail_next("WriteRLong", -20, "Register is write-protected")
    try:
        cell.write({"R[1]": 1, "R[2]": 2})
    except orif.Refused as refused:
        print("refused:", refused)
        print("  in parts:", refused.item, refused.operation, refused.status, refused.words)

    robot.cut_link()
    try:
        cell.refresh()
    except orif.NotConnected as lost:
        print("lost:", lost)
    print(cell.link, "with", cell.tag("R[1]"))

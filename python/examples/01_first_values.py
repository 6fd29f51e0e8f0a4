"""Reads values by name, writes one, and reads it again.

Runs against the demonstration cell. For a robot controller give its name or address, and leave
`simulate` out.
"""

import orif

with orif.Controller("demo", ["R[1-3]", "PR[1]", "DO[1-4]", "$PAYLOAD:real"], simulate=True) as cell:
    cell.refresh()
    print("R[3] is", cell["R[3]"])
    print("PR[1].X is", cell["PR[1].X"], cell.tag("PR[1].X").unit)
    print("DO[1] is", cell["DO[1]"])
    print("everything:", cell.values()["$PAYLOAD"], "kg and", len(cell) - 1, "more")

    cell["R[3]"] = 5  # written at once
    cell.refresh()
    print("now R[3] is", cell["R[3]"])

    home = cell["PR[1]"]
    x, y, z = home[:3]
    print("home is", x, y, z, "with the configuration", home.config)
    cell["PR[1]"] = orif.Position(Z=home.Z + 100)  # the rest stays
    cell.refresh()
    print("and now", cell["PR[1]"][:3])

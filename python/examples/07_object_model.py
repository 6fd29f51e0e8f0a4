"""The object model: register data in a table, read it with one refresh, ask the items for values."""

import array

import orif

core = orif.Core(simulate=True)  # a robot: orif.Core(), with its component installed
if not core.Connect("demo"):
    raise SystemExit(core.DebugMessage())

table = core.DataTable()
assert table is not None
numbers = table.AddNumReg(orif.NUMREG_INT, 1, 5)
position = table.AddPosReg(DataType=orif.POSREG, Group=1, StartIndex=1, EndIndex=3)
assert numbers and position

table.Refresh()  # one transfer for all items
ok, value = numbers.GetValue(3)
print("R[3] =", value if ok else "?")

numbers.SetValue(3, 5)  # goes out at once; the next refresh shows it
table.Refresh()
values = array.array("i", [0] * 5)  # a NumPy array does as well
numbers.GetValues(1, values, 5)
print("R[1] to R[5] =", *values)

ok, x, y, z, *rest = position.GetValueXyzwpr(1)
print("PR[1] =", x, y, z, "mm")

outputs = [0] * 4
core.ReadSDO(1, outputs, 4)
print("DO[1] to DO[4] =", *outputs)
core.Disconnect()

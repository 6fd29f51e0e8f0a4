' Reads three numeric registers of a controller with one refresh. The controller "demo" is simulated; for a real one,
' connect to its name or address.
Const NUMREG_INT = 0
Dim core, table, counters, i, value
Set core = CreateObject("Orif.Core")
If Not core.Connect("demo") Then WScript.Quit 1
Set table = core.DataTable
Set counters = table.AddNumReg(NUMREG_INT, 1, 3)
If Not table.Refresh Then WScript.Quit 1
For i = counters.StartIndex To counters.EndIndex
  If counters.GetValue(i, value) Then WScript.Echo "R[" & i & "] = " & value
Next

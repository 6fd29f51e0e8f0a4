' Writes go to the controller at once; the item shows the new values after the next refresh.
Option Explicit
Const NUMREG_REAL = 1

Dim core, table, reals, told
Set core = CreateObject("Orif.Core")
Expect "Connect", core.Connect("demo")
Set table = core.DataTable
Set reals = table.AddNumReg(NUMREG_REAL, 3, 5)
If reals Is Nothing Then Expect "AddNumReg", False
Expect "Refresh", table.Refresh
Show "read     "

' One value, and the first two elements of an array.
Expect "SetValue", reals.SetValue(3, "37.5")
Expect "SetValuesReal", reals.SetValuesReal(4, Array(62.5, 80), 2)
Show "written  "

Expect "Refresh", table.Refresh
Show "refreshed"

' A refusal is False and no error. The last line of the debug trail says why.
If reals.SetValue(6, 1) Then WScript.Quit 1
told = core.DebugMessage
WScript.Echo Mid(told, InStr(told, "["))

' Ends the script at the first member that answers False.
Sub Expect(what, success)
  If success Then Exit Sub
  WScript.Echo what & " failed: " & core.DebugMessage
  WScript.Quit 1
End Sub

Sub Show(when)
  Dim i, value, line
  line = when
  For i = reals.StartIndex To reals.EndIndex
    If reals.GetValue(i, value) Then line = line & "  R[" & i & "] = " & value
  Next
  WScript.Echo line
End Sub

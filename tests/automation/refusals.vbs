' What automation itself refuses is an error of the script, before the member runs; what a member refuses is False. By
' reference, any variable will do for an output, and a value that is no variable is dropped.
Option Explicit
Dim core, table, numbers, text, short(2), several(8)

Set core = CreateObject("Orif.Core")
core.Connect "demo"
Set table = core.DataTable
Set numbers = table.AddNumReg(1, 1, 3)
table.Refresh

On Error Resume Next
table.Item(1).NoSuchMember
Show "No such member"
core.Connect
Show "Connect without a host"
core.Connect "demo", 1
Show "Connect with one argument more"
core.PortNumber = "first"
Show "A port that is no number"
core.ClientID = 70000
Show "A client identifier beyond 16 bits"
core.ReadSDO 1, 5, 1
Show "A number for an array"
core.WriteSDO 1, Array("on"), 1
Show "An array with an element that is no number"
core.ObjectID = 1
Show "A property that is only read"

' Refused by the member.
Tell numbers.SetValue(1, Array(1))
Tell numbers.SetValues(1, Array(1, 2), 3)
Tell numbers.SetValuesReal(3, Array(1, 2), 2)
Tell table.AddNumReg(99, 1, 1) Is Nothing
Tell core.ReadSDO(1, short, 4)
Tell core.Connect("demo")
Show "No errors"

' Optional arguments are left out or Empty.
Tell core.ClearAlarm
Tell core.ClearAlarm(Empty)
Tell core.ClearAlarm(0)

' Outputs into a variant of another type, into an element, and into nothing.
text = "old"
Tell numbers.GetValue(1, text)
Tell TypeName(text)
Tell numbers.GetValue(2, several(4))
Tell several(4)
Tell numbers.GetValue(9, text)
Tell text
Tell numbers.GetValue(3, 5)
Show "No errors"

' Numbers as text, whatever the locale; a single variable as an array of one.
Tell numbers.SetValue(1, "1.5")
Tell numbers.SetValuesReal(2, 2.5, 1)
Tell numbers.SetValues(3, Array("3.5"), 1)
Tell table.Refresh
Tell numbers.Value(1) & " " & numbers.Value(2) & " " & numbers.Value(3)
Show "No errors"

Sub Tell(what)
  WScript.Echo "  " & what
End Sub

Sub Show(what)
  WScript.Echo what & ": " & Err.Number
  Err.Clear
End Sub

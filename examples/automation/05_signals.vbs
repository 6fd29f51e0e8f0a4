' Reads and writes runs of bit signals and of group signals. They go straight to and from the controller, without a
' table.
Option Explicit
Dim core, bits(3), groups(1), told

Set core = CreateObject("Orif.Core")
Expect "Connect", core.Connect("demo")

Expect "ReadSDO", core.ReadSDO(1, bits, 4)
WScript.Echo "DO[1] to DO[4]" & Listed(bits)
Expect "ReadSDI", core.ReadSDI(1, bits, 4)
WScript.Echo "DI[1] to DI[4]" & Listed(bits)

Expect "WriteSDO", core.WriteSDO(3, Array(1, 1), 2)
Expect "ReadSDO", core.ReadSDO(1, bits, 4)
WScript.Echo "DO[1] to DO[4]" & Listed(bits)

Expect "ReadGO", core.ReadGO(1, groups, 2)
WScript.Echo "GO[1] and GO[2]" & Listed(groups)
Expect "WriteGO", core.WriteGO(2, Array(250), 1)
' The states as an array that is answered.
WScript.Echo "GO[1] and GO[2]" & Listed(core.GO(1, 2))

' An array that is too short is refused before anything is sent.
If core.ReadSDI(1, bits, 5) Then WScript.Quit 1
told = core.DebugMessage
WScript.Echo Mid(told, InStr(told, "["))

' Ends the script at the first member that answers False.
Sub Expect(what, success)
  If success Then Exit Sub
  WScript.Echo what & " failed: " & core.DebugMessage
  WScript.Quit 1
End Sub

Function Listed(values)
  Dim value
  For Each value In values
    Listed = Listed & " " & value
  Next
End Function

' Reads and writes positions: a position register in both of its forms, the current position, and the registers of a
' path and of two motion groups, which are staged and sent with one Update.
Option Explicit
Const POSREG = 2, CURPOS = 3, POSREG_XYZWPR = 12, POSREGMG = 36

' The arrays that GetValue fills have lower bound 0: X Y Z W P R E1 E2 E3, C1 to C7, and J1 to J9.
Dim core, table, registers, arm, path, groups, i
Dim Xyzwpr(8), Config(6), Joint(8), UF, UT, ValidC, ValidJ, turn

Set core = CreateObject("Orif.Core")
Expect "Connect", core.Connect("demo")
Set table = core.DataTable
Set registers = table.AddPosReg(POSREG, 1, 1, 3)
Set arm = table.AddCurPos(CURPOS, 1)
Set path = table.AddPosRegXyzwpr(POSREG_XYZWPR, 1, 2, 3)
Set groups = table.AddPosRegMG(POSREGMG, "C,J1", 31, 31)
If registers Is Nothing Or arm Is Nothing Or path Is Nothing Or groups Is Nothing Then Expect "Add", False

Expect "Refresh", table.Refresh
Show "PR[1]", registers.GetValue(1, Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)
Show "PR[3]", registers.GetValue(3, Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)
Show "Current position", arm.GetValue(Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)

' At once, in joint form: as many values as the array has.
Expect "SetValueJoint", registers.SetValueJoint(1, Array(10, -20, 30, 0, 45.5, 0), 1, 2)

' Staged: two registers of one group, then a register of an arm and a turntable.
For i = 2 To 3
  Expect "SetValueXyzwpr", path.SetValueXyzwpr(i, Array(100 * i, 0, 250, 180, 0, 90), Array(1, 0, 1, 0, 0, 0, 0))
Next
Expect "Update", path.Update
Expect "SetValueXyzwpr", _
  groups.SetValueXyzwpr(31, 1, Array(640, -410, 250, 180, 0, 45, 0, 0, 0), Array(1, 0, 1, 0, 0, 0, 0))
Expect "SetValueJoint", groups.SetValueJoint(31, 2, Array(90))
Expect "Update", groups.Update

Expect "Refresh", table.Refresh
WScript.Echo "Written and refreshed:"
For i = 1 To 3
  Show "PR[" & i & "]", registers.GetValue(i, Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)
Next
' Positions come as answered arrays too.
WScript.Echo "PR[G1:31]" & Listed(groups.Xyzwpr(31, 1))
turn = groups.Joint(31, 2)
WScript.Echo "PR[G2:31] J1 " & turn(0)

' Ends the script at the first member that answers False.
Sub Expect(what, success)
  If success Then Exit Sub
  WScript.Echo what & " failed: " & core.DebugMessage
  WScript.Quit 1
End Sub

' Shows the position that GetValue has just read. Of its two forms one or both are valid.
Sub Show(what, success)
  Expect what, success
  WScript.Echo what & " in user frame " & UF & " with tool " & UT
  If ValidC <> 0 Then WScript.Echo "  cartesian" & Listed(Xyzwpr)
  If ValidJ <> 0 Then WScript.Echo "  joint    " & Listed(Joint)
End Sub

Function Listed(values)
  Dim value
  For Each value In values
    Listed = Listed & " " & value
  Next
End Function

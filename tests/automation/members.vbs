' Calls the members that the examples leave out, on an object of each class, and shows what they answer.
Option Explicit
Dim core, table, second, x(8), c(6), j(8), UF, UT, ValidC, ValidJ, real, text
Dim numbers, variable, strings, first, alarms, positions, staged, groups, arm, tool, inFrame, named

Set core = CreateObject("Orif.Core")
core.PortNumber = 60100
core.ClientID = 77
core.TimeOutValue = 2500
Show Array(core.ObjectID, core.GetTypeName, core.PortNumber, core.ClientID, core.TimeOutValue)
Show Array(core.IsConnected, core.Connect("demo"), core.IsConnected, TypeName(core.GetLib))
core.DebugLog = True
core.AddUserMessage "note"
Show Array(core.DebugLog, Told)
Show Array(core.RDO(1, 2), core.SO(1, 2), core.UO(1, 2), core.GI(1, 2))
Show Array(core.RDI(1, 2), core.SI(1, 2), core.UI(1, 2), IsEmpty(core.SDO(0, 1)))

Set table = core.DataTable
Set numbers = table.AddNumReg(0, 1, 3)
Set variable = table.AddSysVar(6, "$PAYLOAD")
Set strings = table.AddString(13, 1, 2)
Set first = table.AddTask(33, 2)
Set alarms = table.AddAlarm(9, 2, 0)
Set positions = table.AddPosReg(2, 1, 1, 2)
Set staged = table.AddPosRegXyzwpr(12, 1, 1, 2)
Set groups = table.AddPosRegMG(36, "C,J1", 31, 32)
Set arm = table.AddCurPos(3, 1)
Set tool = table.AddSysVarPos(7, "$TOOL_CENTRE")
Set inFrame = table.AddCurPosUF(3, 1, 1)
Set named = table.AddStringEx(13, "R[C", 1, 3)
Show Array(table.ObjectID, table.GetTypeName, table.DebugLog, table.Valid)
table.AddUserMessage "note"
Show Told
Show Array("Item", table.Item(3) Is strings, table.Item("3") Is Nothing, core.mlngDataTableCount)

Show Array("SetValuesInt", numbers.SetValuesInt(1, Array(5, 6.5, "7"), 3))
Show Array("SetValueJoint2", positions.SetValueJoint2(1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2))
Show Array("SetValueXyzwpr2", positions.SetValueXyzwpr2(2, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 0, 1, 0, 0, 0, -1, 1, 2))
Show Array("SetValueXyzwpr2", groups.SetValueXyzwpr2(31, 1, 1, 2, 3, 4, 5, 6, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0))
Show Array("SetValueJoint2", groups.SetValueJoint2(31, 2, 45, 0, 0, 0, 0, 0, 0, 0, 0))
Show Array("Update", groups.Update)
Show Array("SetValueXyzwpr2", staged.SetValueXyzwpr2(1, 9, 9, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0))
staged.Reset
strings.SetValue 1, "never sent"
strings.Reset
Show Array("After a Reset", staged.Update, strings.Update)
Show Array("Refresh", table.Refresh)

Show Array(table.GetLastDataFloat(7, real), table.LastDataFloat(7), real, IsEmpty(table.LastDataFloat(0)))
Show Array(numbers.Value(1), numbers.Value(2), numbers.Value(3), TypeName(numbers.Value(3)))
Show Array(variable.Value, TypeName(variable.Value))
Show Array(strings.GetValue(2, text), text, strings.StartIndex, strings.EndIndex)
Show Array(named.Value(2), inFrame.UF, inFrame.Xyzwpr)
Show Array(first.Index, first.Value)
Show alarms.Value(2)
Show Array(positions.Group, positions.StartIndex, positions.EndIndex)
Show Array(positions.GetValueJoint(1, j(0), j(1), j(2), j(3), j(4), j(5), j(6), j(7), j(8), UT, ValidJ), j, UT)
Show Array(positions.Joint(1), positions.UF(1), positions.ValidC(1), positions.ValidJ(1))
Show Array(positions.GetValueXyzwpr(2, x(0), x(1), x(2), x(3), x(4), x(5), x(6), x(7), x(8), _
  c(0), c(1), c(2), c(3), c(4), c(5), c(6), UF, UT, ValidC), x, c, UF, UT)
Show Array(positions.Config(2), positions.ValidC(2), positions.ValidJ(2))
Show Array(staged.Group, staged.StartIndex, staged.EndIndex)
Show Array(groups.GroupCount, groups.StartIndex, groups.EndIndex)
Show Array(groups.GetValueXyzwpr(31, 1, x(0), x(1), x(2), x(3), x(4), x(5), x(6), x(7), x(8), _
  c(0), c(1), c(2), c(3), c(4), c(5), c(6)), x, groups.Config(31, 1), groups.Joint(31, 2))
Show Array(arm.Group, arm.UF, arm.ValidC, arm.ValidJ)
Show Array(arm.GetValueJoint(j(0), j(1), j(2), j(3), j(4), j(5), j(6), j(7), j(8), UT, ValidJ), j, UT)
Show Array(arm.GetValueXyzwpr(x(0), x(1), x(2), x(3), x(4), x(5), x(6), x(7), x(8), _
  c(0), c(1), c(2), c(3), c(4), c(5), c(6), UF, UT, ValidC), x, c)

groups.SetValueJoint 31, 2, Array(99)
groups.Reset
Show Array("After a Reset zeros are sent:", groups.Update)
Show Array("SetValueJoint2", tool.SetValueJoint2(9, 8, 7, 6, 5, 4, 3, 2, 1, 1, 2), table.Refresh)
Show Array(groups.GetValueJoint(31, 2, j(0), j(1), j(2), j(3), j(4), j(5), j(6), j(7), j(8)), j(0))
Show Array(tool.SysVarName, tool.Joint, tool.UF, tool.UT, tool.ValidC, tool.ValidJ)
Show Array("SetValueJoint", tool.SetValueJoint(Array(1, 2, 3), 0, 3), table.Refresh)
Show Array(tool.GetValueJoint(j(0), j(1), j(2), j(3), j(4), j(5), j(6), j(7), j(8), UT, ValidJ), j, UT)
Show Array("SetValueXyzwpr2", tool.SetValueXyzwpr2(1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 0, 1, 0, 0, 0, -1, 1, 2), _
  table.Refresh)
Show Array(tool.GetValueXyzwpr(x(0), x(1), x(2), x(3), x(4), x(5), x(6), x(7), x(8), _
  c(0), c(1), c(2), c(3), c(4), c(5), c(6), UF, UT, ValidC), tool.Xyzwpr, tool.Config)

' What all items have.
numbers.AddUserMessage "note"
Show Array(Told, numbers.GetTypeName, numbers.DataType, _
  numbers.DataTable Is table, numbers.Valid, numbers.DebugLog, numbers.ObjectID)
numbers.Kill
variable.AddUserMessage "note"
Show Array(Told, variable.GetTypeName, variable.DataType, _
  variable.DataTable Is table, variable.Valid, variable.DebugLog, variable.ObjectID)
variable.Kill
strings.AddUserMessage "note"
Show Array(Told, strings.GetTypeName, strings.DataType, _
  strings.DataTable Is table, strings.Valid, strings.DebugLog, strings.ObjectID)
strings.Kill
first.AddUserMessage "note"
Show Array(Told, first.GetTypeName, first.DataType, _
  first.DataTable Is table, first.Valid, first.DebugLog, first.ObjectID)
first.Kill
alarms.AddUserMessage "note"
Show Array(Told, alarms.GetTypeName, alarms.DataType, _
  alarms.DataTable Is table, alarms.Valid, alarms.DebugLog, alarms.ObjectID)
alarms.Kill
positions.AddUserMessage "note"
Show Array(Told, positions.GetTypeName, positions.DataType, _
  positions.DataTable Is table, positions.Valid, positions.DebugLog, positions.ObjectID)
positions.Kill
staged.AddUserMessage "note"
Show Array(Told, staged.GetTypeName, staged.DataType, _
  staged.DataTable Is table, staged.Valid, staged.DebugLog, staged.ObjectID)
staged.Kill
groups.AddUserMessage "note"
Show Array(Told, groups.GetTypeName, groups.DataType, _
  groups.DataTable Is table, groups.Valid, groups.DebugLog, groups.ObjectID)
groups.Kill
arm.AddUserMessage "note"
Show Array(Told, arm.GetTypeName, arm.DataType, _
  arm.DataTable Is table, arm.Valid, arm.DebugLog, arm.ObjectID)
arm.Kill
tool.AddUserMessage "note"
Show Array(Told, tool.GetTypeName, tool.DataType, _
  tool.DataTable Is table, tool.Valid, tool.DebugLog, tool.ObjectID)
tool.Kill
Show Array("After Kill", numbers.Valid, variable.Valid, strings.Valid, first.Valid, alarms.Valid, _
  positions.Valid, staged.Valid, groups.Valid, arm.Valid, tool.Valid)

Set second = core.DataTable2
Show Array("Second table", second Is table, table.Fixed, second.Fixed, table.AddNumReg(0, 1, 1) Is Nothing)
Show Array("Clear", table.Clear, table.Count, second.Valid)
' Released in any order, and the table still stands without its Core.
Set core = Nothing
Show Array("Without its Core", table.Valid, table.Refresh, numbers.SetValue(1, 1))
table.Kill
Show Array("After its own", table.Valid)

Sub Show(values)
  WScript.Echo Mid(Listed(values), 2)
End Sub

' Values with a blank before each, and the elements of those that are arrays.
Function Listed(values)
  Dim value
  If Not IsArray(values) Then
    Listed = " " & values
    Exit Function
  End If
  For Each value In values
    Listed = Listed & Listed(value)
  Next
End Function

' The last line of the trail, without time and thread.
Function Told
  Told = Mid(core.DebugMessage, InStr(core.DebugMessage, "["))
End Function

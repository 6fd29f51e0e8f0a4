' All of the main job, as demo.cpp does it, with the same output: connect, register every kind of item, refresh,
' print, write, see the old values until the next refresh, refresh, print, change signals, clear the alarms,
' disconnect and show the trail.
Option Explicit
Const NUMREG_INT = 0, NUMREG_REAL = 1, POSREG = 2, CURPOS = 3, TASK = 4, SYSVAR_INT = 5, SYSVAR_POS = 7
Const ALARM_CURRENT = 10, POSREG_XYZWPR = 12, STRREG = 13, NUMREG_COMMENT = 15, POSREGMG = 36

Dim core, table
Dim counters, reals, positions, staged, groups, arm, turntable, tool, speed, texts, comments, first, alarms
Dim Xyzwpr(8), Config(6), Joint(8), UF, UT, ValidC, ValidJ
Dim trail, kind

Set core = CreateObject("Orif.Core")
Expect "Connect", core.Connect("demo")
WScript.Echo "Connected to the simulated controller, state " & core.ConnectState

Set table = core.DataTable
Set counters = Registered("AddNumReg", table.AddNumReg(NUMREG_INT, 1, 2))
Set reals = Registered("AddNumReg", table.AddNumReg(NUMREG_REAL, 3, 4))
Set positions = Registered("AddPosReg", table.AddPosReg(POSREG, 1, 1, 2))
Set staged = Registered("AddPosRegXyzwpr", table.AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 2))
Set groups = Registered("AddPosRegMG", table.AddPosRegMG(POSREGMG, "C,J1", 2, 2))
Set arm = Registered("AddCurPos", table.AddCurPos(CURPOS, 1))
Set turntable = Registered("AddCurPos", table.AddCurPos(CURPOS, 2))
Set tool = Registered("AddSysVarPos", table.AddSysVarPos(SYSVAR_POS, "$TOOL_CENTRE"))
Set speed = Registered("AddSysVar", table.AddSysVar(SYSVAR_INT, "$OVERRIDE"))
Set texts = Registered("AddString", table.AddString(STRREG, 1, 2))
Set comments = Registered("AddString", table.AddString(NUMREG_COMMENT, 1, 2))
Set first = Registered("AddTask", table.AddTask(TASK, 1))
Set alarms = Registered("AddAlarm", table.AddAlarm(ALARM_CURRENT, 1, 2))
WScript.Echo "Registered " & table.Count & " items"

Expect "Refresh", table.Refresh
WScript.Echo "Refreshed:"
Print

core.DebugLog = True
WriteAll
core.DebugLog = False
WScript.Echo "Written, and not refreshed yet:"
Print

core.DebugLog = True
Expect "Refresh", table.Refresh
core.DebugLog = False
WScript.Echo "Refreshed again:"
Print

WScript.Echo "Signals, read, written and read:"
For Each kind In Array("SDO", "SDI", "RDO", "RDI", "SO", "SI", "UO", "UI", "GO", "GI")
  ChangeSignals kind
Next

core.DebugLog = True
Expect "ClearAlarm", core.ClearAlarm
Expect "Refresh", table.Refresh
WScript.Echo "Alarms cleared"
PrintAlarm
Expect "Disconnect", core.Disconnect
WScript.Echo "Disconnected, state " & core.ConnectState
WScript.Echo ""
WScript.Echo "The trail of the writes, the refresh and the end:"
trail = core.GetDebugMessages
WScript.Echo Left(trail, Len(trail) - 2) ' Echo ends the last line once more

' Ends the script at the first unexpected answer.
Sub Expect(what, success)
  If success Then Exit Sub
  WScript.Echo what & " failed: " & core.DebugMessage
  WScript.Quit 1
End Sub

Function Registered(what, item)
  If item Is Nothing Then Expect what, False
  Set Registered = item
End Function

Sub Print
  PrintRegisters counters, "integer"
  PrintRegisters reals, "real"
  PrintPosition "PR[1]", positions.GetValue(1, Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)
  PrintPosition "PR[2]", positions.GetValue(2, Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)
  If groups.GetValueJoint(2, 2, Joint(0), Joint(1), Joint(2), Joint(3), Joint(4), Joint(5), _
                          Joint(6), Joint(7), Joint(8)) Then
    WScript.Echo "  PR[G2:2] J1 " & Joint(0)
  End If
  PrintPosition "Current position of group 1", arm.GetValue(Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)
  PrintPosition "Current position of group 2", turntable.GetValue(Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)
  PrintPosition "$TOOL_CENTRE", tool.GetValue(Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ)
  Dim value
  If speed.GetValue(value) Then WScript.Echo "  $OVERRIDE = " & value
  PrintTexts "SR[", texts
  PrintTexts "R[C", comments
  PrintTask
  PrintAlarm
End Sub

Sub PrintRegisters(registers, as_what)
  Dim i, value
  For i = registers.StartIndex To registers.EndIndex
    If Not registers.GetValue(i, value) Then value = "?"
    WScript.Echo "  R[" & i & "] = " & value & "  (" & as_what & ")"
  Next
End Sub

' Prints the position that GetValue has just read.
Sub PrintPosition(what, success)
  If Not success Then
    WScript.Echo "  " & what & " could not be read"
    Exit Sub
  End If
  WScript.Echo "  " & what & " in user frame " & UF & " with tool " & UT
  PrintForm "cartesian", Xyzwpr, ValidC
  PrintForm "joint    ", Joint, ValidJ
End Sub

Sub PrintForm(name, values, valid)
  Dim line, value
  line = "    " & name
  For Each value In values
    line = line & " " & value
  Next
  If valid = 0 Then line = line & "  (not valid)"
  WScript.Echo line
End Sub

Sub PrintTexts(symbol, items)
  Dim i, text
  For i = items.StartIndex To items.EndIndex
    If items.GetValue(i, text) Then WScript.Echo "  " & symbol & i & "] = """ & text & """"
  Next
End Sub

Sub PrintTask
  Dim program, line, state, parent
  If Not first.GetValue(program, line, state, parent) Then Exit Sub
  WScript.Echo "  Task 1 runs " & program & " in line " & line & ", state " & state & ", called by " & parent
End Sub

Sub PrintAlarm
  Dim n(10), message, cause, severity ' message mode 2 does not read the last two
  If Not alarms.GetValue(1, n(0), n(1), n(2), n(3), n(4), n(5), n(6), n(7), n(8), n(9), n(10), _
                         message, cause, severity) Then Exit Sub
  If message = "" Then message = "none"
  WScript.Echo "  Active alarm: " & message
End Sub

Sub WriteAll
  Dim place, forward
  place = Array(640, -400, 260, 180, 0, 45, 0, 0, 0)
  forward = Array(1, 0, 1, 0, 0, 0, 0)
  Expect "SetValue", counters.SetValue(1, 121)
  Expect "SetValuesReal", reals.SetValuesReal(3, Array(12.25, -0.5), 2)
  Expect "SetValueJoint", positions.SetValueJoint(1, Array(10, -20, 30, 0, 45, 0), 1, 1)
  Expect "SetValueXyzwpr", tool.SetValueXyzwpr(Array(0, 0, 180, 0, 0, 0), forward, 0, 0)
  ' Update sends what was staged: registers of one group, then of two.
  Expect "SetValueXyzwpr", staged.SetValueXyzwpr(2, place, forward)
  Expect "Update", staged.Update
  Expect "SetValueXyzwpr", groups.SetValueXyzwpr(2, 1, place, forward)
  Expect "SetValueJoint", groups.SetValueJoint(2, 2, Array(135))
  Expect "Update", groups.Update
  Expect "SetValue", speed.SetValue(65)
  Expect "SetValue", texts.SetValue(1, "HINGE-12")
  Expect "Update", texts.Update
End Sub

' Reads signals 1 to 4 of one kind, turns the second one on, and reads them again.
Sub ChangeSignals(name)
  Dim before(3), after(3)
  Expect name, ReadSignals(name, before)
  Expect name, WriteSignal(name, Array(1))
  Expect name, ReadSignals(name, after)
  WScript.Echo "  " & name & "[1] to [4]:" & Listed(before) & ", then" & Listed(after)
End Sub

Function ReadSignals(name, states)
  Select Case name
    Case "SDO" ReadSignals = core.ReadSDO(1, states, 4)
    Case "SDI" ReadSignals = core.ReadSDI(1, states, 4)
    Case "RDO" ReadSignals = core.ReadRDO(1, states, 4)
    Case "RDI" ReadSignals = core.ReadRDI(1, states, 4)
    Case "SO" ReadSignals = core.ReadSO(1, states, 4)
    Case "SI" ReadSignals = core.ReadSI(1, states, 4)
    Case "UO" ReadSignals = core.ReadUO(1, states, 4)
    Case "UI" ReadSignals = core.ReadUI(1, states, 4)
    Case "GO" ReadSignals = core.ReadGO(1, states, 4)
    Case "GI" ReadSignals = core.ReadGI(1, states, 4)
  End Select
End Function

Function WriteSignal(name, state)
  Select Case name
    Case "SDO" WriteSignal = core.WriteSDO(2, state, 1)
    Case "SDI" WriteSignal = core.WriteSDI(2, state, 1)
    Case "RDO" WriteSignal = core.WriteRDO(2, state, 1)
    Case "RDI" WriteSignal = core.WriteRDI(2, state, 1)
    Case "SO" WriteSignal = core.WriteSO(2, state, 1)
    Case "SI" WriteSignal = core.WriteSI(2, state, 1)
    Case "UO" WriteSignal = core.WriteUO(2, state, 1)
    Case "UI" WriteSignal = core.WriteUI(2, state, 1)
    Case "GO" WriteSignal = core.WriteGO(2, state, 1)
    Case "GI" WriteSignal = core.WriteGI(2, state, 1)
  End Select
End Function

Function Listed(states)
  Dim state
  For Each state In states
    Listed = Listed & " " & state
  Next
End Function

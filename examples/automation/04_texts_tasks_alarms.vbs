' Reads texts, comments, system variables, tasks and alarms, writes a text and a variable, and clears the alarms.
Option Explicit
Const TASK = 4, SYSVAR_INT = 5, ALARM_CURRENT = 10, STRREG = 13, NUMREG_COMMENT = 15

Dim core, table, strings, comments, speed, first, active
Set core = CreateObject("Orif.Core")
Expect "Connect", core.Connect("demo")
Set table = core.DataTable
Set strings = table.AddString(STRREG, 1, 2)
Set comments = table.AddString(NUMREG_COMMENT, 1, 2)
Set speed = table.AddSysVar(SYSVAR_INT, "$OVERRIDE")
Set first = table.AddTask(TASK, 1)
Set active = table.AddAlarm(ALARM_CURRENT, 1)
If table.Count <> 5 Then Expect "Add", False

Show

' Texts are staged and sent with one Update. A variable is written at once, and a text that is a number converts.
Expect "SetValue", strings.SetValue(1, "HINGE-12")
Expect "Update", strings.Update
Expect "SetValue", speed.SetValue("65")
Expect "ClearAlarm", core.ClearAlarm
WScript.Echo "Written, and alarms cleared:"
Show

' Ends the script at the first member that answers False.
Sub Expect(what, success)
  If success Then Exit Sub
  WScript.Echo what & " failed: " & core.DebugMessage
  WScript.Quit 1
End Sub

Sub Show
  Expect "Refresh", table.Refresh
  ShowTexts "SR[", strings
  ShowTexts "R[C", comments
  ShowVariable
  ShowTask
  ShowAlarm
End Sub

Sub ShowTexts(symbol, texts)
  Dim i, text
  For i = texts.StartIndex To texts.EndIndex
    Expect "GetValue", texts.GetValue(i, text)
    WScript.Echo symbol & i & "] """ & text & """"
  Next
End Sub

Sub ShowVariable
  Dim value
  Expect "GetValue", speed.GetValue(value)
  WScript.Echo speed.SysVarName & " = " & value
End Sub

Sub ShowTask
  Dim program, line, state, parent
  Expect "GetValue", first.GetValue(program, line, state, parent)
  WScript.Echo "Task 1 runs " & program & " in line " & line & ", state " & state & ", called by " & parent
End Sub

Sub ShowAlarm
  Dim id, number, causeId, causeNumber, severity, year, month, day, hour, minute, second
  Dim message, cause, level
  Expect "GetValue", active.GetValue(1, id, number, causeId, causeNumber, severity, _
    year, month, day, hour, minute, second, message, cause, level)
  If id = 0 Then
    WScript.Echo "No alarm"
  Else
    WScript.Echo year & "-" & month & "-" & day & " " & hour & ":" & minute & ":" & second & " " & level & " " & message
  End If
End Sub

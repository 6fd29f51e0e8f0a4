Attribute VB_Name = "RobotController"
' Reads a controller into the active sheet, and writes registers from there. Not run by this project's tests, which have
' no Excel. Needs a reference to "orif: data of robot controllers" (Tools, References). Cell B1 has the address of the
' controller; rows 3 to 12 have R[1] to R[10], their values in column A and their comments in column B.
Option Explicit

Private Const FirstRow = 3
Private Const Registers = 10

Public Sub ReadController()
  Dim core As Orif.Core
  Set core = Connected()
  If core Is Nothing Then Exit Sub

  Dim table As Orif.DataTable
  Set table = core.DataTable
  Dim reals As Orif.DataNumReg
  Set reals = table.AddNumReg(NUMREG_REAL, 1, Registers)
  Dim comments As Orif.DataString
  Set comments = table.AddString(NUMREG_COMMENT, 1, Registers)
  Dim arm As Orif.DataCurPos
  Set arm = table.AddCurPos(CURPOS, 1)
  If reals Is Nothing Or comments Is Nothing Or arm Is Nothing Then
    MsgBox core.DebugMessage
    Exit Sub
  End If
  If Not table.Refresh Then
    MsgBox core.DebugMessage
    Exit Sub
  End If

  Dim i As Long
  Dim value As Variant
  Dim text As String
  For i = 1 To Registers
    If reals.GetValue(i, value) Then Cells(FirstRow + i - 1, 1).Value = value
    If comments.GetValue(i, text) Then Cells(FirstRow + i - 1, 2).Value = text
  Next

  ' The position in typed arrays: X Y Z W P R E1 E2 E3 into D3 to L3, and J1 to J9 below.
  Dim Xyzwpr(8) As Single, Config(6) As Integer, Joint(8) As Single
  Dim UF As Integer, UT As Integer, ValidC As Integer, ValidJ As Integer
  If arm.GetValue(Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ) Then
    Range("D3:L3").Value = Xyzwpr
    Range("D4:L4").Value = Joint
  End If
End Sub

Public Sub WriteRegisters()
  Dim core As Orif.Core
  Set core = Connected()
  If core Is Nothing Then Exit Sub

  Dim reals As Orif.DataNumReg
  Set reals = core.DataTable.AddNumReg(NUMREG_REAL, 1, Registers)
  If reals Is Nothing Then
    MsgBox core.DebugMessage
    Exit Sub
  End If
  Dim values(1 To Registers) As Single
  Dim i As Long
  For i = 1 To Registers
    values(i) = Cells(FirstRow + i - 1, 1).Value
  Next
  If Not reals.SetValuesReal(1, values, Registers) Then MsgBox core.DebugMessage
End Sub

' A Core connects once in its life, so every run makes a new one. Nothing if there is no connection.
Private Function Connected() As Orif.Core
  Dim core As Orif.Core
  Set core = New Orif.OrifCore
  core.DebugLog = True ' so that the trail has the reason
  If core.Connect(Range("B1").Value) Then
    Set Connected = core
  Else
    MsgBox core.GetDebugMessages
  End If
  core.DebugLog = False
End Function

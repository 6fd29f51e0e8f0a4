// Reads and writes positions and signals from JScript. What members answer as an array, VBArray makes one of the
// script.
var POSREG = 2, CURPOS = 3;

var core = new ActiveXObject("Orif.Core");
expect("Connect", core.Connect("demo"));
var table = core.DataTable;
var registers = table.AddPosReg(POSREG, 1, 1, 1);
var arm = table.AddCurPos(CURPOS, 1);
expect("Add", registers && arm);

expect("Refresh", table.Refresh());
WScript.Echo("PR[1] X Y Z " + listed(registers.Xyzwpr(1)).slice(0, 3).join(" "));
WScript.Echo("Current position J1 to J6 " + listed(arm.Joint).slice(0, 6).join(" ") + ", tool " + arm.UT);

// Lifts the arm's position by 50 mm and writes it to the register.
var place = listed(arm.Xyzwpr);
place[2] += 50;
expect("SetValueXyzwpr", registers.SetValueXyzwpr(1, place, listed(arm.Config), 0, arm.UT));
expect("Refresh", table.Refresh());
WScript.Echo("PR[1] X Y Z " + listed(registers.Xyzwpr(1)).slice(0, 3).join(" ") + ", tool " + registers.UT(1));

WScript.Echo("DI[1] to DI[4] " + listed(core.SDI(1, 4)).join(" "));
expect("WriteSDO", core.WriteSDO(3, [1, 1], 2));
WScript.Echo("DO[1] to DO[4] " + listed(core.SDO(1, 4)).join(" "));

// Ends the script at the first member that answers false.
function expect(what, success) {
  if (success) return;
  WScript.Echo(what + " failed: " + core.DebugMessage);
  WScript.Quit(1);
}

function listed(values) {
  return new VBArray(values).toArray();
}

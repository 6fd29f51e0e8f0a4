// Reads and writes registers, texts and a task from JScript, which has no arguments by reference: the properties Value
// answer what GetValue would write, or undefined.
var NUMREG_REAL = 1, TASK = 4, STRREG = 13;

var core = new ActiveXObject("Orif.Core");
expect("Connect", core.Connect("demo"));
var table = core.DataTable;
var reals = table.AddNumReg(NUMREG_REAL, 3, 5);
var strings = table.AddString(STRREG, 1, 1);
var first = table.AddTask(TASK, 1);
expect("Add", reals && strings && first);

show("read");
// An array of the script can be written as it is.
expect("SetValues", reals.SetValues(4, [62.5, 80], 2));
expect("SetValue", reals.SetValue(3, 37.5));
expect("SetValue", strings.SetValue(1, "HINGE-12"));
expect("Update", strings.Update());
show("written and refreshed");

// An index outside the range has no value.
WScript.Echo("R[6] is " + reals.Value(6));

// Ends the script at the first member that answers false.
function expect(what, success) {
  if (success) return;
  WScript.Echo(what + " failed: " + core.DebugMessage);
  WScript.Quit(1);
}

function show(when) {
  expect("Refresh", table.Refresh());
  WScript.Echo(when);
  for (var i = reals.StartIndex; i <= reals.EndIndex; ++i) WScript.Echo("  R[" + i + "] = " + reals.Value(i));
  WScript.Echo("  SR[1] = " + strings.Value(1));
  var status = new VBArray(first.Value).toArray(); // program, line, state, calling program
  WScript.Echo("  Task 1 runs " + status[0] + " in line " + status[1]);
}

// Arrays of JScript, and calls whose outputs have nowhere to go.
var core = new ActiveXObject("Orif.Core");
core.Connect("demo");
var table = core.DataTable;
var integers = table.AddNumReg(0, 1, 3);
var reals = table.AddNumReg(1, 1, 3);
var positions = table.AddPosReg(2, 1, 1, 1);

show("SetValues", integers.SetValues(1, [7, "8", 9.6], 3));
show("SetValuesReal", reals.SetValuesReal(1, [1.5, true], 2));
show("SetValueXyzwpr", positions.SetValueXyzwpr(1, [1, 2, 3, 4, 5, 6], [1, 0, 1, 0, 0, 0, 0], 0, 0));
show("Six configuration values", positions.SetValueXyzwpr(1, [1, 2, 3, 4, 5, 6], [1, 0, 1, 0, 0, 0], 0, 0));
show("Fewer elements than Count", integers.SetValues(1, [1, 2], 3));
show("A single number", reals.SetValuesReal(3, 2.5, 1));
show("Refresh", table.Refresh());
show("Values", [integers.Value(1), integers.Value(2), integers.Value(3), reals.Value(2), reals.Value(3)]);
show("A value that is not there", integers.SetValue(3, integers.Value(9)));
show("GetValue", integers.GetValue(1, 0));
show("ReadSDO", core.ReadSDO(1, [0, 0], 2));
refused("An object that is no array", function () { core.WriteSDO(1, {}, 1); });
refused("An element that is no number", function () { core.WriteSDO(1, [1, "on"], 1); });
refused("null", function () { core.WriteSDO(1, null, 1); });
refused("A length that lies", function () { core.WriteSDO(1, { length: 1e9 }, 1); });
integers.Kill();
show("A value of an item that has ended", integers.Value(1));

function show(what, answer) {
  WScript.Echo(what + ": " + answer);
}

function refused(what, call) {
  try {
    call();
    show(what, "not refused");
  } catch (error) {
    show(what, "refused");
  }
}

# Shows registers, the current position and inputs of a controller, and writes a register. Not run by this project's
# tests, which have no PowerShell. The kinds of items are numbers here: NUMREG_INT is 0, CURPOS is 3.
param([string] $Address = 'demo')

$core = New-Object -ComObject Orif.Core
$core.DebugLog = $true # so that the trail has the reason if there is no connection
if (-not $core.Connect($Address)) { throw $core.GetDebugMessages() }
$core.DebugLog = $false

$table = $core.DataTable
$counters = $table.AddNumReg(0, 1, 3)
$arm = $table.AddCurPos(3, 1)
if (-not $counters -or -not $arm) { throw $core.DebugMessage }

if (-not $table.Refresh()) { throw $core.DebugMessage }
foreach ($i in $counters.StartIndex..$counters.EndIndex) { "R[$i] = " + $counters.Value($i) }
'X Y Z W P R = ' + ($arm.Xyzwpr[0..5] -join ' ')
'DI[1] to DI[8] = ' + ($core.SDI(1, 8) -join ' ')

if (-not $counters.SetValue(2, 0)) { throw $core.DebugMessage }

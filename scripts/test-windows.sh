#!/usr/bin/env bash
# Sets up what is missing, builds for Windows, registers the simulated controller's component in a Windows of the
# build's own under Wine, and runs there all tests, the demo and the tool, in the process and through the
# component. Leaves a package in build/windows.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build tool windows
cmake --preset windows >/dev/null
cmake --build --preset windows

export WINEPREFIX=$PWD/build/wine
component=Z:$PWD/build/windows/simulator/OrvexCommLibSimulator.dll
simulator=OrvexCommLibSimulator.Core
wine() { scripts/helpers/wine.sh "$@"; }
fail() { echo "$*" >&2; exit 1; }

wineserver -k 2>/dev/null || true
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
trap 'wineserver -k' EXIT
wineserver -p # stays, so that a program starts in a fraction of a second
wine wineboot -i >/dev/null 2>&1

# Times are written as the tests expect them. Wine creates objects of the machine's classes only, so what the component
# registers for the user is copied there.
wine reg add 'HKCU\Control Panel\International' /v sTimeFormat /d HH:mm:ss /f >/dev/null
wine regsvr32 /s "$component"
wine reg copy 'HKCU\Software\Classes' 'HKLM\Software\Classes' /s /f >/dev/null

ctest --preset windows

# The demo prints the same whichever way it goes, but for time and thread.
demo() { wine build/windows/bin/demo.exe | sed -E 's/[0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]+ //g'; }
diff <(demo) <(ORVEX_COMMLIB=$simulator demo) || fail "The demo differs through the component"

# A script, which knows nothing of the library, can use the component.
cat >build/windows/script.vbs <<VBS
Set core = CreateObject("$simulator")
core.HostName = "nowhere"
core.PortNumber = CLng(8193)
WScript.Echo core.PortNumber & " " & core.Connect() & " " & core.LastErrorText
VBS
answer=$(wine cscript //nologo build/windows/script.vbs)
[[ $answer == "8193 -"*"Unknown host"* ]] || fail "The script was answered: $answer"

# The tool out of the package, in which it stands alone, answers as elsewhere.
cmake --build --preset windows --target package
tool=$PWD/build/windows/tool
rm -rf "$tool"
unzip -q build/windows/orif-*-windows-x86_64.zip -d "$tool"
printf '#!/bin/sh\nexec "%s" "%s"/orif-*/bin/orif.exe "$@"\n' "$PWD/scripts/helpers/wine.sh" "$tool" >"$tool/orif"
chmod +x "$tool/orif"
sheets=tests/tool/sheets
for sheet in items read simulate; do
  PATH=$tool:$PATH PROJECT=$PWD tests/tool/run_sheet.sh "$sheets/$sheet.txt" || fail "The tool differs in $sheet"
done
"$tool/orif" record 'R[1-2]' 'SR[1]' 'DI[1]' 'PR[2]' --every 500ms --for 8s --out "$tool/run.csv" --fast \
  --simulate tests/tool/dropping_link.json
diff <(cut -d, -f1-9 "$tool/run.csv") <(sed -n '/^time,.*PR/,/^!/p' "$sheets/record.txt" | grep -v '^!') ||
  fail "The tool records something else"
code=0
"$tool/orif" record 'R[1]' --simulate --fast --count 1 --out "$tool/run.db" || code=$?
[[ $code == 2 && ! -e $tool/run.db ]] || fail "A database is not refused"
# A cell that is served, to a component in either form and to the tool itself.
"$tool/orif" simulate --serve 127.0.0.1:0 >"$tool/served" &
served=$!
for _ in {1..500}; do
  if grep -q sim: "$tool/served"; then break; fi
  sleep 0.02
done
host=$(grep -o 'sim://[^ ]*' "$tool/served")
"$tool/orif" write 'R[1]=77' --yes --host "$host" >/dev/null
for named in "$component" "$simulator"; do
  answer=$("$tool/orif" read 'R[1]' --host "$host" --component "$named" --format csv)
  [[ $answer == $'R[1]\r\n77\r' ]] || fail "The tool read of a served cell through $named: $answer"
done
kill $served
for named in "$component" "$simulator"; do
  answer=$("$tool/orif" read 'R[1]' --host demo --component "$named" --format csv)
  [[ $answer == $'R[1]\r\n120\r' ]] || fail "The tool read through $named: $answer"
done
ORVEX_COMMLIB=$simulator "$tool/orif" read 'R[1]' --host demo >/dev/null

# The log file is switched on in the registry and lies beside the library. A time that makes no file name of it is told,
# here on standard error; a later line finds no file either.
logged() {
  rm -f build/windows/bin/log*.txt
  wine reg add 'HKCU\Control Panel\International' /v sTimeFormat /d "$1" /f >/dev/null
  wine build/windows/bin/"log_probe_$2.exe" 2>&1 | grep -c 'Make debug out' || true
  wine reg add 'HKCU\Control Panel\International' /v sTimeFormat /d HH:mm:ss /f >/dev/null
  cat build/windows/bin/log*.txt 2>/dev/null | tr -d '\r' | sed 's/.*\[/[/'
}
wine reg add 'HKCU\Software\ORVEX\Setting' /v DebugOut /d True /f >/dev/null
for linkage in static shared; do
  [[ $(logged HH:mm:ss $linkage) == $'0\nORVEX Debug Out V'*$'\n[Core.AddUserMessage] ID=1, after' ]] ||
    fail "No log file, or not a good one"
  [[ $(logged HH/mm/ss $linkage) == 1 ]] || fail "A log file that cannot be made is not told of"
done
wine reg delete 'HKCU\Software\ORVEX' /f >/dev/null

wine regsvr32 /s /u "$component"
if wine reg query "HKCU\\Software\\Classes\\$simulator" >/dev/null 2>&1; then fail "The component is still registered"; fi

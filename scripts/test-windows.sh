#!/usr/bin/env bash
# Sets up what is missing, builds for Windows of 64 and of 32 bit, registers the simulated controller's components in a
# Windows of the build's own under Wine, and runs there all tests, the demo and the tool, in the process and through the
# component, once in each width; then it tries the installer. Leaves packages in build/windows and build/windows32.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build tool windows
scripts/helpers/windows-root.sh
for preset in windows windows32; do
  cmake --preset $preset >/dev/null
  cmake --build --preset $preset
done

export WINEPREFIX=$PWD/build/wine
simulator=OrvexCommLibSimulator.Core
wine() { scripts/helpers/wine.sh "$@"; }
wineserver() { scripts/helpers/windows-root.sh wineserver "$@"; }
fail() { echo "$*" >&2; exit 1; }

wineserver -k || true
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
trap 'wineserver -k' EXIT
wineserver -p # stays, so that a program starts in a fraction of a second
wine wineboot -i >/dev/null 2>&1
wine notepad & # keeps Wine's desktop, which each program that has an apartment would wait for, else

# How times are written; at first as the tests expect it.
time_format() { wine reg add 'HKCU\Control Panel\International' /v sTimeFormat /d "$1" /f >/dev/null; }
time_format HH:mm:ss

# Registers DLLs of one width for the user. Wine creates objects of the machine's classes only, where the identifiers of
# each width are kept apart. So they are copied there before the next width takes the user's, of which there is one set.
register() {
  local width=$1 system=$2 dll
  shift 2
  for dll in "$@"; do wine "$system\\regsvr32.exe" /s "$dll"; done
  wine reg copy 'HKCU\Software\Classes' 'HKLM\Software\Classes' /s /f "/reg:$width" >/dev/null
}

# The lines of the log file, which is switched on in the registry and lies beside the library, without their times. The
# first line is how often the program was told on standard error that there can be none.
logged() { # directory of the programs, linkage, format of times
  rm -f "$1"/log*.txt
  time_format "$3"
  wine "$1/log_probe_$2.exe" 2>&1 | grep -c 'Make debug out' || true
  time_format HH:mm:ss
  cat "$1"/log*.txt 2>/dev/null | tr -d '\r' | sed 's/.*\[/[/'
}

# The demo prints the same whichever way it goes, but for time and thread.
demo() { wine "$1/bin/demo.exe" | sed -E 's/[0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]+ //g'; }

# What a thread-local object with a destructor leaves to be called is called on freed memory, in threads of the host.
without_thread_objects() {
  ! "$1-w64-mingw32-nm" "${@:2}" | grep thread_atexit || fail "A thread-local object has a destructor"
}

test_width() { # preset, processor, Windows' own directory of programs
  local preset=$1 build=build/$1 processor=$2 system=$3 answer code host linkage named served sheet
  local component=Z:$PWD/$build/simulator/OrvexCommLibSimulator.dll tool=$PWD/$build/tool sheets=tests/tool/sheets

  without_thread_objects "$processor" "$build"/{bin/OrifAutomation,bin/liborif,simulator/OrvexCommLibSimulator}.dll
  ctest --preset "$preset"

  diff <(demo "$build") <(ORVEX_COMMLIB=$simulator demo "$build") || fail "The demo differs through the component"

  # A late-bound call costs no more than the system's own.
  ORVEX_COMMLIB=$component wine "$build/bin/automation_calls.exe" || fail "A late-bound call takes too long"

  scripts/helpers/check-scripts.sh "$system\\cscript.exe" <(ORVEX_COMMLIB=$simulator demo "$build")

  # A script, which knows nothing of the library, can use the simulator's component.
  cat >"$build/script.vbs" <<VBS
Set core = CreateObject("$simulator")
core.HostName = "nowhere"
core.PortNumber = CLng(8193)
WScript.Echo core.PortNumber & " " & core.Connect() & " " & core.LastErrorText
VBS
  answer=$(wine "$system\\cscript.exe" //nologo "$build/script.vbs")
  [[ $answer == "8193 -"*"Unknown host"* ]] || fail "The script was answered: $answer"

  # The tool out of the package, in which it stands alone, answers as elsewhere.
  cmake --build --preset "$preset" --target package
  rm -rf "$tool"
  unzip -q "$build"/orif-*-windows-"$processor".zip -d "$tool"
  printf '#!/bin/sh\nexec "%s" "%s"/orif-*/bin/orif.exe "$@"\n' "$PWD/scripts/helpers/wine.sh" "$tool" >"$tool/orif"
  chmod +x "$tool/orif"
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
  kill "$served"
  for named in "$component" "$simulator"; do
    answer=$("$tool/orif" read 'R[1]' --host demo --component "$named" --format csv)
    [[ $answer == $'R[1]\r\n120\r' ]] || fail "The tool read through $named: $answer"
  done
  ORVEX_COMMLIB=$simulator "$tool/orif" read 'R[1]' --host demo >/dev/null

  # A time that makes no file name of the log file is told; a later line finds no file either.
  wine reg add 'HKCU\Software\ORVEX\Setting' /v DebugOut /d True /f >/dev/null
  for linkage in static shared; do
    [[ $(logged "$build/bin" $linkage HH:mm:ss) == $'0\nORVEX Debug Out V'*$'\n[Core.AddUserMessage] ID=1, after' ]] ||
      fail "No log file, or not a good one"
    [[ $(logged "$build/bin" $linkage HH/mm/ss) == 1 ]] || fail "A log file that cannot be made is not told of"
  done
  wine reg delete 'HKCU\Software\ORVEX' /f >/dev/null

  wine "$system\regsvr32.exe" /s "$component"
  wine "$system\regsvr32.exe" /s /u "$component"
  if wine reg query 'HKCU\Software\Classes' /s | grep -q "$simulator"; then fail "The component is still registered"; fi
}

register 64 'C:\windows\system32' "Z:$PWD/build/windows/"{simulator/OrvexCommLibSimulator,bin/OrifAutomation}.dll
register 32 'C:\windows\syswow64' "Z:$PWD/build/windows32/"{simulator/OrvexCommLibSimulator,bin/OrifAutomation}.dll
test_width windows x86_64 'C:\windows\system32'
test_width windows32 i686 'C:\windows\syswow64'
scripts/helpers/check-installer.sh

#!/usr/bin/env bash
# Builds the installer for Windows and tries it under Wine, in a system of 64 bit, which runs both widths, and in one of
# 32 bit: installs silently, looks for files and registry keys, creates Orif.Core in scripts, installs again, and
# uninstalls, after which registry and files have to be as before. An argument names another installer, with its zip
# beside it, to be tried instead. Works in build/installer.
. "$(dirname "$0")/common.sh"

installer=${1-}
if [ -z "$installer" ]; then
  scripts/install-deps.sh build tool windows
  scripts/helpers/windows-root.sh
  cmake --preset windows32 >/dev/null
  cmake --build --preset windows32
  cmake --preset windows "-DORIF_32BIT_BUILD=$PWD/build/windows32" >/dev/null
  cmake --build --preset windows --target all package
  installer=$(ls build/windows/orif-*-windows-x86_64.exe)
fi

work=$PWD/build/installer
mkdir -p "$work"
unzip -Z1 "${installer%.exe}.zip" | sed '/\/$/d; s:^[^/]*:.:; $a ./Uninstall.exe' | sort >"$work/files"
cat >"$work/read.vbs" <<'VBS'
Set core = CreateObject("Orif.Core")
core.Connect "demo"
Set register = core.DataTable.AddNumReg(0, 1, 1)
core.DataTable.Refresh
WScript.Echo TypeName(core) & " " & register.Value(1)
VBS
cat >"$work/hold.vbs" <<'VBS'
Set core = CreateObject("Orif.Core")
Set files = CreateObject("Scripting.FileSystemObject")
files.CreateTextFile "C:\held"
Do While files.FileExists("C:\held")
Loop
VBS

bits=64
fail() { echo "check-installer.sh, $bits bit: $*" >&2; exit 1; }
wineserver() { timeout 120 scripts/helpers/windows-root.sh wineserver "$@"; }
wine() { # a program that asks something without a desktop would wait for ever
  local loader=wine
  if [ $bits -eq 64 ]; then loader=wine64; fi
  WINEDEBUG=-all DISPLAY='' WAYLAND_DISPLAY='' HOME=$WINEPREFIX \
    timeout 120 scripts/helpers/windows-root.sh "/usr/lib/wine/$loader" "$@"
}

unset WINEPREFIX # of a caller
end() { [ -z "${WINEPREFIX-}" ] || wineserver -k 2>/dev/null || true; }
trap end EXIT

# The registry, each line with its key, as it is once all programs have ended. Wine notes devices and fonts at each
# start, and if one of its own drivers crashes then, as happens on a busy machine.
registry() {
  wineserver -w
  awk '/^\[/ { sub(/ [0-9]+$/, ""); key = $0; print; next } key && !/^(#time|$)/ { print key " " $0 }' \
    "$WINEPREFIX"/{system,user}.reg | sed 's/\\\\/\\/g' |
    grep -vE '^\[(System\\[^\\]*ControlSet\\(Enum|Control\\(Class|Video)|Hardware Profiles)\\|.*\\(NetworkCards|Fonts|WineDbg)\])' |
    sort
}
# All files but the copy of itself that an uninstaller runs, which the system deletes at its start.
files() { (cd "$WINEPREFIX/drive_c" && find . -path '*/Temp/~nsu*' -prune -o -type d -print -o -printf '%p %s\n' | sort); }
state() { registry && files; }
unchanged_since() { # a file with a state, what was done
  local difference
  wineserver -w
  wine cmd /c exit
  difference=$(diff "$1" <(state)) || fail "$2: $(head -40 <<<"$difference")"
}

environment='System\CurrentControlSet\Control\Session Manager\Environment'
# What has to be there after an installation to a directory, with the PATH given. $widths has lines of where programs of
# a width are, the registry's view for it, and Windows' directory of programs.
installed() {
  local place=$1 path=$2 programs view system answer dll directory=${1#C:\\}
  diff "$work/files" <(cd "$WINEPREFIX/drive_c/${directory//\\//}" && find . -type f | sort) || fail "$place has other files"
  registry | comm -13 "$work/before" - >"$work/added"
  grep -qxF "[Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\orif] \"InstallLocation\"=\"$place\"" "$work/added" ||
    fail "$place is not noted"
  grep -qxF "[$environment] \"PATH\"=str(2):\"$path\"" "$work/added" ||
    fail "PATH became $(grep -F Environment "$work/added")"
  while read -r programs view system; do
    dll="$place\\$programs\\OrifAutomation.dll"
    [[ $(grep -cF " @=\"$dll\"" "$work/added") == 2 ]] || fail "$dll is not registered as class and type library"
    [[ $(grep -F "[Software\\Classes${view}Interface" "$work/added" | grep -cF '\TypeLib] @=') == 12 ]] ||
      fail "Not all interfaces of $dll are registered"
    answer=$(ORVEX_COMMLIB="$place\\$programs\\OrvexCommLibSimulator.dll" \
      wine "C:\\windows\\$system\\cscript.exe" //nologo "Z:$work/read.vbs")
    [[ $answer == $'Core 120\r' ]] || fail "A script in $system was answered: $answer"
    [[ $(wine "$place\\$programs\\orif.exe" --version) == orif* ]] || fail "The tool in $place\\$programs does not run"
  done <<<"$widths"
}

# A new system with a PATH. Wine's scripting host registers itself when it first runs.
begin() {
  local programs view system
  export WINEPREFIX=$work/wine$bits
  end
  rm -rf "$WINEPREFIX"
  mkdir "$WINEPREFIX"
  WINEARCH=win$bits wine wineboot -i >/dev/null 2>&1
  path='%SystemRoot%\system32;%SystemRoot%'$1
  wine reg add "HKLM\\$environment" /v Path /t REG_EXPAND_SZ /d "$path" /f >/dev/null
  while read -r programs view system; do
    [[ $(wine "C:\\windows\\$system\\cscript.exe" //nologo "Z:$work/read.vbs") != Core* ]] || fail "Orif.Core is there before"
  done <<<"$widths"
  registry >"$work/before"
  { cat "$work/before" && files; } >"$work/state"
}
install() { wine "$installer" /S "$@" || fail "The installer ended with $?"; }
uninstall() {
  wine "$1\\Uninstall.exe" /S || fail "The uninstaller ended with $?"
  unchanged_since "$work/state" "Not as before after an uninstall from $1"
}

widths=$'bin \\ system32\nx86\\bin \\Wow6432Node\\ syswow64'
# More characters than a text of an installer has, with entries much like the new one, and with a semicolon at the end,
# where one is to be afterwards too.
many=
for i in {1..99}; do many+=";C:\\Program Files\\orif\\bin $i;D:\\orif\\bin;C:\\orif\\bin\\$i"; done
begin "$many;"
install
installed 'C:\Program Files\orif' "${path}C:\\Program Files\\orif\\bin;"

# Installed to another directory, it leaves the first, but not what somebody put there, and stays in the other.
touch "$WINEPREFIX/drive_c/Program Files/orif/bin/own"
install '/D=C:\orif'
installed 'C:\orif' "${path}C:\\orif\\bin;"
[[ $(cd "$WINEPREFIX/drive_c/Program Files/orif" && find . -type f) == ./bin/own ]] || fail "Installed twice"
rm -r "$WINEPREFIX/drive_c/Program Files/orif"
install
installed 'C:\orif' "${path}C:\\orif\\bin;"

# While a program holds a Core nothing can be removed, and nothing is.
state >"$work/installed"
wine cscript //nologo "Z:$work/hold.vbs" &
for _ in {1..500}; do
  if [ -e "$WINEPREFIX/drive_c/held" ]; then break; fi
  sleep 0.02
done
codes=
for program in "$installer" 'C:\orif\Uninstall.exe'; do
  code=0
  wine "$program" /S '_?=C:\orif' || code=$? # so the uninstaller does not run in a copy, which nobody waits for
  codes+=$code
done
rm "$WINEPREFIX/drive_c/held"
unchanged_since "$work/installed" "Not as before an attempt while a program held a Core"
[ "$codes" = 22 ] || fail "While a program held a Core, installer and uninstaller ended with $codes"
uninstall 'C:\orif'

bits=32
widths='x86\bin \ system32'
begin ''
install
wine reg delete 'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\orif' /f >/dev/null # so it is not removed first
install
installed 'C:\Program Files\orif' "$path;C:\\Program Files\\orif\\x86\\bin"
[[ $(wine cmd /c 'orif --version') == orif* ]] || fail "The tool is not found in PATH"
uninstall 'C:\Program Files\orif'
echo "check-installer.sh: ${installer##*/} installs and uninstalls on 64 and 32 bit"

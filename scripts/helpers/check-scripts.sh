#!/usr/bin/env bash
# Runs the scripts in examples/automation and tests/automation on the simulated controller and compares what they print
# with the files beside them, and demo.vbs with the demo in C++. Also checks that scripts call every member and no other,
# and that the pages show the first script as it is. Arguments: the script host, as C:\windows\system32\cscript.exe, and
# a file with the output of the demo in C++. Both components are registered.
. "$(dirname "$0")/common.sh"

host=$1
demo=$2
export ORVEX_COMMLIB=OrvexCommLibSimulator.Core
examples=examples/automation
failed=0
fail() { echo "check-scripts.sh: $*" >&2; failed=1; }

awk -f scripts/helpers/script-members.awk automation/Orif.idl \
  $examples/*.{vbs,js,bas,ps1,cs} tests/automation/*.{vbs,js} || fail "Scripts and type library differ"

for page in README.md docs/automation.md; do
  for file in "$examples"/01_registers.{vbs,txt}; do
    [[ $(<"$page") == *$'\n'"$(<"$file")"$'\n```'* ]] || fail "$page differs from $file"
  done
done

# A script host may end silently at an error, so what counts is all that a script prints.
ran=0
run() { scripts/helpers/wine.sh "$host" //nologo "$1" | tr -d '\r'; }
check() { diff -u "$1" <(run "$2") || fail "$2 printed something else"; ran=$((ran + 1)); }
for script in "$examples"/[0-9]*.{vbs,js} tests/automation/*.{vbs,js}; do
  check "${script%.*}.txt" "$script"
done

# Time and thread aside.
lines() { tr -d '\r' | sed -E 's/[0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]+ //g'; }
diff -u <(lines <"$demo") <(run $examples/demo.vbs | lines) || fail "demo.vbs differs from the demo in C++"

[[ $failed == 0 ]] && echo "$((ran + 1)) scripts ran as expected with $host"

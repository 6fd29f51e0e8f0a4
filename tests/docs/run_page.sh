#!/usr/bin/env bash
# Runs the commands in a page, those behind "$ " in its fenced blocks, and compares what they print with what stands
# below them, empty lines aside. A question is answered with yes. The commands find orif on their path and the
# project's examples in their directory.
set -uo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
awk '/^```/ { fenced = !fenced; shown = 0; next } fenced && /^\$ / { shown = 1 } fenced && shown && NF' "$1" >"$work/page"
mkdir "$work/here"
ln -s "$PROJECT/examples" "$work/here/examples"
cd "$work/here" || exit 1

grep '^\$ ' "$work/page" | while IFS= read -r line; do
  printf '%s\n' "$line"
  case $line in
    '$ orif write '* | '$ orif restore '* | '$ orif clear-alarms '*) echo y | script -qE never -ec "${line#??}" /dev/null | tr -d '\r' | sed 's|\[y/N\] |&y\n|' ;;
    *) bash -c "${line#??}" 2>&1 </dev/null ;;
  esac
done | grep . >"$work/printed"
diff -u "$work/page" "$work/printed"

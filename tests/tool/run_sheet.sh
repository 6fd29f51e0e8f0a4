#!/usr/bin/env bash
# Runs a sheet. Its lines that begin with "$ " are commands; below each stands all that it answers: standard output,
# standard error behind "! ", the exit code unless that is 0. The commands share an empty directory and find orif on
# their path and the project in $PROJECT. ORIF_WRITE_TRANSCRIPTS=1 writes the sheet's answers anew.
set -uo pipefail
sheet=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/here"
cd "$work/here" || exit 1

while IFS= read -r line; do
  case $line in
    '$ '*)
      printf '\n%s\n' "$line"
      bash -c "${line#??}" >"$work/out" 2>"$work/err" </dev/null
      code=$?
      cat "$work/out"
      sed 's/^/! /' "$work/err"
      [ $code -eq 0 ] || echo "[exit code $code]"
      ;;
    '# '*) printf '%s\n' "$line" ;;
  esac
done <"$sheet" >"$work/answers"

[ -n "${ORIF_WRITE_TRANSCRIPTS:-}" ] && cp "$work/answers" "$sheet"
diff -u "$sheet" "$work/answers"

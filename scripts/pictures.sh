#!/usr/bin/env bash
# Sets up what is missing, builds the tool, and makes the pictures of docs/images/ anew from the handling cell: two
# recordings, and the screen of orif watch, run in a pseudo-terminal.
. "$(dirname "$0")/helpers/common.sh"
orif=$PWD/build/run/tools/orif/orif
cell=$PWD/examples/scenarios/handling_cell.json
images=$PWD/docs/images
scripts/install-deps.sh build tool pictures
scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON >/dev/null
cmake --build build/run --target orif_tool >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$orif" record 'POS[0]' 'DO[1]' --every 100ms --for 24s --out cycle.csv --simulate "$cell" --fast
"$orif" plot cycle.csv 'POS[0].X' 'POS[0].Y' 'POS[0].Z' 'DO[1]' --force --out "$images/cycle.svg"
"$orif" record 'R[4]' 'R[10]' --every 1s --for 10m --out gap.db --simulate "$cell" --fast
"$orif" plot gap.db 'R[4]' 'R[10]' --force --out "$images/gap.svg"

script -qec "stty cols 80 rows 16; '$orif' watch 'R[1-4]' 'R[10]' 'SR[1-2]' 'POS[0]' 'DO[1-16]' 'PRG[1]' \
  --every 500ms --count 14 --simulate '$cell' --fast" /dev/null >screen

# The last page: lines with their marked parts in bold yellow, and the status in the row that it is put into.
tr -d '\r' <screen | awk -v RS='\033\\[H' -v columns=80 -v rows=16 '
  { page = $0 }
  END {
    sub(/\033\[\?25h.*/, "", page)
    printf "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\">\n", columns * 8 + 20, rows * 18 + 16
    print "<rect width=\"100%\" height=\"100%\" rx=\"6\" fill=\"#1e2227\"/>"
    print "<g font-family=\"monospace\" font-size=\"13.3\" fill=\"#d7dae0\" xml:space=\"preserve\">"
    count = split(page, lines, "\n")
    for (i = 1; i <= count; ++i) {
      row = i
      if (match(lines[i], /\033\[[0-9]+;1H/)) {
        row = substr(lines[i], RSTART + 2) + 0
        lines[i] = substr(lines[i], RSTART + RLENGTH)
      }
      text = lines[i]
      gsub(/&/, "\\&amp;", text); gsub(/</, "\\&lt;", text)
      gsub(/\033\[1;33m/, "<tspan fill=\"#f5c542\" font-weight=\"bold\">", text); gsub(/\033\[0m/, "</tspan>", text)
      gsub(/\033\[[KJ]/, "", text)
      printf "<text x=\"10\" y=\"%d\">%s</text>\n", row * 18 + 4, text
    }
    print "</g>\n</svg>"
  }' >"$images/watch.svg"

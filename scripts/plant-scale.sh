#!/usr/bin/env bash
# Sets up what is missing, builds, and measures the gateway with many cells that another process serves, each with 100
# registers, 2 positions and 32 signals, all of which change each second:
#
#     scripts/plant-scale.sh [CELLS] [SECONDS] [FORM] [limits]
#
# The page is on, and five clients look at it. 200 cells for 20 seconds, form "tags" by itself, or "rows" or
# "sparkplug". Prints how much of a processor gateway and broker take, the gateway's memory, what it sends, and how long
# values take from the refresh to a subscriber of ten cells. With "limits" it fails beyond 0.35 of a processor, 150 MB
# or 15 ms for 99 % of the messages.
. "$(dirname "$0")/helpers/common.sh"
cells=${1:-200}
seconds=${2:-20}
form=${3:-tags}
group=''
below=orif/hall1
if [ "$form" = sparkplug ]; then
  group=', "group": "plant"'
  below=spBv1.0/plant/+/hall1
fi

scripts/install-deps.sh build tool bench gateway plant >&2
mkdir -p build
{
  scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON -DORIF_BUILD_BENCH=ON -DORIF_BUILD_GATEWAY=ON
  cmake --build build/run --target plant_cells plant_subscriber orif_gateway
} >build/plant.log 2>&1 || { cat build/plant.log >&2; exit 1; }
. scripts/helpers/plant.sh
export XDG_CONFIG_HOME=$plant LC_ALL=C
ulimit -n "$(ulimit -Hn)"

start_broker
start cells build/run/bench/plant_cells "$cells"
all_served() { [ "$(awk '{ n += $3 - $2 + 1 } END { print n + 0 }' "$plant/cells.log")" -eq "$cells" ]; }
until_true 'all cells are served' all_served
metrics_port=$(free_port)
page_port=$(free_port)
{
  cat <<JSON
{
  "gateway": "hall1",
  "broker": {"host": "127.0.0.1", "port": $broker_port},
  "topics": {"form": "$form"$group},
  "buffer": {"file": "buffer.db", "limit": "1GB"},
  "metrics": {"address": "127.0.0.1", "port": $metrics_port},
  "page": {"port": $page_port},
  "defaults": {"period": "1s", "full": "5min", "tags": ["R[1-100]", "PR[1-2]", "DO[1-32]"]},
  "cells": [
JSON
  awk '{ for (i = $2; i <= $3; i++) printf "%s    {\"name\": \"cell%d\", \"host\": \"sim://%s/cell%d\"}", n++ ? ",\n" : "", i, $1, i }
    END { print "\n  ]\n}" }' "$plant/cells.log"
} >"$plant/cells.json"
start gateway build/run/tools/gateway/orif-gateway "$plant/cells.json"
gateway=$last

metrics() { page "$metrics_port/metrics"; }
total() { awk -v name="$1" 'index($1, name) == 1 && /^[^#]/ { sum += $2 } END { printf "%.0f", sum }' "$2"; }
all_up() { metrics >"$plant/up" && [ "$(total 'orif_cell_up' "$plant/up")" -eq "$cells" ]; }
for ((i = 0; i < 12; i++)); do
  sleep 5
  if all_up; then break; fi
done
all_up || { echo "plant-scale.sh: $(total orif_cell_up "$plant/up") of $cells cells are up after a minute" >&2; exit 1; }
for ((i = 1; i <= 5; i++)); do
  start "browser$i" curl -sNo /dev/null "http://127.0.0.1:$page_port/events?cell=cell$i"
done
sleep 3 # the retained values of the start are through

# Seconds of processor time of a process; bytes that the broker has received.
used() { sed 's/.*) //' "/proc/$1/stat" | awk -v tick="$(getconf CLK_TCK)" '{ print ($12 + $13) / tick }'; }
received() { mosquitto_sub -p "$broker_port" -C 1 -t "\$SYS/broker/bytes/received"; }
now() { date +%s.%N; }
snapshot() { echo "$(now) $(used "$gateway") $(used "$broker") $(received)"; }

topics=()
for ((i = 1; i <= 10; i++)); do topics+=("$below/cell$((1 + (i - 1) * cells / 10))/#"); done
metrics >"$plant/before"
before=$(snapshot)
latency=$(build/run/bench/plant_subscriber "$broker_port" "$seconds" "${topics[@]}")
after=$(snapshot)
metrics >"$plant/after"
rss=$(awk '/^VmHWM/ { print $2 / 1000 }' "/proc/$gateway/status")
up=$(total orif_cell_up "$plant/after")
grown() { echo $(($(total "$1" "$plant/after") - $(total "$1" "$plant/before"))); }

awk -v before="$before" -v after="$after" -v latency="$latency" -v rss="$rss" -v cells="$cells" -v up="$up" -v form="$form" \
  -v rows="$(grown orif_published_rows_total)" -v messages="$(grown orif_published_messages_total)" \
  -v skipped="$(grown orif_cell_skipped_turns_total)" -v late="$(grown 'orif_published_rows_total{late="true"}')" \
  -v buffered="$(total orif_buffer_rows "$plant/after")" -v dropped="$(total orif_dropped_rows_total "$plant/after")" \
  -v limits="${4-}" '
  BEGIN {
    split(before, b); split(after, a); split(latency, l)
    passed = a[1] - b[1]; share = (a[2] - b[2]) / passed
    printf "%d cells of 100 registers, 2 positions and 32 signals, form %s, %.0f s\n", cells, form, passed
    printf "  cells up                     %d\n", up
    printf "  gateway, of a processor      %.3f\n", share
    printf "  gateway, most memory         %.1f MB\n", rss
    printf "  broker, of a processor       %.3f\n", (a[3] - b[3]) / passed
    printf "  rows a second                %.0f, late %.1f, skipped turns %.1f\n", rows / passed, late / passed, skipped / passed
    printf "  messages a second            %.0f\n", messages / passed
    printf "  bytes a second to the broker %.0f\n", (a[4] - b[4]) / passed
    printf "  refresh to subscriber        p50 %.1f ms, p99 %.1f ms, most %.1f ms (%d messages of ten cells)\n", l[8], l[10], l[12], l[2]
    printf "  rows in the buffer, dropped  %d, %d\n", buffered, dropped
    if (up != cells || dropped > 0) { print "MISSED: cells are lost, or rows dropped"; exit 1 }
    if (limits == "limits" && (share > 0.35 || rss > 150 || l[10] > 15)) {
      print "MISSED: at most 0.35 of a processor, 150 MB, p99 15 ms"; exit 1
    }
  }'

#!/usr/bin/env bash
# Sets up what is missing, builds, and runs a plant on this machine for as many seconds as the argument says (12): a
# broker, 20 simulated cells that have their troubles, and the gateway between them. Prints what a subscriber sees, and
# the gateway's metrics in the end.
. "$(dirname "$0")/helpers/common.sh"
seconds=${1:-12}

scripts/install-deps.sh build tool gateway plant >&2
mkdir -p build
{
  scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON -DORIF_BUILD_GATEWAY=ON
  cmake --build build/run --target orif_tool orif_gateway
} >build/plant.log 2>&1 || { cat build/plant.log >&2; exit 1; }
. scripts/helpers/plant.sh
unset ORVEX_COMMLIB
export XDG_CONFIG_HOME=$plant

# A cell in a scenario: press7 counts parts, its gripper opens and closes, its robot moves.
controller() { # its name, what else happens in it
  cat <<JSON
    {"host": "$1", "sizes": {"numericRegisters": 100}, "positions": {"POS[0]": {"xyzwpr": [850, 0, 620, 180, 0, 90]}},
     "strings": {"SR[1]": {"value": "BRACKET-7"}},
     "behaviour": [
       {"what": "R[1]", "ramp": {"from": 0, "to": 36000, "over": "10h"}},
       {"what": "R[2]", "ramp": {"from": 20.0, "to": 80.0, "over": "10min"}},
       {"what": "DO[1]", "cycle": [[1, "3s"], [0, "2s"]]},
       {"what": "POS[0].X", "ramp": {"from": 850, "to": 640, "over": "4s"}, "then": "bounce"}$2]}
JSON
}
{
  echo '{"name": "Hall 1", "controllers": ['
  for ((i = 1; i <= 16; i++)); do
    trouble=
    case $i in
      2) trouble=', {"link": {"at": "4s", "for": "1500ms"}}' ;;
      3) trouble=', {"late": {"by": "300ms", "at": "2s", "for": "3s"}}' ;;
      4) trouble=', {"alarm": {"id": 57, "number": 3, "message": "Part not held", "at": "5s", "for": "3s"}}' ;;
    esac
    controller "press$i" "$trouble"
    ((i == 16)) || echo ,
  done
  echo ']}'
} >"$plant/hall.json"
{ echo '{"name": "Paint shop", "controllers": ['; controller paint ''; echo ']}'; } >"$plant/paint.json"

start_broker
cells_port=$(free_port)
metrics_port=$(free_port)
{
  cat <<JSON
{
  "gateway": "hall1",
  "broker": {"host": "127.0.0.1", "port": $broker_port},
  "topics": {"form": "tags"},
  "buffer": {"file": "buffer.db", "limit": "100MB"},
  "metrics": {"address": "127.0.0.1", "port": $metrics_port},
  "defaults": {"period": "500ms", "full": "1min", "time_out": "1s",
    "tags": ["R[1-100]", "SR[1]", "DO[1-16]", {"names": ["POS[0]"], "dead_band": 0.5}, "ALM[1]"]},
  "cells": [
JSON
  for ((i = 1; i <= 16; i++)); do
    echo "    {\"name\": \"press$i\", \"host\": \"sim://127.0.0.1:$cells_port/press$i\"},"
  done
  for ((i = 1; i <= 4; i++)); do
    ((i == 4)) && comma='' || comma=,
    echo "    {\"name\": \"paint$i\", \"simulate\": \"paint.json\"}$comma"
  done
  printf '  ]\n}\n'
} >"$plant/cells.json"

echo "A broker at 127.0.0.1:$broker_port, 16 cells served to the gateway, 4 simulated in it:"
start cells build/run/tools/orif/orif simulate "$plant/hall.json" --serve "127.0.0.1:$cells_port"
until_true 'the cells are served' answers "$cells_port"
/usr/bin/python3 -Bu examples/plant/subscriber.py --port "$broker_port" --seconds $((seconds + 2)) --every 2 \
  --show 'press1=R[1],R[2],DO[1],POS[0].X' --show 'press4=ALM[1].message' &
subscriber=$!
started+=("$subscriber")
sleep 0.5
start gateway build/run/tools/gateway/orif-gateway "$plant/cells.json"
gateway=$last
sleep "$seconds"
page "$metrics_port/metrics" >"$plant/metrics"
page "$metrics_port/healthz" >"$plant/health"
kill -TERM "$gateway"
wait "$gateway" || { cat "$plant/gateway.log" >&2; exit 1; }
wait "$subscriber"

echo
echo "What the gateway told of itself shortly before:"
cat "$plant/health"
grep -E '^orif_(cell_(up|reconnects_total|rows_total|last_good_refresh_age_seconds)\{cell="press[12]"|broker|buffer|published|dropped)' \
  "$plant/metrics"
echo
echo "Its log:"
grep -Ev 'state=(connecting|up|closed)' "$plant/gateway.log" || true

#!/usr/bin/env bash
# Sets up what is missing, builds, and runs what stands in examples/plant: broker, gateway, database, Prometheus with its
# alerts and console, on the loopback and in a directory of its own. A cell goes down, the broker goes away and comes
# back, the database is killed, and each time the outcome is checked. ORIF_GATEWAY names another gateway to be tried.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build tool gateway plant
gateway=${ORIF_GATEWAY-$PWD/build/run/tools/gateway/orif-gateway}
orif=${ORIF_TOOL-$PWD/build/run/tools/orif/orif}
if [ -z "${ORIF_GATEWAY-}" ]; then
  scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON -DORIF_BUILD_GATEWAY=ON >/dev/null
  cmake --build build/run --target orif_tool orif_gateway
fi

plant=$PWD/examples/plant
work=$(mktemp -d)
declare -A started=()
end() {
  local status=$?
  trap - EXIT
  kill "${started[@]}" 2>/dev/null || true
  wait
  if [ $status -ne 0 ]; then
    echo "recipes.sh: FAILED; what the programs said:" >&2
    tail -n 8 "$work"/*.log >&2
  fi
  rm -rf "$work"
  exit $status
}
trap end EXIT
trap 'exit 130' INT TERM

start() { # a name, a command
  local name=$1
  shift
  "$@" >>"$work/$name.log" 2>&1 &
  started[$name]=$!
}
stop() { # a name, a signal
  kill "-${2-TERM}" "${started[$1]}"
  wait "${started[$1]}" 2>/dev/null || true
  unset "started[$1]"
}
until_true() { # seconds, what is waited for, a command
  local end=$((SECONDS + $1)) what=$2
  shift 2
  until "$@" >/dev/null 2>&1; do
    if ((SECONDS > end)); then
      echo "recipes.sh: $what: this did not come" >&2
      return 1
    fi
    sleep 0.2
  done
  echo "$what"
}
read -r broker_port metrics_port prometheus_port < <(/usr/bin/python3 -c '
import socket
sockets = [socket.create_server(("127.0.0.1", 0)) for _ in range(3)]
print(*[s.getsockname()[1] for s in sockets])')
cp "$plant"/{cell.json,alerts.yml,alerts_test.yml,console.html} "$work"

# The broker, with certificates as a plant would have from its own authority.
mkdir "$work/broker"
openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -subj /CN=Plant \
  -keyout "$work/ca.key" -out "$work/ca.pem" 2>/dev/null
openssl req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=localhost \
  -addext subjectAltName=DNS:localhost,IP:127.0.0.1 -keyout "$work/broker.key" -out "$work/broker.csr" 2>/dev/null
openssl x509 -req -in "$work/broker.csr" -copy_extensions copy -days 2 -CA "$work/ca.pem" -CAkey "$work/ca.key" \
  -CAcreateserial -out "$work/broker.pem" 2>/dev/null
for user in hall1 database; do
  (umask 077 && openssl rand -hex 16 >"$work/$user.password")
  touch "$work/passwords"
  mosquitto_passwd -b "$work/passwords" $user "$(<"$work/$user.password")"
done
cp "$plant/topics.acl" "$work"
{
  if [ "$(id -u)" -eq 0 ]; then echo 'user root'; fi # its data is in a directory of ours
  printf 'persistence true\npersistence_location %s/broker/\n' "$work"
  sed "s:/etc/mosquitto/orif:$work:; s/^listener .*/listener $broker_port 127.0.0.1/" "$plant/mosquitto.conf"
} >"$work/mosquitto.conf"
start broker mosquitto -c "$work/mosquitto.conf"

as() { # a user of the broker, a program of mosquitto's with its arguments
  local user=$1 program=$2
  shift 2
  "$program" -h localhost -p "$broker_port" --cafile "$work/ca.pem" -u "$user" -P "$(<"$work/$user.password")" "$@"
}
fail() {
  echo "recipes.sh: $*" >&2
  exit 1
}
until_true 10 "The broker answers" as database mosquitto_sub -t 'orif/#' -E
if mosquitto_pub -h 127.0.0.1 -p "$broker_port" -t orif/hall1/state -m x 2>/dev/null; then
  fail "the broker takes messages without TLS"
fi
if mosquitto_pub -h localhost -p "$broker_port" --cafile "$work/ca.pem" -t orif/hall1/state -m x 2>/dev/null; then
  fail "the broker takes messages from anybody"
fi
# Messages to topics of others are acknowledged, as MQTT 3.1.1 has it, and go nowhere.
as database mosquitto_pub -q 1 -r -t orif/hall1/press1/state -m forged
as hall1 mosquitto_pub -q 1 -r -t orif/hall2/press1/state -m forged
if as database mosquitto_sub -t 'orif/#' -C 1 -W 1 >/dev/null 2>&1; then fail "the broker takes forged messages"; fi

# The database.
database() {
  start database /usr/bin/python3 "$plant/to_database.py" --host localhost --port "$broker_port" --ca "$work/ca.pem" \
    --user database --password-file "$work/database.password" "$work/plant.db"
}
query() { sqlite3 -cmd '.timeout 5000' "$work/plant.db" "$1"; }
holds() { [ "$(query "SELECT $1")" = 1 ]; } # an expression of SQL
database
until_true 10 "The database is there" holds "count(*) = 2 FROM sqlite_schema WHERE type = 'table'"

# The gateway. One of its cells is served by a program that can be ended.
start cell "$orif" simulate "$plant/cell.json" --serve 127.0.0.1:0
until_true 10 "A cell is served" grep -qo 'sim://127.0.0.1:[0-9]*' "$work/cell.log"
host=$(grep -om 1 'sim://127.0.0.1:[0-9]*' "$work/cell.log")
sed "s|broker.plant.example|localhost|; s|\"port\": 8883|\"port\": $broker_port|; s|\"port\": 9410|\"port\": $metrics_port|
  s|/run/credentials/orif-gateway.service/password|$work/hall1.password|; s|/etc/orif-gateway/ca.pem|$work/ca.pem|
  s|/var/lib/orif-gateway|$work|; s|\"press2\", \"simulate\": \"cell.json\"|\"press2\", \"host\": \"$host/press\"|" \
  "$plant/cells.json" >"$work/cells.json"
"$gateway" --check "$work/cells.json"
start gateway "$gateway" "$work/cells.json"
until_true 20 "The database has values of three cells" \
  holds "count(DISTINCT cell) = 3 AND min(quality = 'good') FROM readings WHERE tag = 'R[3]'"

# Prometheus. What it waits before an alert is shortened; that the alerts wait as they should, their tests show.
promtool test rules "$work/alerts_test.yml" >/dev/null
promtool check config "$plant/prometheus.yml" >/dev/null
sed -i 's/for: .*/for: 1s/' "$work/alerts.yml"
sed "s/15s/1s/; s/127.0.0.1:9410/127.0.0.1:$metrics_port/" "$plant/prometheus.yml" >"$work/prometheus.yml"
start prometheus prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/prometheus" \
  --web.listen-address="127.0.0.1:$prometheus_port" --web.console.templates="$work" --web.console.libraries="$work"
prometheus_says() { # a query, its value
  promtool query instant "http://127.0.0.1:$prometheus_port" "$1" | grep -qE "=> $2 @"
}
fires() { prometheus_says "ALERTS{alertname='$1', alertstate='firing'}" 1; }
quiet() { prometheus_says "count(up) unless count(ALERTS{alertstate='firing'})" 1; }
until_true 30 "Prometheus has the metrics of three cells" prometheus_says 'sum(orif_cell_up)' 3
until_true 20 "No alert fires" quiet

# A cell goes down.
stop cell
until_true 60 "Its alert fires" fires CellDown
console=$(curl -fsS "http://127.0.0.1:$prometheus_port/consoles/console.html")
for shown in '<td>CellDown</td>' '<td>press2</td>' '>down</td>'; do
  grep -q "$shown" <<<"$console" || fail "the console does not show $shown: $console"
done
until_true 20 "The database knows" holds "state <> 'up' FROM states WHERE cell = 'press2'"
start cell "$orif" simulate "$plant/cell.json" --serve "${host#sim://}"
until_true 60 "The cell is back" prometheus_says 'sum(orif_cell_up)' 3

# The database is killed, and then the broker goes away.
stop database KILL
sleep 2
stop broker
until_true 30 "The alert for the broker fires" fires BrokerAway
sleep 2
start broker mosquitto -c "$work/mosquitto.conf"
until_true 60 "The broker is back" prometheus_says orif_broker_up 1
sleep 1
database
until_true 30 "The database has the late values" holds "count(*) > 3 FROM readings WHERE late"
until_true 30 "The buffer is empty" prometheus_says orif_buffer_rows 0
until_true 30 "All alerts have ended" quiet
stop gateway
until_true 10 "The gateway has said good-bye" holds "state = 'offline' AND reason = 'ended' FROM states WHERE cell = ''"
until_true 10 "Nothing is missing and nothing is there twice" \
  holds "max(number) - min(number) + 1 = count(*) FROM readings WHERE cell = 'press1' AND tag = 'R[3]'"
until_true 20 "The alert for the gateway fires" fires GatewayGone
sqlite3 -box "$work/plant.db" <"$plant/readings.sql" >"$work/readings"
grep -B 2 -A 2 ' late │$' "$work/readings" | tail -n 6

# The units are good; what they start stands elsewhere here.
for unit in orif-gateway orif-to-database; do
  sed "s|^ExecStart=[^ ]*|ExecStart=/bin/true|" "$plant/$unit.service" >"$work/$unit.service"
  systemd-analyze verify "$work/$unit.service"
done
echo "All recipes work."

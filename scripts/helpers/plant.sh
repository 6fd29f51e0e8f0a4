# shellcheck shell=bash
# What the scripts of the plant share. Sourced behind common.sh: makes a temporary directory, $plant, and at the end of
# the script stops what was started by `start` and removes the directory.
plant=$(mktemp -d)
started=()
end_plant() {
  local i
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do
    kill "${started[i]}" 2>/dev/null || continue
    wait "${started[i]}" 2>/dev/null || true
  done
  rm -rf "$plant"
}
trap end_plant EXIT

free_port() { /usr/bin/python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'; }

# start NAME COMMAND...: runs it in the background; what it prints goes to $plant/NAME.log, its process is $last.
start() {
  "${@:2}" >"$plant/$1.log" 2>&1 &
  last=$!
  started+=("$last")
}

# until_true WHAT COMMAND...: waits until the command succeeds.
until_true() {
  local i
  for ((i = 0; i < 200; i++)); do
    if "${@:2}" 2>/dev/null; then return; fi
    sleep 0.05
  done
  echo "${0##*/}: not within 10 s: $1" >&2
  tail -n 5 "$plant"/*.log >&2
  exit 1
}
answers() { (: </dev/tcp/127.0.0.1/"$1"); }
page() { /usr/bin/python3 -c 'import sys, urllib.request as u; print(u.urlopen(sys.argv[1], timeout=5).read().decode())' "http://127.0.0.1:$1"; }

# A broker for this machine alone, at $broker_port, whose process is $broker.
start_broker() {
  broker_port=$(free_port)
  printf '%s\n' "listener $broker_port 127.0.0.1" 'allow_anonymous true' 'persistence false' 'sys_interval 1' \
    'max_queued_messages 0' 'max_inflight_messages 0' >"$plant/broker.conf"
  start broker mosquitto -c "$plant/broker.conf"
  export broker=$last
  until_true 'the broker listens' answers "$broker_port"
}

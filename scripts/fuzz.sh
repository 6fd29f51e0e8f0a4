#!/usr/bin/env bash
# Sets up what is missing, builds the fuzzers with clang and their sanitizers, and runs them on their corpora: about a
# minute for all together, or with an argument that many minutes for each, two at a time. What is found lands in
# build/fuzz/found/, inputs that reach something new in build/fuzz/corpus/.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build clang
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

export XDG_CONFIG_HOME=$PWD/build/fuzz/no-settings
seconds=$((${1:-0} * 60))
run() {
  local found=build/fuzz/found/$1 corpus=build/fuzz/corpus/$1
  mkdir -p "$found" "$corpus"
  build/fuzz/fuzz/fuzz_"$1" -timeout=10 -rss_limit_mb=4096 -max_len=1024 -print_final_stats=1 \
    -max_total_time=$((seconds > 0 ? seconds : 25)) -artifact_prefix="$found/" "$corpus" "fuzz/corpus/$1" \
    >"build/fuzz/$1.log" 2>&1 || { tail -n 60 "build/fuzz/$1.log"; return 1; }
  echo "$1: $(grep -E '^#[0-9]+[[:space:]]+DONE' "build/fuzz/$1.log")"
}
export -f run
export seconds
printf '%s\n' api component served simulator | xargs -P 2 -I{} bash -euo pipefail -c 'run {}'

#!/usr/bin/env bash
# Sets up what is missing, builds a release tree, runs the benchmarks with the static and with the shared library, and
# prints each figure beside what it is measured against; those of Python follow. An argument chooses how often each is
# measured (9); the least of these counts, since whatever else the machine does only adds time.
. "$(dirname "$0")/helpers/common.sh"
repetitions=${1:-9}
build=build/run

scripts/install-deps.sh build bench tool python >&2
scripts/helpers/configure.sh -DORIF_BUILD_BENCH=ON >/dev/null
cmake --build $build >&2
cmake --preset python >/dev/null
cmake --build --preset python --target orif_python >&2

# No settings and no component of the machine are seen; ratios are of figures of one run of one program.
export XDG_CONFIG_HOME=$PWD/$build/no-settings ORVEX_COMMLIB='' LC_ALL=C
for linkage in static shared; do
  $build/bench/orif_bench_$linkage --benchmark_repetitions="$repetitions" --benchmark_min_time=0.05 \
    --benchmark_enable_random_interleaving=true --benchmark_format=csv >$build/$linkage.csv
done

# What | library build | benchmark | measured against | reach of the figure (ns), of the difference (ns) or of the ratio.
table='
GetValue, integer register|static|NumReg/int/direct|NumReg/int/by hand|ns 15
GetValue, real register|static|NumReg/real/direct|NumReg/real/by hand|ns 15
GetValue, integer register|shared|NumReg/int/direct|NumReg/int/by hand|ns 15
GetValue, real register|shared|NumReg/real/direct|NumReg/real/by hand|ns 15
the same, simulator|static|NumReg/int/simulator|NumReg/int/by hand|
the same, simulator|shared|NumReg/int/simulator|NumReg/int/by hand|
GetValue, position record|static|PosReg/direct|PosReg/by hand|ratio 12
GetValue, position record|shared|PosReg/direct|PosReg/by hand|ratio 12
the same, simulator|static|PosReg/simulator|PosReg/by hand|
Refresh, 16383 words, simulator|static|Refresh/simulator|Refresh/simulator/lower layer|ratio 1.05
Refresh, 16383 words, simulator|shared|Refresh/simulator|Refresh/simulator/lower layer|ratio 1.05
the same, a lower layer that copies|static|Refresh/direct|Refresh/direct/lower layer|
Refresh, 500 integers, loopback|static|Refresh/served|Refresh/in process|ns 25000
Refresh overhead, 10 items|static|Refresh/items/10|Refresh/items/1|ratio 1.1
Refresh overhead, 1000 items|static|Refresh/items/1000|Refresh/items/1|ratio 1.1
Refresh overhead, 8000 items|static|Refresh/items/8000|Refresh/items/1|ratio 1.1
integer tag|static|Live/int|NumReg/int/direct|ns 25
the same, changing|static|Live/int changing|NumReg/int/direct|ns 25
real tag, changing|static|Live/real changing|NumReg/real/direct|ns 25
untyped register tag|static|Live/untyped|NumReg/int/direct|
position field tag|static|Live/position field|PosReg/direct|ns 25
text tag|static|Live/text|String/library|difference 10
task, four tags|static|Live/task|Task/library|difference 40
alarm, nine tags|static|Live/alarm|Alarm/library|difference 90
signal tag|static|Live/bit|Signals/direct|ns 25
GetValue, string of 80 characters|static|String/library|String/by hand|
GetValue, task|static|Task/library|Task/by hand|
GetValue, alarm with three texts|static|Alarm/library|Alarm/by hand|
16 signals|static|Signals/direct|Signals/direct/lower layer|
16 signals, simulator|static|Signals/simulator|Signals/simulator/lower layer|
item 1000 registered|static|Register/direct/1000|Register/direct/100|ratio 1.25
item 4000 registered|static|Register/direct/4000|Register/direct/100|ratio 1.25
item 8000 registered|static|Register/direct/8000|Register/direct/100|ratio 1.25
item 8000 registered, simulator|static|Register/simulator/8000|Register/simulator/100|
DebugOut with the trail on|static|DebugOut/library|DebugOut/format|ratio 3
traced line while off, Core|static|Untraced/core|Untraced/empty loop|difference 1
traced line while off, item|static|Untraced/item|Untraced/empty loop|difference 1
16383 words of integer registers|static|Compose/int|Compose/memcpy|ratio 40
16383 words of real registers|static|Compose/real|Compose/memcpy|ratio 40
'

awk -F'|' '
  FNR == NR || FILENAME ~ /csv$/ {
    if (split($0, quoted, "\"") < 3) next
    name = quoted[2]
    if (name ~ /_(mean|median|stddev|cv)$/) next
    sub(/\/(iterations|repeats|manual_time|real_time).*/, "", name)
    split(quoted[3], field, ",")
    if (quoted[3] ~ /true,/ || field[3] == "") { print "failed: " $0 > "/dev/stderr"; failed = 1; next }
    linkage = FILENAME ~ /static/ ? "static" : "shared"
    key = linkage "|" name
    if (!(key in least) || field[3] + 0 < least[key]) least[key] = field[3] + 0
    next
  }
  NF < 5 { next }
  !printed++ {
    printf "%-34s %-6s %10s %10s %8s  %-16s\n", "", "build", "ns", "against", "ratio", "reach"
  }
  {
    a = least[$2 "|" $3]; b = least[$2 "|" $4]
    if (a == "" || b == "") { print "no figure: " $0 > "/dev/stderr"; failed = 1; next }
    split($5, reach, " ")
    value = reach[1] == "ns" ? a : reach[1] == "difference" ? a - b : a / b
    verdict = $5 == "" ? "reported" : $5 (value <= reach[2] ? " met" : " MISSED")
    printf "%-34s %-6s %10.1f %10.1f %8.2f  %s\n", $1, $2, a, b, a / b, verdict
  }
  END { exit failed }
' $build/static.csv $build/shared.csv <(printf '%s' "$table")

$build/bench/monitors
PYTHONPATH=build/python /usr/bin/python3 bench/python_bench.py "$repetitions"

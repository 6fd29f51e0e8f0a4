#!/usr/bin/env bash
# Runs the checks that the arguments name, one after the other, and ends at the first that fails; "all" is all of them,
# as CI runs them. Each installs what it needs and tells how long it took. Without arguments, lists the checks.
. "$(dirname "$0")/helpers/common.sh"

step_format() { # sources are laid out as clang-format does it
  scripts/install-deps.sh lint
  git ls-files '*.h' '*.cpp' '*.c' | xargs clang-format --dry-run --Werror
}

step_shell() { # the scripts pass shellcheck
  scripts/install-deps.sh lint
  git ls-files '*.sh' '*.bash' .ci/run | xargs shellcheck
}

step_scenarios() { # scenario files keep to their schema
  scripts/install-deps.sh lint
  local scenario
  for scenario in examples/scenarios/*.json tests/simulator/changing.json; do
    /usr/bin/jsonschema -i "$scenario" simulator/scenario/scenario.schema.json
  done
}

step_tests() { # all tests
  scripts/test.sh
}

step_python() { # the Python package: types, tests, examples
  scripts/test-python.sh
}

step_coverage() { # the library's own tests reach its lines
  scripts/coverage.sh
}

step_sanitize() { # all tests with the address and undefined-behaviour sanitizers
  scripts/test.sh sanitize
  scripts/test-python.sh sanitize
}

step_thread() { # the tests of threads with the thread sanitizer
  scripts/test.sh thread
}

step_windows() { # tests, demo and tool for Windows of both widths, under Wine
  scripts/test-windows.sh
}

step_analysis() { # clang-tidy and the static analyzer find nothing
  scripts/helpers/analysis.sh
}

step_fuzz() { # the fuzzers, half a minute each
  scripts/fuzz.sh
}

step_demo() { # the demo runs
  scripts/demo.sh
}

step_bench() { # the benchmarks run; their short form
  scripts/bench.sh 3
}

step_soak() { # the hundredth part of the soak adds no memory
  scripts/soak.sh 100
}

step_trouble() { # half a minute of troubles leaves true recordings
  scripts/trouble.sh 30
}

step_plant() { # the gateway runs beside real processes, and a minute of troubles leaves nothing untrue
  scripts/plant.sh
  scripts/plant-trouble.sh 60
  scripts/plant-trouble.sh --form sparkplug 30
  scripts/plant-scale.sh 20 5
}

step_page() { # the gateway's page in a browser
  scripts/page.sh
}

step_recipes() { # what stands in examples/plant works
  scripts/recipes.sh
}

step_package() { # what is installed and packaged works
  scripts/package.sh
}

step_site() { # the site is made without a warning
  scripts/docs.sh
}

steps=$(sed -n 's/^step_\([a-z]*\)() { # \(.*\)/\1 \2/p' scripts/check.sh)
if [ $# -eq 0 ]; then
  sed 's/^\([a-z]*\) /scripts\/check.sh \1\t/' <<<"$steps" | expand -t 30
  exit 2 # nothing was checked
fi
if [ "$*" = all ]; then mapfile -t steps < <(cut -d ' ' -f 1 <<<"$steps"); else steps=("$@"); fi
for step in "${steps[@]}"; do
  declare -F "step_$step" >/dev/null || {
    echo "check.sh: there is no step $step; without arguments it lists them" >&2
    exit 2
  }
done

trap 'echo "== $step FAILED" >&2' EXIT
for step in "${steps[@]}"; do
  echo "== $step"
  TIMEFORMAT="== $step: %0R s, of processors %0U s + %0S s"
  time ("step_$step")
done
trap - EXIT
echo "== all done in $SECONDS s: ${steps[*]}"

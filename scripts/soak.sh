#!/usr/bin/env bash
# Sets up what is missing, builds, and runs the library for some minutes, watching its memory. An argument divides the
# number of cycles: 100 makes it some seconds.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build bench
scripts/helpers/configure.sh -DORIF_BUILD_BENCH=ON >/dev/null
cmake --build build/run --target soak
time build/run/bench/soak "$@"

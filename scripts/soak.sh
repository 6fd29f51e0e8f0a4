#!/usr/bin/env bash
# Sets up what is missing, builds, and runs the library for some minutes, watching its memory.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh g++ cmake ninja-build libbenchmark-dev
cmake --preset release -B build/bench -DORIF_BUILD_TESTS=OFF -DORIF_BUILD_TOOL=OFF -DORIF_BUILD_BENCH=ON >/dev/null
cmake --build build/bench --target soak
time build/bench/bench/soak

#!/usr/bin/env bash
# Configures build/run, the release build that demo, benchmarks, soak and package share: the library and the simulator,
# and what the arguments switch on.
set -euo pipefail
cd "$(dirname "$0")/../.."

cmake --preset release -B build/run -DCMAKE_INSTALL_PREFIX=/usr -DORIF_BUILD_TESTS=OFF -DORIF_BUILD_EXAMPLES=OFF \
  -DORIF_BUILD_TOOL=OFF -DORIF_BUILD_GATEWAY=OFF -DORIF_BUILD_BENCH=OFF "$@"

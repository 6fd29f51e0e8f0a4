#!/usr/bin/env bash
# Sets up what is missing, builds, and shows the main job on a simulated controller.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh g++ cmake ninja-build >&2
{
  scripts/configure.sh -DORIF_BUILD_EXAMPLES=ON
  cmake --build build/run --target demo
} >build-demo.log 2>&1 || { cat build-demo.log >&2; exit 1; }
rm -f build-demo.log
build/run/examples/demo

#!/usr/bin/env bash
# Sets up what is missing, builds, and shows the main job on a simulated controller.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh g++ cmake ninja-build >&2
{
  cmake --preset release -DORIF_BUILD_TESTS=OFF -DORIF_BUILD_TOOL=OFF -B build/demo
  cmake --build build/demo --target demo
} >build-demo.log 2>&1 || { cat build-demo.log >&2; exit 1; }
rm -f build-demo.log
build/demo/examples/demo

#!/usr/bin/env bash
# Sets up what is missing, builds, and shows the main job on a simulated controller.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build >&2
mkdir -p build
{
  scripts/helpers/configure.sh -DORIF_BUILD_EXAMPLES=ON
  cmake --build build/run --target demo
} >build/demo.log 2>&1 || { cat build/demo.log >&2; exit 1; }
build/run/examples/demo

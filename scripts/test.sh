#!/usr/bin/env bash
# Sets up what is missing, builds with warnings as errors, and runs all tests. An argument chooses another preset
# than the debug one: release, or sanitize, which clang builds, or thread, which is the tests of threads under clang's
# ThreadSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-debug}

scripts/setup.sh g++ cmake ninja-build libgtest-dev libgmock-dev libcli11-dev nlohmann-json3-dev \
  libsqlite3-dev sqlite3 gnuplot-nox
[[ $preset != @(sanitize|thread) ]] || scripts/setup.sh clang libclang-rt-14-dev
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"

#!/usr/bin/env bash
# Sets up what is missing, builds with warnings as errors, and runs all tests. An argument chooses another preset
# than the debug one: release, or sanitize, which clang builds, or thread, the tests of threads
# under clang's ThreadSanitizer.
. "$(dirname "$0")/helpers/common.sh"
preset=${1:-debug}

scripts/install-deps.sh
[[ $preset != @(sanitize|thread) ]] || scripts/install-deps.sh clang
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"

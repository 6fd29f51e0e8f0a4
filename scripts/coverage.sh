#!/usr/bin/env bash
# Sets up what is missing, runs the library's own tests, and tells which of its lines they reach and how many calls and
# allocations the sweeps let fail. Fails below 95 % of the lines.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build test coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
# Left out are tests with several threads, whose counts would get lost, and two that limit how large files may be, which
# the measuring, writing files itself, does not stand.
ctest --preset coverage
gcovr --root . --filter orif/ --filter live/ --exclude live/Monitor --object-directory build/coverage --exclude-throw-branches --print-summary \
  --fail-under-line 95 build/coverage/orif/CMakeFiles/orif_objects.dir build/coverage/live build/coverage/tests

# How large the sweeps are; each way of failing has the same calls.
sweep() {
  "build/coverage/tests/$1" --gtest_filter="$2" --gtest_brief --gtest_output=xml:build/coverage/sweep.xml
  sed -n 's/ *<property name="\(.*\)" value="\(.*\)".*/in the sweep: \2 \1/p' build/coverage/sweep.xml | grep .
}
sweep orif_tests '*FaultSweep*/0'
sweep orif_allocation_tests '*AllocationSweep*'

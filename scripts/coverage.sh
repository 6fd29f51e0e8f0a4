#!/usr/bin/env bash
# Sets up what is missing, runs all tests, and tells which of the library's lines they reach; fails below 95 %.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh g++ cmake ninja-build libgtest-dev libgmock-dev libcli11-dev nlohmann-json3-dev \
  libsqlite3-dev sqlite3 gnuplot-nox gcovr
cmake --preset debug -B build/coverage -DCMAKE_CXX_FLAGS=--coverage -DCMAKE_C_FLAGS=--coverage >/dev/null
cmake --build build/coverage
# One test lets no file grow; what the measuring itself says to that is not the program's output.
GCOV_ERROR_FILE=/dev/null ctest --test-dir build/coverage --output-on-failure -j 2
gcovr --root . --filter orif/ --object-directory build/coverage --exclude-throw-branches \
  --fail-under-line 95 build/coverage/orif/CMakeFiles/orif_static.dir build/coverage/tests

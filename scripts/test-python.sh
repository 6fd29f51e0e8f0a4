#!/usr/bin/env bash
# Builds the Python package into build/python and tests it: the types of package, examples and benchmark (mypy --strict),
# the types against the module (stubtest), and everything else with pytest. With the argument "sanitize" the tests run
# with the address and undefined-behaviour sanitizers in the module, and nothing else does.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build tool python
cmake --preset python >/dev/null
cmake --build --preset python
root=$PWD

# The package alone is tried: no settings and no component of the machine, and the tool of this build.
export PYTHONPATH=$root/build/python PYTHONDONTWRITEBYTECODE=1 MYPYPATH=$root/build/python LC_ALL=C.UTF-8
export XDG_CONFIG_HOME=$root/build/python-build/no-settings PATH=$root/build/python-build/tools/orif:$PATH
export ORVEX_COMMLIB=$root/build/python-build/simulator/libOrvexCommLibSimulator.so
if [ "${1-}" = sanitize ]; then
  scripts/install-deps.sh clang
  cmake --preset sanitize -DORIF_BUILD_PYTHON=ON >/dev/null
  cmake --build --preset sanitize --target orif_python
  # The interpreter keeps what it has to its end, so leaks are not looked for. Little freed memory is held back, since
  # tests watch the memory.
  ASAN_OPTIONS=detect_leaks=0:quarantine_size_mb=4:thread_local_quarantine_size_kb=64 PYTHONMALLOC=malloc PYTHONPATH=$root/build/sanitize/python \
    LD_PRELOAD=$(clang -print-file-name=libclang_rt.asan-x86_64.so) \
    /usr/bin/python3 -m pytest -q -p no:cacheprovider python/tests
  exit
fi
check() { /usr/bin/python3 -m "$@"; }
cd build/python-build
check mypy --strict -p orif
for program in "$root"/python/examples/*.py "$root/bench/python_bench.py"; do
  check mypy --strict "$program"
done
check mypy.stubtest orif --allowlist "$root/python/tests/stubtest.txt"
cd "$root"
check pytest -q -p no:cacheprovider python/tests

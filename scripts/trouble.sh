#!/usr/bin/env bash
# Sets up what is missing, builds the tool, and troubles recorders for as many seconds as the argument says (3600): their
# cell is stopped, frozen and started again, a recorder is killed and meets the end of its disk. Checks that every value
# in their files is one that the cell had at that time. A second argument repeats the order of a run.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build tool trouble
scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON >/dev/null
cmake --build build/run --target orif_tool
PATH=$PWD/build/run/tools/orif:$PATH XDG_CONFIG_HOME=$PWD/build/run/no-settings TZ=UTC \
  /usr/bin/python3 tests/tool/trouble.py "${1:-3600}" ${2:+"$2"}

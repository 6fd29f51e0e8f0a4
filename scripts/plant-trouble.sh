#!/usr/bin/env bash
# Sets up what is missing, builds, and troubles a plant for as many seconds as the argument says (60, and each trouble once
# at least): broker, cells and gateway are processes that are stopped, frozen and killed, the disk is full, a component
# hangs, the clock is set back, texts are hostile. Checks that what is published, stored and shown agrees with what the
# cells had. From 7200 s on the broker is gone for ten minutes at a time. A second argument repeats the order of a run;
# more arguments name the troubles to make. "--form sparkplug" makes them in that form, and more of its own: below 60 s
# those and two others. Otherwise it is that of tags and rows in turn.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build tool gateway plant trouble
export PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$PWD/examples/plant # who checks is there, and is checked first
/usr/bin/python3 tests/gateway/subscriber_test.py
/usr/bin/python3 tests/gateway/sparkplug_host_test.py
scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON -DORIF_BUILD_GATEWAY=ON >/dev/null
cmake --build build/run --target orif_tool orif_gateway OrvexCommLibSimulator
hanging=$PWD/build/run/libhanging_component.so
cc -shared -fPIC -Wall -Wextra -Werror -I. tests/gateway/hanging_component.c -ldl -o "$hanging"

unset ORVEX_COMMLIB
PATH=$PWD/build/run/tools/orif:$PWD/build/run/tools/gateway:$PATH XDG_CONFIG_HOME=$PWD/build/run/no-settings TZ=UTC \
  FAKETIME_LIBRARY=$(dpkg -L libfaketime | grep 'libfaketimeMT') HANGING_COMPONENT=$hanging \
  HANGING_COMPONENT_PASSES_TO=$(find "$PWD/build/run" -name libOrvexCommLibSimulator.so) \
  /usr/bin/python3 tests/gateway/trouble.py "$@"

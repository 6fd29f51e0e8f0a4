#!/usr/bin/env bash
# Sets up what is missing, builds, and tests the gateway's page in a headless Chromium; arguments name single tests of
# tests/page/page.py. With "picture [MINUTES]" makes docs/images/page.png instead, of a plant that runs for so long, an
# hour by itself.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh build tool gateway plant page >&2
mkdir -p build
{
  scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON -DORIF_BUILD_GATEWAY=ON
  cmake --build build/run --target orif_tool orif_gateway
} >build/page.log 2>&1 || { cat build/page.log >&2; exit 1; }
export PATH=$PWD/build/run/tools/orif:$PWD/build/run/tools/gateway:$PATH LC_ALL=C.UTF-8
export PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$PWD/tests/page:$PWD/tests/gateway:$PWD/examples/plant # what they share
unset ORVEX_COMMLIB
if [ "${1-}" = picture ]; then
  /usr/bin/python3 scripts/helpers/page-picture.py docs/images/page.png "${2:-60}"
else
  /usr/bin/python3 tests/page/page.py "$@"
fi

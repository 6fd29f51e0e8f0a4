#!/usr/bin/env bash
# Runs a Windows program of 32 or 64 bit with its arguments under Wine, in the build's own system and without a desktop.
set -euo pipefail
helpers=$(realpath "$(dirname "$0")")
WINEPREFIX=${WINEPREFIX:-${helpers%/scripts/helpers}/build/wine}
export WINEPREFIX WINEDEBUG=-all DISPLAY='' WAYLAND_DISPLAY='' HOME=$WINEPREFIX
# This loader starts programs of 64 bit at once, and those of 32 bit through the other one.
exec "$helpers/windows-root.sh" /usr/lib/wine/wine64 "$@"

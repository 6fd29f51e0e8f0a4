#!/usr/bin/env bash
# Runs a Windows program with its arguments under Wine, in a system of the build's own and without a desktop.
set -euo pipefail
WINEPREFIX=${WINEPREFIX:-$(realpath "$(dirname "$0")/../..")/build/wine}
export WINEPREFIX WINEDEBUG=-all DISPLAY='' WAYLAND_DISPLAY=''
exec wine "$@"

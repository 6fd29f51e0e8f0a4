#!/usr/bin/env bash
# Installs the Debian packages named as arguments as far as they are missing. The other scripts call it; nothing is
# done, and no right is needed, on a machine that has them all.
set -euo pipefail

missing=()
for package in "$@"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
    missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing ${missing[*]}"
sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
"${sudo[@]}" apt-get -qq update
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends \
  "${missing[@]}" >/dev/null

#!/usr/bin/env bash
# Installs the Debian packages named as arguments as far as they are missing. Nothing is done, and no right is needed,
# on a machine that has them all.
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

# Waits while another process holds one of apt's locks: a fresh machine updates itself for some minutes.
apt_get() {
  local said minutes=0 start=$SECONDS
  while ! said=$("${sudo[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -qq "$@" 2>&1 >/dev/null); do
    if ((SECONDS - start > 900)) || ! grep -qE 'Could not get lock|Unable to lock' <<<"$said"; then
      echo "$said" >&2
      return 1
    fi
    if ((SECONDS - start >= 60 * minutes)); then
      echo "Waiting for the package manager: $(grep -m 1 -E 'Could not get lock|Unable to lock' <<<"$said")"
      minutes=$((minutes + 1))
    fi
    sleep 2
  done
}
apt_get update
apt_get install -y --no-install-recommends "${missing[@]}"

#!/usr/bin/env bash
# Runs a command, with its arguments, in a Debian system of the build's own, build/windows-root, in which Wine runs
# Windows programs of 32 and of 64 bit. The project, /tmp and the current directory, which is in either, are the same
# there. Running takes user namespaces and no rights. Without arguments, makes that system unless it is there, which
# takes a minute, and root or sudo; the packages of this machine stay as they are.
directory=$PWD
. "$(dirname "$0")/common.sh"
root=$PWD/build/windows-root
PATH+=:/usr/sbin:/sbin # where debootstrap is
fail() { echo "windows-root.sh: $*" >&2; exit 1; }

packages=(wine wine64 wine32:i386)
# shellcheck source=/dev/null
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
made_of="Debian $release with ${packages[*]} for $PWD"
complete() { [[ -r $root/made-of && $(<"$root/made-of") == "$made_of" ]]; }

# Each run has a namespace of its own, with the mounts in it; all reach the same Wine server, through /tmp.
enter() {
  # shellcheck disable=SC2016
  exec unshare --map-root-user --mount sh -euc '
    root=$1 project=$2; shift 2
    mount --bind "$project" "$root$project"
    mount --rbind /proc "$root/proc"
    mount --rbind /dev "$root/dev"
    mount --rbind /tmp "$root/tmp"
    export PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin
    exec chroot "$root" sh -euc "cd \"\$1\"; shift; exec \"\$@\"" sh "$@"' sh "$root" "$PWD" "$directory" "$@"
}

# As root, in a mount namespace of its own, so that no mount is left behind.
make() {
  local root=$1 made_of=$2 release=$3 mirror=$4 file
  shift 4
  rm -rf --one-file-system "$root"
  # What apt is told about proxies and passwords goes for the new system and for debootstrap.
  eval "$(apt-config shell http_proxy Acquire::http::Proxy https_proxy Acquire::https::Proxy)"
  export http_proxy https_proxy DEBIAN_FRONTEND=noninteractive LC_ALL=C
  debootstrap --variant=minbase "$release" "$root" "$mirror"
  for file in apt/apt.conf apt/apt.conf.d apt/auth.conf apt/auth.conf.d ssl/certs/ca-certificates.crt resolv.conf hosts; do
    [ ! -e "/etc/$file" ] || (cd /etc && cp -RL --parents "$file" "$root/etc")
  done
  printf '%s\n' force-unsafe-io path-exclude=/usr/share/{doc,man,locale}/'*' >"$root/etc/dpkg/dpkg.cfg.d/windows-root"
  chroot "$root" dpkg --add-architecture i386
  chroot "$root" apt-get -q -o Acquire::Retries=3 update
  chroot "$root" apt-get -qy -o Acquire::Retries=3 --no-install-recommends install "$@"
  chroot "$root" apt-get clean
  mkdir -p "$root${PWD}"
  echo "$made_of" >"$root/made-of"
}

if [ $# -gt 0 ]; then
  complete || fail "build/windows-root is not made; scripts/helpers/windows-root.sh makes it"
  enter "$@"
fi

if ! complete; then
  sudo=()
  if [ "$(id -u)" -ne 0 ]; then
    sudo=(sudo)
    command -v sudo >/dev/null || fail "making build/windows-root takes root or sudo"
  fi
  command -v debootstrap >/dev/null || fail "debootstrap is missing; scripts/install-deps.sh windows installs it"
  mirror=$(apt-get indextargets --format "\$(RELEASE) \$(COMPONENT) \$(REPO_URI)" 'Created-By: Packages' |
    sed -n "/^$release main /{s///p;q}")
  [ -n "$mirror" ] || fail "apt names no mirror for Debian $release"
  echo "Making build/windows-root: $made_of, from $mirror"
  mkdir -p build
  "${sudo[@]}" unshare --mount bash -euo pipefail -c "$(declare -f make); make \"\$@\"" make \
    "$root" "$made_of" "$release" "$mirror" "${packages[@]}" >build/windows-root.log 2>&1 </dev/null || {
    tail -20 build/windows-root.log >&2
    fail "build/windows-root could not be made; build/windows-root.log has the rest"
  }
fi
directory=$PWD
said=$( (enter true) 2>&1) ||
  fail "build/windows-root cannot be entered, which takes user namespaces with mounts in them: $said"

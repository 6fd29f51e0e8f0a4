#!/usr/bin/env bash
# Builds the Python package's wheel and its Debian package, python3-orif, into build/package, without a network and from
# the files under version control alone, and tries both: the wheel in a clean environment and the Debian package in a copy
# of this system, which takes root or sudo. Each is installed and runs the package's examples.
. "$(dirname "$0")/common.sh"
root=$PWD

scripts/install-deps.sh build tool python package
version=$(sed -n 's/^project(orif VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "python-packages.sh: $*" >&2; exit 1; }
alone=()
if unshare --map-root-user --net true 2>/dev/null; then alone=(unshare --map-root-user --net); fi

mkdir -p build/package "$work/checkout"
rm -f build/package/orif-*.whl build/package/python3-orif_*.deb
git ls-files -z | xargs -0 cp --parents -t "$work/checkout"
/usr/bin/python3 -m venv --system-site-packages "$work/builder"
"${alone[@]}" "$work/builder/bin/pip" --quiet wheel --no-build-isolation --no-deps --no-index \
  --wheel-dir "$root/build/package" "$work/checkout"
wheel=$(echo build/package/orif-"$version"-*.whl)
[ -f "$wheel" ] || fail "the wheel is not of version $version: $(ls build/package)"

# The Debian package has what the wheel has.
deb=$work/deb
site=$deb/usr/lib/python3/dist-packages
mkdir -p "$site" "$deb/DEBIAN" "$deb/usr/share/doc/python3-orif" "$work/shlibs/debian"
/usr/bin/python3 -m zipfile -e "$wheel" "$site"
rm "$site/orif-$version.dist-info/RECORD" # pip would take it for its own
cp LICENSE "$deb/usr/share/doc/python3-orif/copyright"
cp -r python/examples "$deb/usr/share/doc/python3-orif"
echo 'Source: orif' >"$work/shlibs/debian/control"
libraries=$(cd "$work/shlibs" && dpkg-shlibdeps -O "$site"/orif/_native.*.so 2>/dev/null | sed -n 's/^shlibs:Depends=//p')
read -r this next <<<"$(/usr/bin/python3 -c 'import sys; a, b = sys.version_info[:2]; print(f"{a}.{b} {a}.{b + 1}")')"
cat >"$deb/DEBIAN/control" <<CONTROL
Package: python3-orif
Version: $version
Architecture: $(dpkg --print-architecture)
Maintainer: orif maintainers <maintainers@localhost>
Section: python
Priority: optional
Depends: python3 (>= $this), python3 (<< $next), $libraries
Suggests: orif, python3-numpy, python3-pandas, python3-pytest
Description: Robot-controller interface library, for Python
 Reads and writes the data of robot controllers: registers, positions, texts,
 system variables, tasks, alarms and signals. Contains its own copy of the
 library and a simulated controller.
CONTROL
cat >"$deb/DEBIAN/postinst" <<'POSTINST'
#!/bin/sh
set -e
[ "$1" != configure ] || ! command -v py3compile >/dev/null || py3compile -p python3-orif
POSTINST
cat >"$deb/DEBIAN/prerm" <<'PRERM'
#!/bin/sh
set -e
! command -v py3clean >/dev/null || py3clean -p python3-orif
PRERM
chmod 755 "$deb"/DEBIAN/p*
find "$deb" -type d -exec chmod 755 {} +
find "$site" "$deb/usr" -type f -exec chmod 644 {} +
dpkg-deb --build --root-owner-group "$deb" build/package >/dev/null

# Runs the examples with that Python, away from this tree.
try() {
  local said example
  said=$(cd "$work" && env -i HOME="$work" LC_ALL=C.UTF-8 "$@" -c 'import orif; print(orif.__version__)')
  [ "$said" = "$version" ] || fail "$* has version $said"
  for example in python/examples/*.py; do
    (cd "$work" && env -i HOME="$work" LC_ALL=C.UTF-8 "$@" "$root/$example") |
      diff - "python/examples/output/$(basename "$example" .py).txt"
  done
  echo "$*: the examples of the Python package print what they should"
}
/usr/bin/python3 -m venv "$work/clean"
"${alone[@]}" "$work/clean/bin/pip" --quiet install --no-index "$wheel"
try "$work/clean/bin/python"

# In the copy.
install_and_try() {
  dpkg -i build/package/python3-orif_*.deb >/dev/null
  try /usr/bin/python3
  dpkg -r python3-orif >/dev/null
  [ ! -e /usr/lib/python3/dist-packages/orif ] || fail "python3-orif leaves files behind"
}
# In a mount namespace of its own: what changes in the copy is in memory, and gone with the namespace.
enter_copy() {
  local copy=$work/copy kept
  mkdir "$copy"
  mount -t tmpfs tmpfs "$copy"
  mkdir "$copy"/{changes,work,system}
  mount -t overlay overlay -o "lowerdir=/,upperdir=$copy/changes,workdir=$copy/work" "$copy/system"
  for kept in "$root" "$work"; do
    mkdir -p "$copy/system$kept"
    mount --bind "$kept" "$copy/system$kept"
  done
  mount --rbind /proc "$copy/system/proc"
  mount --rbind /dev "$copy/system/dev"
  export PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive
  chroot "$copy/system" bash -euo pipefail -c "$carried; cd '$root'; install_and_try"
}
sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
carried="$(declare -f fail try install_and_try); $(declare -p root work version)"
"${sudo[@]}" unshare --mount bash -euo pipefail -c "$carried; $(declare -f enter_copy); $(declare -p carried); enter_copy"
ls build/package/*.whl build/package/python3-orif_*.deb

#!/usr/bin/env bash
# Installs the Debian packages that this project needs, as far as they are missing. By itself what building, testing,
# the tool and the gateway need; arguments name other groups, which stand at the beginning of this script. The other
# scripts call it for what they need. It takes root or sudo, unless nothing is missing.
. "$(dirname "$0")/helpers/common.sh"

declare -A packages=(
  [build]='g++ cmake ninja-build'
  [tool]='libcli11-dev nlohmann-json3-dev libsqlite3-dev libasio-dev'
  [test]='libgtest-dev libgmock-dev sqlite3 gnuplot-nox'
  [gateway]='libcli11-dev libmosquitto-dev libcpp-httplib-dev libjs-chart.js prometheus-cpp-dev libsystemd-dev libprotobuf-dev
    protobuf-compiler pkg-config'
  [clang]='clang libclang-rt-14-dev'
  [windows]='g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools nsis googletest debootstrap unzip'
  [python]='pybind11-dev python3-pybind11 python3-dev python3-setuptools python3-wheel python3-pip python3-venv
    python3-numpy python3-pandas python3-pytest mypy'
  [bench]='libbenchmark-dev libasio-dev'
  [coverage]='gcovr'
  [package]='pkg-config dpkg-dev file'
  [pictures]='gnuplot-nox'
  [site]='doxygen'
  [trouble]='python3'
  [plant]='mosquitto mosquitto-clients python3-paho-mqtt faketime prometheus sqlite3 openssl curl systemd'
  [page]='chromium chromium-driver python3-selenium fonts-dejavu-core'
  [lint]='git clang-format clang-tidy shellcheck python3-jsonschema'
)

[ $# -gt 0 ] || set -- build tool gateway test
wanted=()
for group in "$@"; do
  if [ -z "${packages[$group]-}" ]; then
    echo "${0##*/}: there is no group $group, but ${!packages[*]}" >&2
    exit 2
  fi
  read -d '' -ra names <<<"${packages[$group]}" || true
  wanted+=("${names[@]}")
done
scripts/helpers/setup.sh "${wanted[@]}"

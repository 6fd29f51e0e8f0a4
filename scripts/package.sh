#!/usr/bin/env bash
# Sets up what is missing, builds the Debian package into build/run/, and tries it and a plain installation: each is
# put into an empty prefix, the first example is built against it from outside the tree, once by CMake and once by
# pkg-config, and what it prints is compared; the installed tool has to answer, and its manual page to be there.
. "$(dirname "$0")/helpers/common.sh"
root=$PWD

scripts/install-deps.sh build tool package
scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON >/dev/null
cmake --build build/run
rm -rf build/package
cpack --config build/run/CPackConfig.cmake -B build/package
rm -rf build/installed
mkdir -p build/installed
cmake --install build/run --prefix build/installed/plain >/dev/null
dpkg-deb -x build/package/orif_*.deb build/installed/unpacked

outside=$(mktemp -d)
trap 'rm -rf "$outside"' EXIT
cp examples/01_read_registers.cpp "$outside/program.cpp"
cat >"$outside/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.22)
project(program LANGUAGES CXX)
find_package(orif REQUIRED)
add_executable(program program.cpp)
target_link_libraries(program PRIVATE ${library} orif::simulator)
END

try() {  # the program's own words, and nothing else
  LD_LIBRARY_PATH=$libraries "$1" | diff - "$root/examples/output/01_read_registers.txt"
  echo "$prefix: ${1##*/} prints what it should"
}
for prefix in build/installed/plain build/installed/unpacked/usr; do
  pc=$(find "$prefix" -name orif.pc)
  libraries=$root/${pc%/pkgconfig/orif.pc}
  for library in orif::orif orif::orif_static; do
    build=$outside/${prefix//\//-}-${library#orif::}
    cmake -S "$outside" -B "$build" -G Ninja -DCMAKE_PREFIX_PATH="$root/$prefix" -Dlibrary=$library >/dev/null
    cmake --build "$build" >/dev/null
    try "$build/program"
  done
  PKG_CONFIG_PATH=$libraries/pkgconfig bash -c "g++ -std=c++20 '$outside/program.cpp' -o '$outside/by-pkg-config' \
    \$(pkg-config --cflags --libs orif-simulator orif)"
  try "$outside/by-pkg-config"
  "$prefix/bin/orif" read --simulate 'R[1]' >/dev/null
  test -s "$prefix/share/man/man1/orif.1" -a -s "$prefix/share/bash-completion/completions/orif"
done
ls build/package/*.deb

#!/usr/bin/env bash
# Sets up what is missing, builds the Debian packages into build/package/, and tries them and a plain installation. Each is
# put into an empty prefix, and the programs of the pages are built against it from outside the tree, by CMake and by
# pkg-config: they have to print what the pages say. An installation to /usr/local has to be found by the run-time
# linker, and a project that contains this one keeps its own packaging. The Python package follows.
. "$(dirname "$0")/helpers/common.sh"
root=$PWD

scripts/install-deps.sh build tool gateway package
scripts/helpers/configure.sh -DORIF_BUILD_TOOL=ON -DORIF_BUILD_GATEWAY=ON >/dev/null
cmake --build build/run
rm -rf build/package build/installed
cpack --config build/run/CPackConfig.cmake -B build/package
mkdir -p build/installed
cmake --install build/run --prefix build/installed/plain >/dev/null
for package in build/package/*.deb; do dpkg-deb -x "$package" build/installed/unpacked; done

outside=$(mktemp -d)
trap 'rm -rf "$outside"' EXIT
fail() { echo "package.sh: $*" >&2; exit 1; }
quietly() { # tells what a command said only when it failed
  local said
  said=$("$@" 2>&1) || fail "$* failed"$'\n'"$said"
}

# The fenced block of a page, of that language ("" for output), that has the text in it.
block() {
  awk -v open="\`\`\`$2" -v text="$3" '
    /^```/ {
      if (inside && index(block, text)) { printf "%s", block; exit }
      fenced = !fenced
      inside = fenced && $0 == open
      block = ""
      next
    }
    inside { block = block $0 "\n" }' "$1" | grep . || fail "$1 has no block with $3"
}
# The same as a whole program.
program() { block "$1" cpp "$2" | awk '/^#include/ { print; next } { body = body $0 "\n" } END { print "int main() {\n" body "}" }'; }

block README.md cpp 'int main' >"$outside/program.cpp"
block README.md '' 'R[1] =' >"$outside/program.txt"
block README.md cpp CountCycles >"$outside/live.cpp"
for page in README.md docs/getting-started.md; do
  diff <(block $page cpp CountCycles) <(grep . examples/08_two_controllers.cpp) || fail "$page shows another program"
done
program docs/getting-started.md WithReasons | sed '1i #include <iostream>\n#include "live/live.h"\n#include "orif/orif.h"' >"$outside/reason.cpp"
program docs/simulator.md LoadScenario >"$outside/scenario.cpp"
block docs/simulator.md json '"name": "Press"' >"$outside/press.json"
program docs/getting-started.md GetDebugMessages | sed '1i #include <iostream>\n#include "orif/orif.h"' >"$outside/connect.cpp"
cat >"$outside/served.cpp" <<'END'
#include <iostream>
#include <thread>
#include "orif/orif.h"
#include "simulator/Demo.h"
#include "simulator/served/RemoteCore.h"
#include "simulator/served/Server.h"
int main() {
  bool connected = false;
  orif::sim::Server server(orif::sim::DemoNetwork(), orif::sim::DemoHost, {"127.0.0.1", 0});
  std::jthread client([&] {
    orif::Core core{orif::sim::RemoteFactory()};
    connected = core.Connect("sim://" + ToText(server.Where()));
  });
  const auto start = std::chrono::steady_clock::now();
  server.Run([&] { return std::chrono::steady_clock::now() - start > std::chrono::milliseconds(500); });
  client.join();
  return connected ? 0 : 1;
}
END
cat >"$outside/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.22)
project(program LANGUAGES CXX)
find_package(orif 0.2 REQUIRED)
add_executable(program program.cpp)
target_link_libraries(program PRIVATE ${library} orif::simulator)
add_executable(scenario scenario.cpp)
target_link_libraries(scenario PRIVATE ${library} orif::scenario)
add_executable(served served.cpp)
target_link_libraries(served PRIVATE ${library} orif::served)
add_executable(connect connect.cpp)
target_link_libraries(connect PRIVATE ${library})
add_executable(live live.cpp)
target_link_libraries(live PRIVATE ${live} orif::simulator)
add_executable(reason reason.cpp)
target_link_libraries(reason PRIVATE ${live})
END

prints() { # what program.cpp has to say, and nothing else
  "$@" | diff - "$outside/program.txt"
  echo "$prefix: ${*: -1} prints what it should"
}
for prefix in "$root/build/installed/plain" "$root/build/installed/unpacked/usr"; do
  pc=$(find "$prefix" -name orif.pc)
  export LD_LIBRARY_PATH=${pc%/pkgconfig/orif.pc} PKG_CONFIG_PATH=${pc%/orif.pc}
  for library in orif orif_static; do
    build=$outside/$(basename "$prefix")-$library
    quietly cmake -S "$outside" -B "$build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -Dlibrary=orif::$library \
      -Dlive=orif::live${library#orif}
    quietly cmake --build "$build"
    prints "$build/program"
  done
  [ "$("$build/live")" = "$(block README.md '' cycles)" ] || fail "the program with orif::live says: $("$build/live")"
  reason=$(ORVEX_COMMLIB=$LD_LIBRARY_PATH/orif/libOrvexCommLibSimulator.so "$build/reason" 2>&1)
  grep -qF "$reason" docs/getting-started.md || fail "a wrong host is told as: $reason"
  (cd "$outside" && "$build/scenario") || fail "the scenario of docs/simulator.md does not load"
  "$build/served" || fail "a served cell cannot be reached"
  ! reason=$(ORVEX_COMMLIB='' "$build/connect" 2>&1) || fail "connected to nothing"
  [[ $reason == *"OrvexCommLib is not installed"* ]] || fail "no component, and its absence is told as: $reason"
  component=$LD_LIBRARY_PATH/orif/libOrvexCommLibSimulator.so
  ! reason=$(ORVEX_COMMLIB=$component "$build/connect" 2>&1) || fail "connected to an unknown host"
  [[ $reason == *"Unknown host"* ]] || fail "an unknown host is told as: $reason"

  # shellcheck disable=SC2046 # the flags are words
  g++ -std=c++20 "$outside/program.cpp" -o "$outside/by-pkg-config" $(pkg-config --cflags --libs orif-simulator orif)
  prints "$outside/by-pkg-config"
  # shellcheck disable=SC2046
  g++ -std=c++20 "$outside/live.cpp" -o "$outside/live-by-pkg-config" $(pkg-config --cflags --libs orif-simulator orif-live)
  "$outside/live-by-pkg-config" >/dev/null
  # shellcheck disable=SC2046
  g++ -std=c++20 -fsyntax-only "$outside/scenario.cpp" $(pkg-config --cflags --libs orif-scenario)
  # shellcheck disable=SC2046
  g++ -std=c++20 "$outside/served.cpp" -o "$outside/served" $(pkg-config --cflags --libs orif-served orif)
  "$prefix/bin/orif" read --simulate 'R[1]' >/dev/null
  "$prefix/bin/orif-gateway" --version | grep -qF "$(sed -n 's/^project(orif VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)" ||
    fail "the gateway tells another version"
  scenarios=$prefix/share/doc/orif/examples/scenarios
  "$prefix/bin/orif" check "$scenarios/handling_cell.json" >/dev/null
  for file in share/{man/man1/orif.1,bash-completion/completions/orif,zsh/site-functions/_orif,doc/orif/docs/items.md,doc/orif-gateway/examples/cells.json} \
    lib/systemd/system/orif-gateway.service \
    "share/doc/orif/examples/scenarios/$(sed -n 's/.*"[$]schema": "\(.*\)".*/\1/p' "$scenarios/handling_cell.json")"; do
    [ -s "$prefix/$file" ] || fail "$prefix lacks $file"
  done
  [ -z "$(find "$prefix" -type d -empty)" ] || fail "empty: $(find "$prefix" -type d -empty)"
done
unset LD_LIBRARY_PATH

# A real installation, in a view of the file system that this process has to itself. The rest of /usr cannot be written:
# ldconfig removes links from its directories that lead nowhere, and those that lead through /etc do so here.
install_really() {
  set -euo pipefail
  mkdir "$outside"/{usr-local,etc,aux}
  cp -r /etc/ld.so.conf /etc/ld.so.conf.d "$outside/etc"
  mount --bind "$outside/etc" /etc
  mount --bind /usr /usr
  mount -o remount,bind,ro /usr
  mount --bind "$outside/usr-local" /usr/local
  [ ! -d /var/cache/ldconfig ] || mount --bind "$outside/aux" /var/cache/ldconfig
  ! "$outside/by-pkg-config" >/dev/null 2>&1 || fail "the library is there before it is installed"
  cmake --install build/run --prefix /usr/local >/dev/null
  prints "$outside/by-pkg-config"
}
export -f install_really prints fail
export outside prefix=/usr/local
if unshare --map-root-user --mount true 2>/dev/null; then
  unshare --map-root-user --mount bash -c install_really
else
  echo "/usr/local: not tried, since this system gives a process no view of the file system of its own"
fi

mkdir "$outside/parent"
cat >"$outside/parent/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.22)
project(parent VERSION 7.1 LANGUAGES C CXX)
add_subdirectory("$root" orif)
install(FILES CMakeLists.txt DESTINATION share/parent)
include(CPack)
END
cmake -S "$outside/parent" -B "$outside/parent/build" -G Ninja >/dev/null
grep -q 'CPACK_PACKAGE_FILE_NAME "parent-7.1' "$outside/parent/build/CPackConfig.cmake" || fail "a parent's package changes"
cmake --install "$outside/parent/build" --prefix "$outside/parent/installed" >/dev/null
[ "$(cd "$outside/parent/installed" && find . -type f)" = ./share/parent/CMakeLists.txt ] || fail "a parent installs more"
ls build/package/*.deb
scripts/helpers/python-packages.sh

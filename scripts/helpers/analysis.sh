#!/usr/bin/env bash
# Analyses everything but the tests with clang-tidy, whose configuration is .clang-tidy. The sources of a target are
# analysed together; the analyzer looks at as many paths of a function as time allows.
. "$(dirname "$0")/common.sh"
scripts/install-deps.sh build tool gateway python lint windows
cmake --preset debug -B build/analysis -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 \
  -DORIF_BUILD_PYTHON=ON -DORIF_BUILD_TESTS=OFF >/dev/null
cmake --build build/analysis --target orif_python_members orif_sparkplug_payload orif_page_assets >/dev/null

# Prints what clang-tidy says only when it finds something, since it also counts what it leaves out.
analyse() {
  local said
  said=$(clang-tidy --quiet "$@" 2>&1) || {
    grep -v 'warnings\? generated' <<<"$said"
    echo "in: clang-tidy $*"
    return 1
  }
}
export -f analyse
each() { xargs -P "$(nproc)" -I{} bash -c 'analyse "$@"' _ {} "$@" | awk '!printed[$0]++'; } # a header's findings once

analyzer=(-p build/analysis --extra-arg=-Wno-unknown-warning-option
  --extra-arg=-Xclang --extra-arg=-analyzer-opt-analyze-headers
  --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=20000)
sed -n 's/^ *"file": "\(.*\)",*$/\1/p' build/analysis/compile_commands.json | grep -v sparkplug_payload |
  each "${analyzer[@]}"

# What is for Windows alone, in each width and with the headers of its compiler.
for processor in x86_64 i686; do
  mingw=$($processor-w64-mingw32-g++-posix -print-file-name=include/c++)
  git ls-files 'orif/*_windows.cpp' 'live/*_windows.cpp' 'tools/*_windows.cpp' 'orif/lowerlayer/Automation*.cpp' 'automation/*.cpp' simulator/automation/Server.cpp |
    each -- --target=$processor-w64-mingw32 -std=c++20 \
      -DWIN32_LEAN_AND_MEAN -DNOMINMAX -DORIF_STATIC_DEFINE -I. -Ibuild/analysis/generated -isystem "$mingw" \
      -isystem "$mingw/$processor-w64-mingw32" -isystem /usr/$processor-w64-mingw32/include
done

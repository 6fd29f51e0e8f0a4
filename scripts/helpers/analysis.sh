#!/usr/bin/env bash
# Analyses everything but the tests with clang-tidy, whose configuration is .clang-tidy. The sources of a target are
# analysed together; the analyzer looks at as many paths of a function as time allows.
. "$(dirname "$0")/common.sh"
scripts/install-deps.sh build tool lint windows
cmake --preset debug -B build/analysis -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 \
  -DORIF_BUILD_TESTS=OFF >/dev/null

# Prints what clang-tidy says only when it finds something, since it also counts what it leaves out.
analyse() {
  local said
  said=$(clang-tidy --quiet "$@" 2>&1) || {
    printf 'clang-tidy %s\n%s\n' "$*" "$said"
    return 1
  }
}
export -f analyse

analyzer=(-p build/analysis --extra-arg=-Wno-unknown-warning-option
  --extra-arg=-Xclang --extra-arg=-analyzer-opt-analyze-headers
  --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=20000)
sed -n 's/^ *"file": "\(.*\)",*$/\1/p' build/analysis/compile_commands.json |
  xargs -P "$(nproc)" -I{} bash -c 'analyse "$@"' _ {} "${analyzer[@]}"

# What is for Windows alone, with the headers of its compiler.
mingw=$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)
git ls-files 'orif/*_windows.cpp' 'tools/*_windows.cpp' '*/Automation*.cpp' simulator/automation/Server.cpp |
  xargs -P "$(nproc)" -I{} bash -c 'analyse "$@"' _ {} -- --target=x86_64-w64-mingw32 -std=c++20 \
    -DWIN32_LEAN_AND_MEAN -DNOMINMAX -DORIF_STATIC_DEFINE -I. -Ibuild/analysis/generated -isystem "$mingw" \
    -isystem "$mingw/x86_64-w64-mingw32" -isystem /usr/x86_64-w64-mingw32/include

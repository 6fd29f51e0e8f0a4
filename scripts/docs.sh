#!/usr/bin/env bash
# Sets up what is missing and makes the site of the public headers and of docs/ in build/docs/html/; fails at the first
# warning, so a public declaration without a comment is one.
. "$(dirname "$0")/helpers/common.sh"

scripts/install-deps.sh site
mkdir -p build/docs
# The public headers are those that are installed.
headers=$(for library in orif live; do
  sed -n "/^set(public_headers/,/)\$/s|^  \([^)]*\))*\$|$library/\1|p" $library/CMakeLists.txt
done | tr '\n' ' ')
(cat docs/Doxyfile && echo "INPUT += $headers") | doxygen -
echo "build/docs/html/index.html"

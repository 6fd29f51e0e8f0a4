# shellcheck shell=bash
# Begins the scripts of this project: each ends at its first failure, works at the root of the tree, and answers --help
# with the comment that it opens with.
set -euo pipefail
if [[ ${1-} == --help || ${1-} == -h ]]; then
  sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
  exit
fi
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

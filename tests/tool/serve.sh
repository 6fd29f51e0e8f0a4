# shellcheck shell=bash disable=SC2034,SC2086
# For sheets: serve ARGUMENTS... runs "orif simulate" until the shell ends, and sets $server to its process and $host to
# the host name of the cell.
serve() {
  rm -f served
  orif simulate "$@" >served 2>told &
  server=$!
  servers="${servers-} $server"
  trap 'kill -9 $servers 2>/dev/null' EXIT
  while ! grep -qs sim: served; do
    kill -0 $server 2>/dev/null || { cat told; return 1; }
    sleep 0.02
  done
  host=$(grep -o 'sim://[^ ,]*' served | head -n 1)
}
